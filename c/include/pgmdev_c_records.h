#ifndef PGMDEV_C_RECORDS_H
#define PGMDEV_C_RECORDS_H

/// \file
/// Records: some things that have the same members. All that the library knows comes in this form: flash devices,
/// profiles, parts, faults of a table. What members there are is asked for, not compiled in: a later version may have
/// more of them, behind those that were there. Names, kinds and units stay.

#include "pgmdev_c_base.h"

#if defined(__cplusplus)
extern "C" {
#endif

/// What a value is.
typedef uint32_t pgmdev_kind;
enum {
    PGMDEV_KIND_NONE = 0,        ///< nothing: it is not known, or there is none
    PGMDEV_KIND_BOOL = 1,        ///< `number` is 0 or 1
    PGMDEV_KIND_NUMBER = 2,      ///< `number`
    PGMDEV_KIND_TEXT = 3,        ///< `text`
    PGMDEV_KIND_ENUMERATOR = 4,  ///< `number`, and its name as `text`: "" when it has none
    PGMDEV_KIND_BYTES = 5        ///< `text`, but any bytes
};

/// One value. This structure stays as it is, so that there can be arrays of it.
typedef struct pgmdev_value {
    pgmdev_kind kind;
    uint32_t reserved;  ///< 0, also in what the library is given
    uint64_t number;
    const char* text;  ///< never null in what the library hands out; null stands for "" in what it is given
    size_t text_size;  ///< its bytes, without the zero byte behind them; ignored where a text is given to the library
} pgmdev_value;

/// One member.
typedef struct pgmdev_member {
    size_t struct_size;
    const char* name;
    pgmdev_kind kind;  ///< of its values, which may also be PGMDEV_KIND_NONE; PGMDEV_KIND_NONE: they differ in kind
    uint32_t bits;     ///< of a number; 0 for what is none
    uint32_t base;     ///< in which people write its numbers: 10 or 16
    const char* unit;  ///< of its numbers; "" when they count nothing
} pgmdev_member;

#define PGMDEV_NO_RECORD SIZE_MAX

typedef struct pgmdev_records pgmdev_records;

/// How many there are; 0 of a null pointer.
PGMDEV_C_EXPORT size_t pgmdev_records_count(const pgmdev_records* records);
PGMDEV_C_EXPORT size_t pgmdev_records_member_count(const pgmdev_records* records);

PGMDEV_C_EXPORT pgmdev_status pgmdev_records_member(const pgmdev_records* records, size_t index, pgmdev_member* member,
                                                    pgmdev_error** error);

/// The index of the member of that name.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_find_member(const pgmdev_records* records, const char* name, size_t* index,
                                                         pgmdev_error** error);

/// A value by the indexes of record and member.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_value(const pgmdev_records* records, size_t record, size_t member,
                                                   pgmdev_value* value, pgmdev_error** error);

/// All values of a record, in the order of the members; `count` is their number.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_values(const pgmdev_records* records, size_t record, pgmdev_value* values,
                                                    size_t count, pgmdev_error** error);

/// The number of a BOOL, NUMBER or ENUMERATOR, the text of a TEXT or ENUMERATOR, by the name of the member. No value
/// (PGMDEV_KIND_NONE) is not found; a value of another kind, or no such member, is an invalid argument.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_number(const pgmdev_records* records, size_t record, const char* member,
                                                    uint64_t* number, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_text(const pgmdev_records* records, size_t record, const char* member,
                                                  const char** text, pgmdev_error** error);

/// The first record, from `first` on, that has the text in that member, without regard to the case of ASCII letters.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_find(const pgmdev_records* records, size_t first, const char* member,
                                                  const char* text, size_t* record, pgmdev_error** error);

/// The first record, from `first` on, whose text in that member fits a pattern, in any case of ASCII letters: "*" stands for
/// any characters or none, "?" for any one, and every other character for itself.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_find_fitting(const pgmdev_records* records, size_t first,
                                                          const char* member, const char* pattern, size_t* record,
                                                          pgmdev_error** error);

/// What may have been meant by a text that is not there: texts of that member that differ from it by few characters added,
/// left out, replaced or swapped, in any case, a "name" each. Five at most, the most similar one first; none when none is.
PGMDEV_C_EXPORT pgmdev_status pgmdev_records_suggestions(const pgmdev_records* records, const char* member,
                                                         const char* text, pgmdev_records** suggestions,
                                                         pgmdev_error** error);

PGMDEV_C_EXPORT void pgmdev_records_free(pgmdev_records* records);

/// An answer of several lists of records, each under its name.
typedef struct pgmdev_answer pgmdev_answer;

PGMDEV_C_EXPORT size_t pgmdev_answer_list_count(const pgmdev_answer* answer);

/// The name of a list; null behind the last one.
PGMDEV_C_EXPORT const char* pgmdev_answer_list_name(const pgmdev_answer* answer, size_t index);

/// The list of that name; null when there is none, and of null pointers.
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_answer_list(const pgmdev_answer* answer, const char* name);

PGMDEV_C_EXPORT void pgmdev_answer_free(pgmdev_answer* answer);

/// The versions of what is running, one record: "library", "host", "catalog" and the stamps of the databases that are read,
/// "flash_stamp", "dev_info_stamp" and "body_version".
PGMDEV_C_EXPORT pgmdev_status pgmdev_versions(pgmdev_records** versions, pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
