#include "dstr.h"

#include "dstr_catalog.h"
#include "library_path.h"

namespace {

std::string user_string(const NAME_TABLE& table, int number) {
    return name_of(DSTR_TABLES.pool, table, number);
}

int number_by_name(const NAME_TABLE& table, const char* name) {
    return name == nullptr ? 0 : number_of(DSTR_TABLES.pool, table, name);
}

bool is_valid(const NAME_TABLE& table, int number) {
    return *name_of(DSTR_TABLES.pool, table, number) != '\0';
}

}  // namespace

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
    return user_string(DSTR_TABLES.families, family);
}

std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
    return user_string(DSTR_TABLES.devices, device);
}

std::string dstr_get_user_string(int part) {
    return user_string(DSTR_TABLES.parts, part);
}

DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const char* name) {
    return static_cast<DEV_FAMILY_ENUM>(number_by_name(DSTR_TABLES.families, name));
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name) {
    return static_cast<DEV_DEVICE_ENUM>(number_by_name(DSTR_TABLES.devices, name));
}

int dstr_get_dev_part_enum_by_string(const char* name) {
    return number_by_name(DSTR_TABLES.parts, name);
}

bool dstr_are_part_names(std::string (*name_of_part)(int), std::uint64_t first, std::uint64_t second) {
    return DSTR_TABLES.part_names == NAME_LIST_DIGEST{first, second} &&
           is_in_host_library(reinterpret_cast<const void*>(name_of_part));
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
    return is_valid(DSTR_TABLES.families, family);
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
    return is_valid(DSTR_TABLES.devices, device);
}
