#pragma once

/// \file
/// The parameter container: up to three blocks of typed values in the file "pgm_flash.ini" of the directory that the host
/// names, gen_get_module_path (gen.h): that of this library, unless another one is set or that one may not be written.
///
/// Conventions of this class:
/// - All operations are static; nothing is kept between two calls, every read opens the file anew.
/// - A missing or damaged file and bad user input are results: null, false, or an error text. An unknown parameter type
///   and a broken precondition are internal errors (msg.h) with the module "PGMDEV" and the source file
///   "pgm/pgmdev/pgmdev_flash_ini".
/// - Any number of threads and processes may read while one writes. Writers of different blocks wait for each other. Who
///   writes what follows from what was read holds a PGMDEV_FLASH_INI_LOCK meanwhile.

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "pgmdev_export.h"
#include "pgmdev_types.h"

/// The types of the values in a block. A value is passed as an untyped pointer to an object of the type named here.
enum PGMDEV_PARAM_TYPE : DWORD {
    PGMDEV_PARAM_STRING = 1,  ///< std::string; in a block its characters and a zero byte
    PGMDEV_PARAM_BOOL = 2,    ///< bool; in a block 1 byte, 0 or 1
    PGMDEV_PARAM_BYTE = 3,    ///< BYTE; 1 byte
    PGMDEV_PARAM_WORD = 4,    ///< WORD; 2 bytes, low byte first
    PGMDEV_PARAM_DWORD = 5,   ///< DWORD; 4 bytes, low byte first
    PGMDEV_PARAM_QWORD = 6    ///< QWORD; 8 bytes, low byte first
};

/// The blocks of the container.
enum PGMDEV_FLASH_INI_ENUM : DWORD {
    PGMDEV_FLASH_INI_SFL_FLASH = 0,  ///< serial configuration flash; this library does not interpret it
    PGMDEV_FLASH_INI_HPS_SPI = 1,    ///< the user's SPI flash devices (PGMDEV_HPS_SPI_MGR)
    PGMDEV_FLASH_INI_HPS_NAND = 2,   ///< the user's NAND flash devices (PGMDEV_HPS_NAND_MGR)
    PGMDEV_FLASH_INI_MAX = 3         ///< the number of blocks
};

/// The blocks' names for people.
inline constexpr std::array<std::string_view, PGMDEV_FLASH_INI_MAX> PGMDEV_FLASH_INI_NAMES{"SFL FLASH", "HPS SPI",
                                                                                           "HPS NAND"};

class PGMDEV_EXPORT PGMDEV_FLASH_INI {
public:
    PGMDEV_FLASH_INI() = delete;

    // The file.

