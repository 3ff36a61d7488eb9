#include "support/names.h"

#include <algorithm>
#include <random>
#include <set>

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

namespace {

std::vector<std::string> typed(std::vector<std::string> names) {
    for (std::string& name : names) {
        name.insert(0, " ");
        stl_tolower(name);
    }
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): the same every run
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

}  // namespace

const std::vector<std::string>& typed_names() {
    static const std::vector<std::string> NAMES = [] {
        std::vector<std::string> names;
        for (const auto& [name, package_name] : package_names()) {
            names.push_back(name);
        }
        return typed(std::move(names));
    }();
    return NAMES;
}

const std::vector<std::string>& typed_package_names() {
    static const std::vector<std::string> NAMES = [] {
        std::vector<std::string> names;
        for (const auto& [name, package_name] : package_names()) {
            names.push_back(package_name);
        }
        return typed(std::move(names));
    }();
    return NAMES;
}

const std::vector<std::string>& typed_programmer_file_names() {
    static const std::vector<std::string> NAMES = [] {
        std::set<std::string> names;
        for (const auto& [name, package_name] : package_names()) {
            std::string part_pcf;
            std::string family_pcf;
            PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(name, part_pcf, family_pcf);
            names.insert(part_pcf);
        }
        names.erase("");
        return typed({names.begin(), names.end()});
    }();
    return NAMES;
}
