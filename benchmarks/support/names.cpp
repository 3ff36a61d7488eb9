#include "support/names.h"

#include <algorithm>
#include <random>

#include "dstr.h"
#include "pgmdev_device_grammar_mgr.h"
#include "stl.h"

const NAME_PAIRS& package_names() {
    static const NAME_PAIRS PAIRS = [] {
        NAME_PAIRS all;
        for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
            std::string name = dstr_get_user_string(part);
            stl_toupper(name);
            std::string package_name = PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(name, true);
            if (!package_name.empty()) {
                all.emplace_back(std::move(name), std::move(package_name));
            }
        }
        return all;
    }();
    return PAIRS;
}

const std::vector<std::string>& typed_names() {
    static const std::vector<std::string> NAMES = [] {
        std::vector<std::string> names;
        for (const auto& [name, package_name] : package_names()) {
            names.push_back(" " + name);
            stl_tolower(names.back());
        }
        std::shuffle(names.begin(), names.end(), std::mt19937(1));
        return names;
    }();
    return NAMES;
}