    /// A copy of a block, allocated with new BYTE[] and owned by the caller, and its size in bytes. Null, with `size`
    /// 0, when the file or the block is absent, or when anything in the file is damaged.
    static BYTE* read_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, DWORD& size);

    /// Replaces one block and keeps the others; `size` 0 with `data` null removes it. Other blocks of a damaged file
    /// are lost, since they cannot be read, but for a copy, "pgm_flash.ini.bak". A text beside the file,
    /// "pgm_flash.ini.info", tells the digest of what was written (docs/formats.md).
    ///
    /// The file is replaced in one step: whatever happens, readers find the old file or the new one, whole. Where its
    /// directory may not be written, or it is of somebody else, it is written in place (fio.h), which readers may see.
    /// False when the block does not exist, the file is there but may not be read and written, no copy of a damaged one
    /// could be kept, other writers would not end, or it could not be written; it is then as it was, unless a disk failed
    /// while it was written in place. `data` and `size` that contradict each other are reported as "data != NULL" or
    /// "data == NULL".
    static bool write_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, BYTE* data, DWORD size);

    // The values of a block. They follow each other without tags, lengths or padding.

    /// Decodes `count` values, from `position` on, into the objects that `values` points to, and moves `position` past
    /// them. False, with the values before it assigned, at the first that the block does not hold whole, and at one of
    /// an unknown type. Of the 8 bytes of a QWORD the last 4 may lie behind the end of the block; they count as zeros.
    static bool assign_flash_ini_data(const BYTE* data, DWORD& position, DWORD data_size, DWORD count,
                                      const PGMDEV_PARAM_TYPE* types, void** values);

    /// Adds to `size` the bytes that one value takes in a block.
    static void calculate_flash_ini_data_size(DWORD& size, PGMDEV_PARAM_TYPE type, void* value);

    /// Encodes one value at `position` and moves `position` past it. The buffer has room for it, as
    /// calculate_flash_ini_data_size says, and was filled with zeros: the zero byte behind a string is not written.
    static void fillup_flash_ini_data(BYTE* buffer, DWORD& position, PGMDEV_PARAM_TYPE type, void* value);

    // Values as text.

    /// One value as text: a string as it is, "True" or "False", a number in decimal or, with `hex`, as "0x" and all
    /// hexadecimal digits of its type.
    static std::string print_flash_ini_data(PGMDEV_PARAM_TYPE type, bool hex, void* value);

    /// The number that `text` spells: hexadecimal digits behind "0x", otherwise decimal digits. An empty text is 0;
    /// with `no_empty` it is reported as "!no_empty || !string.empty()". A number of more than 64 bits gives the largest
    /// of 64 bits. `valid` receives whether the text is a number, and an invalid one gives 0; without `valid` it is
    /// reported as "Invalid string to integer conversion".
    static QWORD convert_string_to_qword(std::string text, bool no_empty, bool* valid);

    /// Turns what a user typed into a value of that type, in these steps; the first that fails gives false and its text
    /// in `error`. For strings and bools nothing is checked and `value` is 0.
    /// - "-1" is the largest value of the type. Any other text is a number as above; with `hex` the "0x" may be left
    ///   out. "Invalid QWORD conversion", "Conversion overflow compare to type".
    /// - With `power_of_two`: "Input must be power of 2".
    /// - `ranges`, unless null, holds a count and as many pairs (lowest, highest). The low 32 bits of the value must
    ///   lie in one of them: "Input is out of range".
    /// - `invalid_hits`, unless null, holds a count and as many pairs (mask, pattern). The value must match none of
    ///   them: "Input is invalid (hit)".
    /// - With `exponent` the value, unless it is the type's largest, becomes 2 to its power (modulo 64), and that is
    ///   the result. Otherwise it is multiplied by `multiple`, which must not be 0 ("multiple != 0" is reported):
    ///   "Calculation overflow compare to type".
    static bool convert_string_to_qword(PGMDEV_PARAM_TYPE type, QWORD& value, bool hex, std::string text,
                                        bool power_of_two, const DWORD* ranges, const DWORD* invalid_hits,
                                        bool exponent, DWORD multiple, std::string& error);

    /// Decimal text.
    static std::string convert_qword_to_string(QWORD value);

    /// The last `count` hexadecimal digits, in upper case, behind "0x" with `prefix`. A count of 0 or more than all
    /// digits of the value is reported: "count != 0 && count <= 8" or "count != 0 && count <= 16".
    static std::string convert_dword_to_hex_string(DWORD value, DWORD count, bool prefix);
    static std::string convert_qword_to_hex_string(QWORD value, DWORD count, bool prefix);
};

/// Keeps other writers of the container out, threads and processes, from a reading to the writing that follows from it, so
/// that neither undoes what the other has done. A thread that has it may write, and may take it again; it has it until the
/// last of these goes. A process that is forked meanwhile does not have it.
///
/// It is advisory: the writers of this class wait for it, and other programs that ask for it as they do
/// (docs/reliability.md). The system takes it back when its holder ends, however that comes about.
class PGMDEV_EXPORT PGMDEV_FLASH_INI_LOCK final {
public:
    /// Waits up to 10 seconds for other writers to be done, and for a file descriptor where the process has none left.
    PGMDEV_FLASH_INI_LOCK();
    ~PGMDEV_FLASH_INI_LOCK();
    PGMDEV_FLASH_INI_LOCK(const PGMDEV_FLASH_INI_LOCK&) = delete;
    PGMDEV_FLASH_INI_LOCK& operator=(const PGMDEV_FLASH_INI_LOCK&) = delete;

    /// False when it could not be had in that time, and in the copy that a fork has made. True also where the file system
    /// has no locks, so that nothing keeps others out.
    bool is_held() const noexcept;

private:
    class STATE;
    std::unique_ptr<STATE> m_state;
};
