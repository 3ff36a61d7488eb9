#include "names/name_schemes.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "gen.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

using CONVERSION = PGMDEV_PART_INDEX::CONVERSION;

/// A scheme, how a part or its device comes by a name of it, and whether the grammar alone knows a name of it: it also has
/// names whose parts the device library has dropped.
struct SCHEME_ENTRY {
    const char* name;
    bool of_devices;                       ///< or of parts
    std::optional<CONVERSION> conversion;  ///< none: names of their own, or of their family
    bool (*in_grammar)(const std::string& name);
};

bool nowhere(const std::string&) {
    return false;
}

/// In the order of SCHEME; they are called as `name show` calls the spellings.
constexpr std::array<SCHEME_ENTRY, static_cast<std::size_t>(SCHEME::COUNT)> SCHEMES{{
    {"name", false, std::nullopt,
     [](const std::string& name) { return !GRAMMAR::get_package_name(name, true).empty(); }},
    {"package_name", false, CONVERSION::PACKAGE_NAME,
     [](const std::string& name) { return !GRAMMAR::get_pgm_name(name, true, true).empty(); }},
    {"pgm_name", false, CONVERSION::PGM_NAME,
     [](const std::string& name) { return !GRAMMAR::get_pgm_part_pcf(name).empty(); }},
    {"device", true, std::nullopt, [](const std::string& name) { return !GRAMMAR::get_dev_part_pcf(name).empty(); }},
    {"pgm_part_pcf", false, CONVERSION::PGM_PART_PCF, nowhere},
    {"dev_part_pcf", true, CONVERSION::DEV_PART_PCF,
     [](const std::string& name) { return !GRAMMAR::get_pcf_device(name).empty(); }},
    {"pgm_family_pcf", false, CONVERSION::PGM_FAMILY_PCF, nowhere},
    {"dev_family_pcf", true, CONVERSION::DEV_FAMILY_PCF, nowhere},
    {"family", true, std::nullopt, nowhere},
}};

constexpr const char* ALIAS = "alias";

using SCHEME_SET = decltype(NAMED_PART::schemes);

SCHEME_SET only(SCHEME scheme) {
    return SCHEME_SET().set(static_cast<std::size_t>(scheme));
}

// The number of the part, device or family that is called so, if any; not of one that has the name as a further one.

template <class NUMBER>
std::optional<NUMBER> if_called(NUMBER number, const std::string& name) {
    return upper_name(number) == name ? std::optional(number) : std::nullopt;
}

/// Names that are converted to the same one mostly come in the order of their parts: the next one is looked at before all of
/// them are searched.
std::optional<int> part_called(const std::string& name, int previous) {
    const int next = previous + 1;
    return dstr_get_user_string(next) == name ? next : if_called(dstr_get_dev_part_enum_by_string(name.c_str()), name);
}

std::optional<DEV_DEVICE_ENUM> device_called(const std::string& name) {
    return if_called(dstr_get_dev_device_enum_by_string(name.c_str()), name);
}

std::optional<DEV_FAMILY_ENUM> family_called(const std::string& name) {
    return if_called(dstr_get_dev_family_enum_by_string(name.c_str()), name);
}

using DEVICES = std::map<DEV_DEVICE_ENUM, SCHEME_SET>;

/// The devices of the parts of a family.
void add_devices_of_family(DEVICES& devices, const std::string& family) {
    PART_FILTER filter;
    filter.family = family;
    filter.hidden = true;
    const DEV_PART_MANAGER manager;
    DEV_DEVICE_ENUM last = DEV_DEVICE_INVALID;  // mostly that of the next part, too
    for (const int part : part_numbers(filter)) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        if (device != last) {
            devices[device] |= only(SCHEME::FAMILY);
        }
        last = device;
    }
}

/// The devices that have a name in any of the schemes.
DEVICES devices_named(const std::string& name) {
    DEVICES devices;
    const auto add = [&devices](const std::string& device, SCHEME scheme) {
        if (const auto number = device_called(device)) {
            devices[*number] |= only(scheme);
        }
    };
    add(name, SCHEME::DEVICE);
    for (std::size_t i = 0; i < SCHEMES.size(); ++i) {
        if (SCHEMES[i].of_devices && SCHEMES[i].conversion) {
            for (const std::string& device : PGMDEV_PART_INDEX::get_names_converted_to(*SCHEMES[i].conversion, name)) {
                add(device, static_cast<SCHEME>(i));
            }
        }
    }
    if (family_called(name)) {
        add_devices_of_family(devices, name);
    }
    return devices;
}

/// Parts by number, each once, with all of its schemes. Most are added in that order: first those with names of their own,
/// then those of devices.
class NUMBERED_PARTS {
public:
    void add(int number, SCHEME_SET schemes) {
        if (!has_its_place_next(number)) {
            const auto is_lower = [](const NAMED_PART& part, int other) { return part.number < other; };
            const auto place = std::lower_bound(m_parts.begin(), m_parts.end(), number, is_lower);
            m_next = static_cast<std::size_t>(place - m_parts.begin());
        }
        if (m_next == m_parts.size() || m_parts[m_next].number != number) {
            m_parts.insert(m_parts.begin() + static_cast<std::ptrdiff_t>(m_next), {number, {}});
        }
        m_parts[m_next++].schemes |= schemes;
    }

    /// The number of the part that was added last.
    int last() const { return m_next == 0 ? DEV_PART_INVALID : m_parts[m_next - 1].number; }

    std::vector<NAMED_PART>&& list() && { return std::move(m_parts); }

private:
    bool has_its_place_next(int number) const {
        return last() < number && (m_next == m_parts.size() || number <= m_parts[m_next].number);
    }

    std::vector<NAMED_PART> m_parts;
    std::size_t m_next = 0;  ///< the place behind the part that was added last
};

/// Lists of the names that parts may have: some belong to parts that the device library does not list.
constexpr std::array POSSIBLE_NAMES{converted_names, part_names, device_names, family_names};

}  // namespace

std::vector<NAMED_PART> NAME_SCHEMES::parts_named(const std::string& name) {
    if (name.empty()) {
        return {};
    }
    NUMBERED_PARTS parts;
    const auto add = [this, &parts](const std::string& part, SCHEME scheme) {
        if (const auto number = part_called(part, parts.last()); number && m_entries.lists(*number)) {
            parts.add(*number, only(scheme));
        }
    };
    add(name, SCHEME::NAME);
    for (std::size_t i = 0; i < SCHEMES.size(); ++i) {
        if (!SCHEMES[i].of_devices && SCHEMES[i].conversion) {
            for (const std::string& part : PGMDEV_PART_INDEX::get_names_converted_to(*SCHEMES[i].conversion, name)) {
                add(part, static_cast<SCHEME>(i));
            }
        }
    }
    for (const auto& [device, schemes] : devices_named(name)) {
        for (const int part : m_entries.parts_of(device)) {
            parts.add(part, schemes);
        }
    }
    return std::move(parts).list();
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
