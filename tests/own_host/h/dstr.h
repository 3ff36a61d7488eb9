#pragma once

#include <string>

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

enum DEV_DEVICE_ENUM : int { DEV_DEVICE_INVALID = 0, DEV_DEVICE_GENERIC = 990, DEV_DEVICE_MAX = 991 };

extern int DEV_PART_INVALID;
extern int DEV_PART_GENERIC;
extern int DEV_PART_MAX;

std::string dstr_get_user_string(DEV_FAMILY_ENUM family);
std::string dstr_get_user_string(DEV_DEVICE_ENUM device);
std::string dstr_get_user_string(int part);
DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name);
int dstr_get_dev_part_enum_by_string(const char* name);
bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family);
bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device);
