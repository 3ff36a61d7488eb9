#ifndef PGMDEV_C_NAMES_H
#define PGMDEV_C_NAMES_H

/// \file
/// Names of devices in each naming scheme, ordering codes, parts, and the programmer's enumerations. A name that leads
/// nowhere is not found. Names are given in any case.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

/// A way from one spelling of a name to another.
typedef uint32_t pgmdev_name_conversion;
enum {
    PGMDEV_NAME_PACKAGE = 0,             ///< the package name of a full ordering name
    PGMDEV_NAME_PROGRAMMING = 1,         ///< the programming name of a full ordering name or package name
    PGMDEV_NAME_PROGRAMMING_PART = 2,    ///< the programmer-file part name of a programming name
    PGMDEV_NAME_PROGRAMMING_FAMILY = 3,  ///< the programmer-file family name of a programming name
    PGMDEV_NAME_DEVICE_PART = 4,         ///< the programmer-file part name of a device of the device library
    PGMDEV_NAME_DEVICE_FAMILY = 5,       ///< its programmer-file family name
    PGMDEV_NAME_FAMILY_FAMILY = 6,       ///< the programmer-file family name of a family-level device name
    PGMDEV_NAME_FAMILY = 7,              ///< the family of a programmer-file part, programming or device name
    PGMDEV_NAME_DEVICE = 8,              ///< the first device that has a programmer-file part name
    PGMDEV_NAME_PART_FILE = 9,           ///< the programmer-file part name of an ordering, package or programming name
    PGMDEV_NAME_FAMILY_FILE = 10,        ///< its programmer-file family name
    PGMDEV_NAME_CONVERSIONS = 11         ///< how many there are
};

/// How PACKAGE and PROGRAMMING treat a name that has no other spelling.
enum {
    PGMDEV_NAME_OR_ITSELF = 1,    ///< it stands for itself, instead of not being found
    PGMDEV_NAME_FROM_PACKAGE = 2  ///< PROGRAMMING takes package names only, not full ordering names
};

PGMDEV_C_EXPORT pgmdev_status pgmdev_name_convert(pgmdev_name_conversion conversion, const char* name, uint32_t options,
                                                  pgmdev_string** converted, pgmdev_error** error);

