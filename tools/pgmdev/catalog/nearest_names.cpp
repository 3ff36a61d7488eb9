#include "catalog/nearest_names.h"

#include <algorithm>

#include "catalog/device_names.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"
#include "terminal/did_you_mean.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// Whether `name` is what a number stands for; a number may have further names.
template <class NUMBER>
bool is_name_of(NUMBER number, const std::string& name) {
    std::string own = dstr_get_user_string(number);
    stl_toupper(own);
    return own == name;
}

bool is_part(const std::string& name) {
    return is_name_of(dstr_get_dev_part_enum_by_string(name.c_str()), name);
}

bool is_device(const std::string& name) {
    const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(name.c_str());
    return device != DEV_DEVICE_GENERIC && is_name_of(device, name);
}

/// Whether the part has the name by a conversion.
bool has_name(std::string part, const std::string& name, const NAME_KINDS& kinds) {
    for (std::string of_part : {GRAMMAR::get_package_name(part, true), GRAMMAR::get_pgm_name(part, false, true)}) {
        if ((kinds.package_or_programming && of_part == name) ||
            (kinds.programmer_part && GRAMMAR::get_pgm_part_pcf(of_part) == name)) {
            return true;
        }
    }
    return false;
}

bool is_converted(const std::string& name, const NAME_KINDS& kinds) {
    const std::vector<std::string> origins = PGMDEV_PART_INDEX::get_origins(name);
    const auto is_part_with_name = [&](const std::string& origin) {
        return is_part(origin) && has_name(origin, name, kinds);
    };
    return std::any_of(origins.begin(), origins.end(), is_part_with_name) || is_part_with_name(name);
}

}  // namespace

std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds) {
    std::vector<std::string> candidates;
    const auto add = [&candidates](const std::vector<std::string>& names) {
        candidates.insert(candidates.end(), names.begin(), names.end());
    };
    if (kinds.part) {
        add(part_names());
    }
    if (kinds.device) {
        add(device_names());
    }
    if (kinds.package_or_programming || kinds.programmer_part) {
        add(PGMDEV_PART_INDEX::get_converted_names());
    }
    return nearest(name, candidates, [&kinds](const std::string& near) {
        return (kinds.part && is_part(near)) || (kinds.device && is_device(near)) || is_converted(near, kinds);
    });
}
