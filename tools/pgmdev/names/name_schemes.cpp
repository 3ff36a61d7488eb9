#include "names/name_schemes.h"

#include <algorithm>
#include <set>

#include "gen.h"
#include "pgmdev_device_grammar_mgr.h"
#include "stl.h"

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

constexpr std::array<SCHEME, NAME_SCHEMES::PART_SCHEME_COUNT> SCHEMES{{
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

/// The part that the device library finds by a name that is not its own; "" when there is none.
std::string part_behind_alias(const std::string& name) {
    std::string part_name = dstr_get_user_string(dstr_get_dev_part_enum_by_string(name.c_str()));
    stl_toupper(part_name);
    return part_name;
}

}  // namespace

NAME_SCHEMES::NAME_SCHEMES() {
    PART_FILTER all;
    all.hidden = true;
    m_parts = part_entries(all);
    for (std::size_t scheme = 0; scheme < SCHEMES.size(); ++scheme) {
        for (std::size_t place = 0; place < m_parts.size(); ++place) {
            if (const std::string& name = m_parts[place].*SCHEMES[scheme].spelling; !name.empty()) {
                m_places[scheme][name].push_back(place);
            }
        }
    }
}

NAME_MEANING NAME_SCHEMES::meaning_of(std::string name) const {
    name = gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(name);
    NAME_MEANING meaning{name, {}, {}};
    std::set<std::size_t> places;
    for (std::size_t scheme = 0; scheme < SCHEMES.size(); ++scheme) {
        const auto found = m_places[scheme].find(name);
        if (found != m_places[scheme].end()) {
            places.insert(found->second.begin(), found->second.end());
        }
        if (found != m_places[scheme].end() || SCHEMES[scheme].in_grammar(name)) {
            meaning.schemes.emplace_back(SCHEMES[scheme].name);
        }
    }
    const std::string behind_alias = meaning.schemes.empty() ? part_behind_alias(name) : "";
    if (const auto part = m_places.front().find(behind_alias); part != m_places.front().end()) {
        meaning.name = behind_alias;
        meaning.schemes = {ALIAS};
        places.insert(part->second.begin(), part->second.end());
    }
    std::transform(places.begin(), places.end(), std::back_inserter(meaning.parts),
                   [this](std::size_t place) { return &m_parts[place]; });
    return meaning;
}

std::vector<std::string> NAME_SCHEMES::all_names() const {
    std::vector<std::string> names;
    for (const PARTS_BY_NAME& places : m_places) {
        for (const auto& [name, parts] : places) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<std::string> scheme_names() {
    std::vector<std::string> names{ALIAS};
    std::transform(SCHEMES.begin(), SCHEMES.end(), std::back_inserter(names),
                   [](const SCHEME& scheme) { return scheme.name; });
    return names;
}
