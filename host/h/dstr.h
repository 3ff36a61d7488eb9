#pragma once

/// \file
/// The device-string library: names and numbers of families, devices and parts.
///
/// Names are looked up without regard to ASCII case, but as they are given: white space is not removed. No operation
/// reports: a name that is not known, or a null pointer, gives the invalid number; a number that is not known gives "".
/// A part may have further names; looking one up gives the part's number, whose display name is another.

#include <cstdint>
#include <string>

#include "host_export.h"

/// Device families. Only those that programs name are listed; the catalog knows all of them.
enum DEV_FAMILY_ENUM : int {
    DEV_FAMILY_INVALID = 0,
    DEV_FAMILY_KESTREL = 6,
    DEV_FAMILY_MERLIN = 50,
    DEV_FAMILY_PETREL = 54,
    DEV_FAMILY_HERON = 61,
    DEV_FAMILY_PLOVER = 63,
    DEV_FAMILY_OSPREY = 65,
    DEV_FAMILY_SHRIKE = 71,
    DEV_FAMILY_GENERIC = 72,
    DEV_FAMILY_MAX = 73
};

/// Devices: a family's dies, each sold as many parts.
enum DEV_DEVICE_ENUM : int { DEV_DEVICE_INVALID = 0, DEV_DEVICE_GENERIC = 990, DEV_DEVICE_MAX = 991 };

/// Part numbers are plain int. These bounds come with the catalog.
HOST_EXPORT extern const int DEV_PART_INVALID;  ///< no part
HOST_EXPORT extern const int DEV_PART_GENERIC;  ///< stands for any part; above all real ones
HOST_EXPORT extern const int DEV_PART_MAX;      ///< above all part numbers

/// The display name of a family, device or part; "Generic" for the generic ones.
HOST_EXPORT std::string dstr_get_user_string(DEV_FAMILY_ENUM family);
HOST_EXPORT std::string dstr_get_user_string(DEV_DEVICE_ENUM device);
HOST_EXPORT std::string dstr_get_user_string(int part);

HOST_EXPORT DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const char* name);
HOST_EXPORT DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name);
HOST_EXPORT int dstr_get_dev_part_enum_by_string(const char* name);

#if !defined(PGMHOST_HAS_THE_LEAST)
/// Whether the names that `name_of_part` gives to all parts, from number 1 up to the generic one, are known to be those of a
/// list with that digest, which the device data brings: without asking for every one. `name_of_part` is the
/// dstr_get_user_string of the caller; nothing is known of one that is not in this library, but in a program in front of it.
HOST_EXPORT bool dstr_are_part_names(std::string (*name_of_part)(int), std::uint64_t first, std::uint64_t second);
#endif

/// Whether the number is that of a family (1 to 72) or device (1 to 990) of the catalog.
HOST_EXPORT bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family);
HOST_EXPORT bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device);
