#include "names/name_schemes.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <utility>

#include "catalog/device_names.h"
#include "gen.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"
#include "terminal/did_you_mean.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// A scheme, how it names a part, and whether the grammar alone knows a name of it: it also has names whose parts the
/// device library has dropped.
struct SCHEME {
    const char* name;
    std::string PART_ENTRY::*spelling;
    bool (*in_grammar)(const std::string& name);
};

bool nowhere(const std::string&) {
    return false;
}

/// The schemes in which parts are named, most specific first; they are called as `name show` calls the spellings.
constexpr std::array<SCHEME, 9> SCHEMES{{
    {"name", &PART_ENTRY::name, [](const std::string& name) { return !GRAMMAR::get_package_name(name, true).empty(); }},
    {"package_name", &PART_ENTRY::package_name,
     [](const std::string& name) { return !GRAMMAR::get_pgm_name(name, true, true).empty(); }},
    {"pgm_name", &PART_ENTRY::pgm_name,
     [](const std::string& name) { return !GRAMMAR::get_pgm_part_pcf(name).empty(); }},
    {"device", &PART_ENTRY::device, [](const std::string& name) { return !GRAMMAR::get_dev_part_pcf(name).empty(); }},
    {"pgm_part_pcf", &PART_ENTRY::pgm_part_pcf, nowhere},
    {"dev_part_pcf", &PART_ENTRY::dev_part_pcf,
     [](const std::string& name) { return !GRAMMAR::get_pcf_device(name).empty(); }},
    {"pgm_family_pcf", &PART_ENTRY::pgm_family_pcf, nowhere},
    {"dev_family_pcf", &PART_ENTRY::dev_family_pcf, nowhere},
    {"family", &PART_ENTRY::family, nowhere},
}};

constexpr const char* ALIAS = "alias";

/// Whether a part is named so.
bool is_named(const PART_ENTRY& part, const std::string& name) {
    return std::any_of(SCHEMES.begin(), SCHEMES.end(),
                       [&](const SCHEME& scheme) { return part.*scheme.spelling == name; });
}

/// The names that parts may have: some belong to parts that the device library does not list.
const std::vector<std::string>& possible_names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = PGMDEV_PART_INDEX::get_converted_names();
        for (const auto* more : {&part_names(), &device_names(), &family_names()}) {
            all.insert(all.end(), more->begin(), more->end());
        }
        return all;
    }();
    return names;
}

}  // namespace

/// All parts that the name may stand for, and others.
std::vector<int> NAME_SCHEMES::numbers_of_candidates(const std::string& name) const {
    std::vector<std::string> names = PGMDEV_PART_INDEX::get_origins(name);
    names.push_back(name);
    std::vector<int> numbers;
    std::set<DEV_DEVICE_ENUM> devices;
    for (const std::string& each : names) {
        const int part = dstr_get_dev_part_enum_by_string(each.c_str());
        if (m_entries.lists(part)) {
            numbers.push_back(part);
        }
        const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(each.c_str());
        if (dstr_is_valid_dev_device_enum(device)) {
            devices.insert(device);
        }
    }
    const DEV_FAMILY_ENUM family = dstr_get_dev_family_enum_by_string(name.c_str());
    if (devices.empty() && !dstr_is_valid_dev_family_enum(family)) {
        return numbers;
    }
    const DEV_PART_MANAGER manager;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_MAX; ++part) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        if (m_entries.lists(part) && (devices.contains(device) || manager.get_family_of(device) == family)) {
            numbers.push_back(part);
        }
    }
    return numbers;
}

std::vector<PART_ENTRY> NAME_SCHEMES::parts_named(const std::string& name) {
    std::vector<int> numbers = numbers_of_candidates(name);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<PART_ENTRY> parts;
    for (const int number : numbers) {
        PART_ENTRY part = m_entries.make(number);
        if (!name.empty() && is_named(part, name)) {
            parts.push_back(std::move(part));
        }
    }
    return parts;
}

NAME_MEANING NAME_SCHEMES::meaning_of(std::string name) {
    name = gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(name);
    NAME_MEANING meaning{name, {}, parts_named(name)};
    for (const SCHEME& scheme : SCHEMES) {
        const bool of_part = std::any_of(meaning.parts.begin(), meaning.parts.end(),
                                         [&](const PART_ENTRY& part) { return part.*scheme.spelling == name; });
        if (of_part || scheme.in_grammar(name)) {
            meaning.schemes.emplace_back(scheme.name);
        }
    }
    const int behind_alias = meaning.schemes.empty() ? dstr_get_dev_part_enum_by_string(name.c_str()) : 0;
    if (m_entries.lists(behind_alias)) {
        PART_ENTRY part = m_entries.make(behind_alias);
        meaning.name = part.name;
        meaning.schemes = {ALIAS};
        meaning.parts.push_back(std::move(part));
    }
    m_entries.add_characteristics(meaning.parts);
    return meaning;
}

std::vector<std::string> NAME_SCHEMES::all_names() {
    std::vector<std::string> names;
    std::copy_if(possible_names().begin(), possible_names().end(), std::back_inserter(names),
                 [this](const std::string& name) { return !parts_named(name).empty(); });
    return names;
}

std::vector<std::string> NAME_SCHEMES::nearest_to(const std::string& name) {
    return nearest(name, possible_names(), [this](const std::string& near) { return !parts_named(near).empty(); });
}

std::vector<std::string> scheme_names() {
    std::vector<std::string> names{ALIAS};
    std::transform(SCHEMES.begin(), SCHEMES.end(), std::back_inserter(names),
                   [](const SCHEME& scheme) { return scheme.name; });
    return names;
}
