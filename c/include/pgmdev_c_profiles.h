#ifndef PGMDEV_C_PROFILES_H
#define PGMDEV_C_PROFILES_H

/// \file
/// Programming profiles: how the programmer treats a family, a device or a part.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

typedef struct pgmdev_profile_database pgmdev_profile_database;

/// Loads a packed database; null stands for the installed one.
PGMDEV_C_EXPORT pgmdev_status pgmdev_profile_open(const char* path, pgmdev_profile_database** database,
                                                  pgmdev_error** error);
PGMDEV_C_EXPORT void pgmdev_profile_free(pgmdev_profile_database* database);

/// Its records. Their members are those of the source table; families, devices, parts and enumerators are numbers with
/// names.
PGMDEV_C_EXPORT const pgmdev_records* pgmdev_profile_records(const pgmdev_profile_database* database);

/// What a profile is asked for by.
typedef uint32_t pgmdev_profile_key;
enum {
    PGMDEV_PROFILE_FAMILY = 0,
    PGMDEV_PROFILE_DEVICE = 1,
    PGMDEV_PROFILE_PART = 2,
    PGMDEV_PROFILE_KEYS = 3  ///< how many there are
};

/// The record that governs the family, device or part of that name, as the device library knows it, or of that number.
PGMDEV_C_EXPORT pgmdev_status pgmdev_profile_find(const pgmdev_profile_database* database, pgmdev_profile_key key,
                                                  const char* name, size_t* record, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_profile_find_number(const pgmdev_profile_database* database,
                                                         pgmdev_profile_key key, uint32_t number, size_t* record,
                                                         pgmdev_error** error);

/// Of everything of that kind that a record governs, "number", "name" and "record".
PGMDEV_C_EXPORT pgmdev_status pgmdev_profile_governed(const pgmdev_profile_database* database, pgmdev_profile_key key,
                                                      pgmdev_records** governed, pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
