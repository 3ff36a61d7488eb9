#include "names/name_schemes.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <utility>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "gen.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// A scheme, what it calls a part or its device, and whether the grammar alone knows a name of it: it also has names whose
/// parts the device library has dropped.
struct SCHEME_ENTRY {
    const char* name;
    std::string PART_NAMES::*of_part;      ///< null: it names devices
    std::string DEVICE_ENTRY::*of_device;  ///< null: it names parts
    bool (*in_grammar)(const std::string& name);
};

bool nowhere(const std::string&) {
    return false;
}

/// In the order of SCHEME; they are called as `name show` calls the spellings.
constexpr std::array<SCHEME_ENTRY, static_cast<std::size_t>(SCHEME::COUNT)> SCHEMES{{
    {"name", &PART_NAMES::name, nullptr,
     [](const std::string& name) { return !GRAMMAR::get_package_name(name, true).empty(); }},
    {"package_name", &PART_NAMES::package_name, nullptr,
     [](const std::string& name) { return !GRAMMAR::get_pgm_name(name, true, true).empty(); }},
    {"pgm_name", &PART_NAMES::pgm_name, nullptr,
     [](const std::string& name) { return !GRAMMAR::get_pgm_part_pcf(name).empty(); }},
    {"device", nullptr, &DEVICE_ENTRY::device,
     [](const std::string& name) { return !GRAMMAR::get_dev_part_pcf(name).empty(); }},
    {"pgm_part_pcf", &PART_NAMES::pgm_part_pcf, nullptr, nowhere},
    {"dev_part_pcf", nullptr, &DEVICE_ENTRY::dev_part_pcf,
     [](const std::string& name) { return !GRAMMAR::get_pcf_device(name).empty(); }},
    {"pgm_family_pcf", &PART_NAMES::pgm_family_pcf, nullptr, nowhere},
    {"dev_family_pcf", nullptr, &DEVICE_ENTRY::dev_family_pcf, nowhere},
    {"family", nullptr, &DEVICE_ENTRY::family, nowhere},
}};

constexpr const char* ALIAS = "alias";

using SCHEME_SET = decltype(NAMED_PART::schemes);

/// The schemes in which a part has a name of its own.
SCHEME_SET schemes_of(const PART_NAMES& names, const std::string& name) {
    SCHEME_SET schemes;
    for (std::size_t i = 0; i < SCHEMES.size(); ++i) {
        schemes[i] = SCHEMES[i].of_part != nullptr && names.*SCHEMES[i].of_part == name;
    }
    return schemes;
}

/// The schemes in which a part has a name that its device has, too.
SCHEME_SET schemes_of(const DEVICE_ENTRY& device, const std::string& name) {
    SCHEME_SET schemes;
    for (std::size_t i = 0; i < SCHEMES.size(); ++i) {
        schemes[i] = SCHEMES[i].of_device != nullptr && device.*SCHEMES[i].of_device == name;
    }
    return schemes;
}

/// The devices of the parts of a family.
void add_devices(std::set<DEV_DEVICE_ENUM>& devices, const std::string& family) {
    PART_FILTER filter;
    filter.family = family;
    filter.hidden = true;
    const DEV_PART_MANAGER manager;
    DEV_DEVICE_ENUM last = DEV_DEVICE_INVALID;  // mostly that of the next part, too
    for (const int part : part_numbers(filter)) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        if (device != last) {
            devices.insert(device);
        }
        last = device;
    }
}

/// By number, each part once, with all of its schemes.
std::vector<NAMED_PART> merged(std::vector<NAMED_PART> parts) {
    std::sort(parts.begin(), parts.end(),
              [](const NAMED_PART& left, const NAMED_PART& right) { return left.number < right.number; });
    std::vector<NAMED_PART> once;
    for (const NAMED_PART& part : parts) {
        if (once.empty() || once.back().number != part.number) {
            once.push_back(part);
        } else {
            once.back().schemes |= part.schemes;
        }
    }
    return once;
}

/// Lists of the names that parts may have: some belong to parts that the device library does not list.
constexpr std::array POSSIBLE_NAMES{converted_names, part_names, device_names, family_names};

}  // namespace

std::vector<NAMED_PART> NAME_SCHEMES::parts_named(const std::string& name) {
    if (name.empty()) {
        return {};
    }
    std::vector<NAMED_PART> parts;
    const auto add = [&parts](int part, const SCHEME_SET& schemes) {
        if (schemes.any()) {
            parts.push_back({part, schemes});
        }
    };
    std::vector<std::string> names = PGMDEV_PART_INDEX::get_origins(name);
    names.push_back(name);
    std::set<DEV_DEVICE_ENUM> devices;
    for (const std::string& each : names) {
        const int part = dstr_get_dev_part_enum_by_string(each.c_str());
        if (m_entries.lists(part)) {
            add(part, schemes_of(part_names_of(part), name));
        }
        const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(each.c_str());
        if (dstr_is_valid_dev_device_enum(device)) {
            devices.insert(device);
        }
    }
    if (dstr_is_valid_dev_family_enum(dstr_get_dev_family_enum_by_string(name.c_str()))) {
        add_devices(devices, name);
    }
    for (const DEV_DEVICE_ENUM device : devices) {
        const SCHEME_SET schemes = schemes_of(m_entries.device(device), name);
        for (const int part : m_entries.parts_of(device)) {
            add(part, schemes);
        }
    }
    return merged(std::move(parts));
}

NAME_MEANING NAME_SCHEMES::meaning_of(std::string name) {
    name = gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(name);
    NAME_MEANING meaning{name, {}, {}, {}};
    SCHEME_SET of_parts;
    for (const NAMED_PART& part : parts_named(name)) {
        of_parts |= part.schemes;
        meaning.parts.push_back(part.number);
        if (part.is_named_by(SCHEME::NAME)) {
            meaning.part = part.number;
        }
    }
    for (std::size_t i = 0; i < SCHEMES.size(); ++i) {
        if (of_parts[i] || SCHEMES[i].in_grammar(name)) {
            meaning.schemes.emplace_back(SCHEMES[i].name);
        }
    }
    const int behind_alias = meaning.schemes.empty() ? dstr_get_dev_part_enum_by_string(name.c_str()) : 0;
    if (m_entries.lists(behind_alias)) {
        meaning = {part_names_of(behind_alias).name, {ALIAS}, {behind_alias}, behind_alias};
    }
    return meaning;
}

std::vector<std::string> NAME_SCHEMES::all_names() {
    std::vector<std::string> names;
    for (const auto list : POSSIBLE_NAMES) {
        std::copy_if(list().begin(), list().end(), std::back_inserter(names),
                     [this](const std::string& name) { return !parts_named(name).empty(); });
    }
    return names;
}

std::vector<std::string> NAME_SCHEMES::nearest_to(const std::string& name) {
    NAME_KINDS all;
    all.part = all.package_or_programming = all.programmer_part = all.device = all.family = true;
    return near_names(name, all).best([this](const std::string& near) { return !parts_named(near).empty(); });
}

std::vector<std::string> scheme_names() {
    std::vector<std::string> names{ALIAS};
    std::transform(SCHEMES.begin(), SCHEMES.end(), std::back_inserter(names),
                   [](const SCHEME_ENTRY& scheme) { return scheme.name; });
    return names;
}