/// Whether a full ordering name is the package name and the programming name, too; whether the package name (of a full
/// ordering name, or the name itself) is the programming name, too.
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_is_full_for_all(const char* name, bool* answer, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_is_package_for_programming(const char* name, bool* answer,
                                                                     pgmdev_error** error);

/// Every spelling of a name, one record: "package_name", "pgm_name", "pgm_part_pcf", "pgm_family_pcf", "dev_part_pcf",
/// "dev_family_pcf", "pcf_family_pcf", "family", "pcf_device", "part_pcf", "family_pcf" in the order of the conversions, ""
/// for those that it has not, then "use_full_name", "use_package_name" and "possible_full_name". A name that leads nowhere
/// is PGMDEV_STATUS_OK here, and has "" for each.
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_spellings(const char* name, pgmdev_records** spellings, pgmdev_error** error);

/// The names from which conversions lead to that one, in any number of steps, a "name" each: full names, package names,
/// programming names, devices.
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_origins(const char* name, pgmdev_records** origins, pgmdev_error** error);

/// The names that conversions of parts and devices lead to, a "name" each. One may be there more than once.
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_converted(pgmdev_records** names, pgmdev_error** error);

/// Kinds of names.
enum {
    PGMDEV_NAMED_PART = 1,
    PGMDEV_NAMED_PACKAGE = 2,          ///< package names and programming names
    PGMDEV_NAMED_PROGRAMMER_PART = 4,  ///< programmer-file part names
    PGMDEV_NAMED_DEVICE = 8,
    PGMDEV_NAMED_FAMILY = 16,
    PGMDEV_NAMED_ANYTHING = 31  ///< all of them
};

/// What may have been meant by a name that leads nowhere: names of the kinds in `kinds`, added up, that differ from it by few
/// characters added, left out, replaced or swapped, a "name" each. Five at most, the most similar one first; none when none
/// is.
PGMDEV_C_EXPORT pgmdev_status pgmdev_name_suggestions(const char* name, uint32_t kinds, pgmdev_records** suggestions,
                                                      pgmdev_error** error);

/// Ordering codes: the name at an index, the first index of a name; the 48-bit hash of a part's name, and the first part
/// with that hash.
PGMDEV_C_EXPORT pgmdev_status pgmdev_opn_name(uint32_t index, pgmdev_string** name, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_opn_index(const char* name, uint32_t* index, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_opn_hash(const char* name, uint64_t* hash, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_opn_from_hash(uint64_t hash, pgmdev_string** name, pgmdev_error** error);

/// The first part of a device, as the device library spells it: an orderable one in production rather than one that is only
/// orderable, rather than one that is only in production, rather than any; hidden ones do not count. The first part,
/// likewise, whose own name is a programming name with that programmer-file part name; for "", one that has no such name. The
/// first part that a package, programming or ordering name stands for. The first and the last also report a name that is
/// none, and go on.
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_from_device(const char* device, pgmdev_string** part, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_from_pcf(const char* pcf, pgmdev_string** part, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_complete(const char* name, pgmdev_string** part, pgmdev_error** error);

/// The same answers of pgmdev_part_from_pcf and pgmdev_part_complete without reports, and quick from the first question on.
typedef struct pgmdev_part_index pgmdev_part_index;

PGMDEV_C_EXPORT pgmdev_status pgmdev_part_index_open(pgmdev_part_index** index, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_index_from_pcf(const pgmdev_part_index* index, const char* pcf,
                                                         pgmdev_string** part, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_index_complete(const pgmdev_part_index* index, const char* name,
                                                         pgmdev_string** part, pgmdev_error** error);
PGMDEV_C_EXPORT void pgmdev_part_index_free(pgmdev_part_index* index);

/// Which parts are wanted. A null text or "ANY" does not restrict; the others are compared without regard to case.
typedef struct pgmdev_part_filter {
    size_t struct_size;
    const char* family;
    const char* device;
    const char* package;      ///< type, such as "FBGA"
    const char* pins;         ///< their number
    const char* speed;        ///< grade
    const char* temperature;  ///< range, such as "INDUSTRIAL"
    bool orderable;           ///< only parts with an ordering code
    bool production;          ///< only parts in production
    bool hidden;              ///< hidden ones, too
} pgmdev_part_filter;

/// Parts by number: "number", "name", "device", "family", "package_name", "pgm_name", "pgm_part_pcf", "pgm_family_pcf",
/// "orderable", "production", "hidden". A null filter gives all that are not hidden.
PGMDEV_C_EXPORT pgmdev_status pgmdev_part_list(const pgmdev_part_filter* filter, pgmdev_records** parts,
                                               pgmdev_error** error);

/// All devices and families of the device library: "number", "name", of devices "family", "dev_part_pcf" and
/// "dev_family_pcf", of families "pcf_family_pcf".
PGMDEV_C_EXPORT pgmdev_status pgmdev_device_list(pgmdev_records** devices, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_family_list(pgmdev_records** families, pgmdev_error** error);

/// The programmer's enumerations.
typedef uint32_t pgmdev_enumeration;
enum {
    PGMDEV_ENUMERATION_BLOCK = 0,        ///< device blocks and routing tiles
    PGMDEV_ENUMERATION_SECTOR = 1,       ///< sectors of a configuration flash
    PGMDEV_ENUMERATION_OPTION_BIT = 2,   ///< option bits
    PGMDEV_ENUMERATION_SOF_SETTING = 3,  ///< processor-subsystem settings
    PGMDEV_ENUMERATIONS = 4              ///< how many there are
};

PGMDEV_C_EXPORT pgmdev_status pgmdev_enum_name(pgmdev_enumeration enumeration, uint32_t value, pgmdev_string** name,
                                               pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_enum_value(pgmdev_enumeration enumeration, const char* name, uint32_t* value,
                                                pgmdev_error** error);

/// All "value"s from 1 on, and their "name"s.
PGMDEV_C_EXPORT pgmdev_status pgmdev_enum_list(pgmdev_enumeration enumeration, pgmdev_records** enumerators,
                                               pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
