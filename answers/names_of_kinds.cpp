#include "names_of_kinds.h"

#include <algorithm>
#include <array>

#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "upper_name.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

bool is_part(const std::string& name) {
    return upper_name(dstr_get_dev_part_enum_by_string(name.c_str())) == name;  // a number may have further names
}

bool is_device(const std::string& name) {
    const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(name.c_str());
    return device != DEV_DEVICE_GENERIC && upper_name(device) == name;
}

/// Whether the part has the name by a conversion.
bool has_name(std::string part, const std::string& name, const NAME_KINDS& kinds) {
    const std::array names{GRAMMAR::get_package_name(part, true), GRAMMAR::get_pgm_name(part, false, true)};
    return std::any_of(names.begin(), names.end(), [&](const std::string& of_part) {
        return (kinds.package_or_programming && of_part == name) ||
               (kinds.programmer_part && GRAMMAR::get_pgm_part_pcf(of_part) == name);
    });
}

bool is_family(const std::string& name) {
    const DEV_FAMILY_ENUM family = dstr_get_dev_family_enum_by_string(name.c_str());
    return family != DEV_FAMILY_GENERIC && upper_name(family) == name;
}

bool is_converted(const std::string& name, const NAME_KINDS& kinds) {
    const std::vector<std::string> origins = PGMDEV_PART_INDEX::get_origins(name);
    const auto is_part_with_name = [&](const std::string& origin) {
        return is_part(origin) && has_name(origin, name, kinds);
    };
    return std::any_of(origins.begin(), origins.end(), is_part_with_name) || is_part_with_name(name);
}

/// Considers the names of the numbers up to `end`: in upper case, but most need not be converted to be left out.
template <class NUMBER>
void consider_names(NEAR_NAMES& near, int end) {
    for (int number = 1; number < end; ++number) {
        if (near.may_be_near(dstr_get_user_string(static_cast<NUMBER>(number)))) {
            near.consider(upper_name(static_cast<NUMBER>(number)));
        }
    }
}

}  // namespace

NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds, const std::vector<std::string>& converted) {
    NEAR_NAMES near(name);
    if (kinds.part) {
        consider_names<int>(near, std::min(DEV_PART_GENERIC, DEV_PART_MAX));
    }
    if (kinds.device) {
        consider_names<DEV_DEVICE_ENUM>(near, DEV_DEVICE_GENERIC);
    }
    if (kinds.family) {
        consider_names<DEV_FAMILY_ENUM>(near, DEV_FAMILY_MAX);
    }
    if (kinds.may_be_converted()) {
        for (const std::string& each : converted) {
            near.consider(each);
        }
    }
    return near;
}

std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds,
                                       const std::vector<std::string>& converted) {
    return near_names(name, kinds, converted).best([&kinds](const std::string& near) {
        return (kinds.part && is_part(near)) || (kinds.device && is_device(near)) ||
               (kinds.family && is_family(near)) || is_converted(near, kinds);
    });
}
