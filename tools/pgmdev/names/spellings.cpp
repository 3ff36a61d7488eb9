#include "names/spellings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "catalog/device_names.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// The family of all of the parts; "" when they have none in common.
std::string family_of(const std::vector<int>& parts) {
    const DEV_PART_MANAGER manager;
    const auto family = [&manager](int part) { return manager.get_family_of(manager.get_device_of(part)); };
    const auto differs = [&](int part) { return family(part) != family(parts.front()); };
    return parts.empty() || std::any_of(parts.begin(), parts.end(), differs) ? "" : upper_name(family(parts.front()));
}

}  // namespace

std::vector<SPELLING> spellings_of(std::string name) {
    std::string package_name = GRAMMAR::get_package_name(name, true);  // trims the name, converts it to upper case
    if (package_name.empty() && !GRAMMAR::get_pgm_name(name, true, true).empty()) {
        package_name = name;
    }
    std::string pgm_name = GRAMMAR::get_pgm_name(name, false, true);
    if (pgm_name.empty() && !GRAMMAR::get_pgm_part_pcf(name).empty()) {
        pgm_name = name;
    }
    std::string pgm_part_pcf;
    std::string pgm_family_pcf;
    GRAMMAR::get_pgm_pcfs(name, pgm_part_pcf, pgm_family_pcf);
    std::string dev_part_pcf;
    std::string dev_family_pcf;
    GRAMMAR::get_dev_pcfs(name, dev_part_pcf, dev_family_pcf);
    std::string family = GRAMMAR::get_family(name);
    if (family.empty()) {
        family = GRAMMAR::get_family(pgm_name);
    }
    std::string pcf_family_pcf = GRAMMAR::get_pcf_family_pcf(name);
    std::string pcf_device = GRAMMAR::get_pcf_device(name);
    const bool use_full_name = GRAMMAR::use_full_name(name);
    const bool use_package_name = GRAMMAR::use_package_name(name);
    std::string full_name = ask_quietly([&name] { return PGMDEV_MGR::get_possible_full_name(name); });
    std::array<SPELLING, 13> spellings{{
        {"name", "name", std::move(name)},
        {"package_name", "package name", std::move(package_name)},
        {"pgm_name", "programming name", std::move(pgm_name)},
        {"pgm_part_pcf", "programmer-file part", std::move(pgm_part_pcf)},
        {"pgm_family_pcf", "programmer-file family", std::move(pgm_family_pcf)},
        {"dev_part_pcf", "programmer-file part of the device", std::move(dev_part_pcf)},
        {"dev_family_pcf", "programmer-file family of the device", std::move(dev_family_pcf)},
        {"pcf_family_pcf", "programmer-file family of the family", std::move(pcf_family_pcf)},
        {"family", "family", std::move(family)},
        {"pcf_device", "device of the programmer-file part", std::move(pcf_device)},
        {"use_full_name", "full name serves for all", use_full_name},
        {"use_package_name", "package name serves for programming", use_package_name},
        {"possible_full_name", "first full name", std::move(full_name)},
    }};
    return {std::move_iterator(spellings.begin()), std::move_iterator(spellings.end())};
}

std::vector<SPELLING> spellings_of(const NAME_MEANING& meaning) {
    std::vector<SPELLING> spellings = spellings_of(meaning.name);
    for (SPELLING& spelling : spellings) {
        auto* text = std::get_if<std::string>(&spelling.value);
        if (text == nullptr || !text->empty()) {
            continue;
        }
        if (std::find(meaning.schemes.begin(), meaning.schemes.end(), spelling.key) != meaning.schemes.end()) {
            *text = meaning.name;
        } else if (spelling.key == std::string("family")) {
            *text = family_of(meaning.parts);
        }
    }
    return spellings;
}
