#ifndef PGMDEV_C_FLASH_H
#define PGMDEV_C_FLASH_H

/// \file
/// Serial flash: the database, which flash answered an identification read, what a flash says of itself, and flash that
/// users describe.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

/// The records of a flash database that are enabled, a user's own flash as the first one, and what is known of
/// identifications besides.
typedef struct pgmdev_flash_database pgmdev_flash_database;

/// Loads a packed database; null stands for the installed one.
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_open(const char* path, pgmdev_flash_database** database,
                                                pgmdev_error** error);
PGMDEV_C_EXPORT void pgmdev_flash_free(pgmdev_flash_database* database);

/// Its records. Their members are those of the source table: "device_name", "device_bit_size" ...
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_flash_records(const pgmdev_flash_database* database);

/// What is wrong with the notes on identifications that lie beside it, with the members of pgmdev_table_faults. Such lines
/// are not taken into account: an answer may be called sure for want of one.
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_flash_notes_faults(const pgmdev_flash_database* database);

/// The default record of a device name, in any case.
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_find(const pgmdev_flash_database* database, const char* device_name,
                                                size_t* record, pgmdev_error** error);

/// Further names of flash, from the list beside the database: "name", the "device_name" that answers for it, the "reason"
/// why, and the default "record" of that, which is none where no record has the name. No records when there is no such
/// list; one that cannot be read is an error. The list is read when it is first asked for.
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_further_names(const pgmdev_flash_database* database,
                                                         const pgmdev_records** names, pgmdev_error** error);

/// The default record of a device name or, when no record has it, of a further name, in any case. `further_name`, which may
/// be null, receives the index of that among the further names; PGMDEV_NO_RECORD when the name is the record's own.
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_find_any(const pgmdev_flash_database* database, const char* name,
                                                    size_t* record, size_t* further_name, pgmdev_error** error);

/// What may have been meant by a name that is not found, further names too, a "name" each: first those that begin with it,
/// then those that differ from it by few characters, then those that it begins with. Eight at most; none when none is.
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_suggestions(const pgmdev_flash_database* database, const char* name,
                                                       pgmdev_records** suggestions, pgmdev_error** error);

/// What supports the members of a record, from the list beside the database, which is read when it is first asked for. A
/// record that it does not have, such as a user's own, is not found. The lists:
/// - "groups": the "group" of members, such as "times", and the "evidence" for it, in words
/// - "sources": for each "group" (an index) the "source" keys of the evidence
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_evidence(const pgmdev_flash_database* database, size_t record,
                                                    pgmdev_answer** evidence, pgmdev_error** error);

/// What a flash answered to an identification read.
typedef struct pgmdev_flash_response {
    size_t struct_size;
    const uint8_t* bytes;
    size_t size;      ///< 256 at most
    bool silicon_id;  ///< it is an electronic signature (opcode ABh), not manufacturer, type and capacity (9Fh)
} pgmdev_flash_response;

/// What is odd about a response. What no chip answers is a fault; REPEATED is none.
typedef uint32_t pgmdev_flash_oddity;
enum {
    PGMDEV_FLASH_ODDITY_NONE = 0,
    PGMDEV_FLASH_ODDITY_IDLE = 1,                ///< nothing but zeros, or nothing but ones
    PGMDEV_FLASH_ODDITY_STUCK = 2,               ///< one byte again and again
    PGMDEV_FLASH_ODDITY_CONTINUATION = 3,        ///< begins with continuation codes, 7F
    PGMDEV_FLASH_ODDITY_LATE = 4,                ///< other bytes stand before the identification
    PGMDEV_FLASH_ODDITY_FIRST_BYTE_MISSING = 5,  ///< begins with the second byte
    PGMDEV_FLASH_ODDITY_SHIFTED = 6,             ///< one clock too many, or too few
    PGMDEV_FLASH_ODDITY_REVERSED = 7,            ///< its last byte first
    PGMDEV_FLASH_ODDITY_REPEATED = 8             ///< the identification over and over, as many chips send it
};

