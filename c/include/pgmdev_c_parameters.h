#ifndef PGMDEV_C_PARAMETERS_H
#define PGMDEV_C_PARAMETERS_H

/// \file
/// The parameter container: blocks of values in the file "pgm_flash.ini" of the module directory.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

typedef uint32_t pgmdev_parameter_block;
enum {
    PGMDEV_PARAMETER_BLOCK_SFL_FLASH = 0,
    PGMDEV_PARAMETER_BLOCK_HPS_SPI = 1,
    PGMDEV_PARAMETER_BLOCK_HPS_NAND = 2,
    PGMDEV_PARAMETER_BLOCKS = 3  ///< how many there are
};

/// All blocks: "number", "name", "present" and, of those that are, "size" in bytes. A missing or damaged file has none.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameter_blocks(pgmdev_records** blocks, pgmdev_error** error);

/// The bytes of a block. A missing or damaged file is not found, as a missing block is.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameters_read(pgmdev_parameter_block block, pgmdev_string** bytes,
                                                     pgmdev_error** error);

/// Replaces a block by one byte or more; removes it. The file is replaced in one step, and the other blocks stay. Those of
/// a damaged file are lost, but for a copy of it, "pgm_flash.ini.bak".
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameters_write(pgmdev_parameter_block block, const uint8_t* bytes, size_t size,
                                                      pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameters_remove(pgmdev_parameter_block block, pgmdev_error** error);

/// Keeps other writers out, from a reading to the writing that follows from it. It is freed by the thread that took it.
typedef struct pgmdev_parameter_lock pgmdev_parameter_lock;

/// Waits up to 10 seconds for other writers to be done, and for a file descriptor where none is free; after that the
/// status is PGMDEV_STATUS_BUSY.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameter_lock_take(pgmdev_parameter_lock** lock, pgmdev_error** error);
PGMDEV_C_EXPORT void pgmdev_parameter_lock_free(pgmdev_parameter_lock* lock);

/// How a value is stored.
typedef uint32_t pgmdev_parameter_type;
enum {
    PGMDEV_PARAMETER_STRING = 1,  ///< a PGMDEV_KIND_TEXT; its characters and a zero byte
    PGMDEV_PARAMETER_BOOL = 2,    ///< a PGMDEV_KIND_BOOL; all others are PGMDEV_KIND_NUMBER
    PGMDEV_PARAMETER_BYTE = 3,
    PGMDEV_PARAMETER_WORD = 4,
    PGMDEV_PARAMETER_DWORD = 5,
    PGMDEV_PARAMETER_QWORD = 6
};

/// The values of the types in `types` from `position` on, a record each with the one member "value"; `position` moves past
/// them. When the block does not hold all of them whole, the status is PGMDEV_STATUS_NOT_FOUND, and those before the first
/// that it does not hold are given. The last 4 bytes of a QWORD may lie behind the end of the block and count as zeros.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameters_decode(const uint8_t* bytes, size_t size, size_t* position,
                                                       const pgmdev_parameter_type* types, size_t count,
                                                       pgmdev_records** values, pgmdev_error** error);

/// The values as bytes of a block.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameters_encode(const pgmdev_parameter_type* types, const pgmdev_value* values,
                                                       size_t count, pgmdev_string** bytes, pgmdev_error** error);

/// A value as text: a text as it is, "True" or "False", a number in decimal or, with `hexadecimal`, as "0x" and all digits
/// of its type.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameter_text(pgmdev_parameter_type type, const pgmdev_value* value,
                                                    bool hexadecimal, pgmdev_string** text, pgmdev_error** error);

/// How a number that a person has written becomes a value.
typedef struct pgmdev_number_rules {
    size_t struct_size;
    bool hexadecimal;              ///< the "0x" may be left out
    bool power_of_two;             ///< only such are taken
    bool exponent;                 ///< the value is 2 to the power of it
    uint32_t multiple;             ///< otherwise the value is it multiplied by that; 0 stands for 1
    const uint32_t* ranges;        ///< pairs of lowest and highest; it must lie in one of them; null: any
    size_t range_count;            ///< how many pairs
    const uint32_t* invalid_hits;  ///< pairs of mask and pattern; it must not match any of them
    size_t invalid_hit_count;      ///< how many pairs
} pgmdev_number_rules;

/// The number that `text` spells, in decimal or behind "0x", for a value of that type, "-1" being the largest one; null
/// rules just check that it fits. Otherwise the status is PGMDEV_STATUS_REFUSED, and the message of the error says why.
PGMDEV_C_EXPORT pgmdev_status pgmdev_parameter_number(pgmdev_parameter_type type, const char* text,
                                                      const pgmdev_number_rules* rules, uint64_t* number,
                                                      pgmdev_error** error);

/// The last `digits` hexadecimal digits of a number, 1 to 16, in upper case, behind "0x" with `prefix`.
PGMDEV_C_EXPORT pgmdev_status pgmdev_number_hexadecimal(uint64_t number, uint32_t digits, bool prefix,
                                                        pgmdev_string** text, pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
