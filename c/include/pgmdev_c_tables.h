#ifndef PGMDEV_C_TABLES_H
#define PGMDEV_C_TABLES_H

/// \file
/// The tables of flash devices and of profiles, for those who maintain them: everything that is wrong with a source table at
/// once, compiling it, and the way back.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

typedef uint32_t pgmdev_table_type;
enum { PGMDEV_TABLE_FLASH = 0, PGMDEV_TABLE_PROFILES = 1, PGMDEV_TABLE_TYPES = 2 };

/// No records, with the members of that table.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_members(pgmdev_table_type type, pgmdev_records** members,
                                                   pgmdev_error** error);

/// A table as a whole: every row, whatever switch enables it.
typedef struct pgmdev_table pgmdev_table;

/// Reads a source table and finds all its faults, of which the first 10,000 are listed, and then how many there are. A file
/// that cannot be read is a fault, too.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_from_source(pgmdev_table_type type, const char* csv_file,
                                                       pgmdev_table** table, pgmdev_error** error);

/// Reads a packed database; one that is damaged, or of another kind, is an error.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_from_database(pgmdev_table_type type, const char* pcf_file,
                                                         pgmdev_table** table, pgmdev_error** error);

PGMDEV_C_EXPORT void pgmdev_table_free(pgmdev_table* table);

/// The records in row order; none when the source table has a fault in its format.
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_table_records(const pgmdev_table* table);

/// What is wrong with it: "severity" (FAULT or WARNING), "line" and "column" from 1, 0 for the whole, "row", "member",
/// "cell", "condition" (the internal error that compiling it reports), "expected", and "text", all of it in one line.
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_table_faults(const pgmdev_table* table);

/// Whether there is a fault among them, not only warnings.
PGMDEV_C_EXPORT bool pgmdev_table_has_faults(const pgmdev_table* table);

/// The length of the uncompressed body of a packed database; 0 of a null pointer.
PGMDEV_C_EXPORT size_t pgmdev_table_payload_size(const pgmdev_table* table);

/// The records as a source table that compiles to the same payload. Records that cannot be one are refused; the message of
/// the error says which is in the way.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_source_text(const pgmdev_table* table, pgmdev_string** text,
                                                       pgmdev_error** error);

/// Where two tables of one type differ, by "record" (an index) and "member": the values "left" and "right" as text. A record
/// that only one of them has is a difference without a member.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_compare(const pgmdev_table* left, const pgmdev_table* right,
                                                   pgmdev_records** differences, pgmdev_error** error);

/// Compiles a source table into a packed database, which is replaced in one step when everything has succeeded. A table
/// that is refused is reported with the first condition that it breaks.
PGMDEV_C_EXPORT pgmdev_status pgmdev_table_compile(pgmdev_table_type type, const char* csv_file, const char* pcf_file,
                                                   pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