/// Which flash it is.
typedef struct pgmdev_flash_verdict {
    size_t struct_size;
    size_t record;           ///< by which it is driven; PGMDEV_NO_RECORD: none
    bool sure;               ///< nothing that is known leaves another device
    bool doubtful;           ///< no chip answers like this, or not the one of the record
    uint32_t telling_bytes;  ///< how many bytes of the response tell something
    pgmdev_flash_oddity oddity;
    size_t probable_record;  ///< of an odd response, the record of what was probably sent; PGMDEV_NO_RECORD: none
} pgmdev_flash_verdict;

/// Which flash answered. A record that drives it is OK, none is not found; `verdict` and `details` are given in both cases,
/// and either may be null. The lists of the details:
/// - "verdict", one record: what the structure has, and "oddity_text", a sentence
/// - "candidates": "record", "device_name", and "standing": TAKEN, ALIKE (no byte speaks for the taken one rather than this
///   one), OPEN (a byte that it compares was not given), PASSED_OVER, RULED_OUT (by what is known besides)
/// - "compared": for each "candidate" (an index) the bytes that it compares, "position", "expected", "given"
/// - "differences": for each "candidate" the "member" values that differ from those of the taken record and matter for
///   driving it, "risk", "taken", "other" and "harm", the worst first
/// - "missing_bytes": "position" of bytes that would tell open candidates apart
/// - "nearest": "record" and "device_name" that are nearest when none is taken
/// - "ambiguities": "response", "telling_byte", "told_apart_by", "risk", "harm"; "ambiguous_chips": for each "ambiguity" (an
///   index) the "chip" names
/// - "contradictions": "position", "found", "expected" of bytes that the taken flash does not give; "fitting": the
///   "device_name" of flash whose whole identification it is then, in the database or not
PGMDEV_C_EXPORT pgmdev_status pgmdev_flash_identify(const pgmdev_flash_database* database,
                                                    const pgmdev_flash_response* response,
                                                    pgmdev_flash_verdict* verdict, pgmdev_answer** details,
                                                    pgmdev_error** error);

/// What a flash says of itself: the `size` bytes of its SFDP (JEDEC JESD216) from address 0 on; and the record that follows
/// for one that answers `id` (maker, type and capacity byte). Of bytes that are none, the status is
/// PGMDEV_STATUS_REFUSED, and the answer has just "refusal", with the members "offset", "field", "found" and "expected".
/// Otherwise its lists are:
/// - "sfdp" and "basic", one record each: the header, and the Basic Flash Parameter Table
/// - "headers", "fast_reads", "erase_types", "four_byte_instructions", "four_byte_erase", "map_commands", "sector_maps",
///   and for each "map" (an index) its "regions"
/// - "status_polling", "soft_reset", "enter_4byte", "exit_4byte", "warnings": a "text" each
/// - "record", with the members of a flash database, and "assumed": the "member" values that nothing tells, and what was
///   "taken"; or no record, and why in "obstacle"
PGMDEV_C_EXPORT pgmdev_status pgmdev_sfdp_decode(const uint8_t* bytes, size_t size, const uint8_t* id, size_t id_size,
                                                 pgmdev_answer** answer, pgmdev_error** error);

/// What an encoded description of a user's own flash holds, and why it would not be taken. The lists:
/// - "descriptions": "body", "password", "password_valid", "complete", "plausible", "taken": the first one, or none
/// - "records", one for each description, with the members of a flash database: what it says, up to the first value that is
///   refused
/// - "faults": for each "description" (an index) the "text" of why it is not taken
PGMDEV_C_EXPORT pgmdev_status pgmdev_user_flash_decode(const char* encoded, pgmdev_answer** answer,
                                                       pgmdev_error** error);

/// One to three flashes as an encoded text, the value of the configuration key "PGM_USER_SFL_FLASH_INFO". `values` are those
/// of the flashes one after the other, in the order of the members of a flash database (pgmdev_table_members).
PGMDEV_C_EXPORT pgmdev_status pgmdev_user_flash_encode(const pgmdev_value* values, size_t count,
                                                       pgmdev_string** encoded, pgmdev_error** error);

/// The "member" values for which a description of that flash would not be taken: "found" and "expected".
PGMDEV_C_EXPORT pgmdev_status pgmdev_user_flash_check(const pgmdev_value* values, size_t count,
                                                      pgmdev_records** implausible, pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
