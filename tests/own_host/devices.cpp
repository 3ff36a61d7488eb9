// A catalog with numbered families and devices, and three parts.

#include <array>
#include <string_view>

#include "dev.h"

namespace {

constexpr std::array<std::string_view, 5> PARTS{"", "KES50C6", "KES50I7", "No such part elsewhere", "Generic"};

}  // namespace

int DEV_PART_INVALID = 0;
int DEV_PART_GENERIC = 4;
int DEV_PART_MAX = 5;

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
    return family == DEV_FAMILY_GENERIC ? "Generic" : "Family" + std::to_string(static_cast<int>(family));
}

std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
    return device == DEV_DEVICE_GENERIC ? "Generic" : "Device" + std::to_string(static_cast<int>(device));
}

std::string dstr_get_user_string(int part) {
    return part >= 0 && part < DEV_PART_MAX ? std::string(PARTS[static_cast<std::size_t>(part)]) : "";
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name) {
    for (int device = 1; device < DEV_DEVICE_MAX; ++device) {
        if (dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(device)) == name) {
            return static_cast<DEV_DEVICE_ENUM>(device);
        }
    }
    return DEV_DEVICE_INVALID;
}

int dstr_get_dev_part_enum_by_string(const char* name) {
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_MAX; ++part) {
        if (dstr_get_user_string(part) == name) {
            return part;
        }
    }
    return DEV_PART_INVALID;
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
    return family > DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX;
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
    return device > DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX;
}

DEV_PART_MANAGER::DEV_PART_MANAGER() : m_devices{0, 7, 7, 8, 990} {}

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) {
    return dstr_is_valid_dev_device_enum(device) ? static_cast<DEV_FAMILY_ENUM>(device % 72 + 1) : DEV_FAMILY_INVALID;
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(int part) {
    return static_cast<DEV_DEVICE_ENUM>(m_devices.at(static_cast<std::size_t>(part)));
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<int>* parts, std::string family, std::string /*device*/,
                                        std::string /*package*/, std::string /*pin_count*/, std::string /*speed_grade*/,
                                        bool orderable_only, bool production_only, bool /*include_hidden*/,
                                        std::string /*temperature_grade*/) {
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const bool passes = family == "ANY" || dstr_get_user_string(get_family_of(get_device_of(part))) == family;
        if (passes && !(orderable_only && production_only)) {
            parts->push_back(part);
        }
    }
    return !parts->empty();
}
