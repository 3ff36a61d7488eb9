#include "names/part_entries.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <utility>

#include "catalog/device_names.h"
#include "gen.h"
#include "names/part_values.h"
#include "pgmdev_device_grammar_mgr.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// What only parts have.
constexpr std::array TEXTS_OF_PARTS{&PART_FILTER::package, &PART_FILTER::pins, &PART_FILTER::speed,
                                    &PART_FILTER::temperature};

/// What parts can be filtered by, and their values.
struct CHARACTERISTIC {
    std::string PART_FILTER::*filter;
    std::vector<std::string> PART_VALUES::*values;
    std::string PART_CHARACTERISTICS::*text;
};

constexpr std::array<CHARACTERISTIC, PART_CHARACTERISTIC_COUNT> CHARACTERISTICS{{
    {&PART_FILTER::package, &PART_VALUES::packages, &PART_CHARACTERISTICS::package},
    {&PART_FILTER::pins, &PART_VALUES::pins, &PART_CHARACTERISTICS::pins},
    {&PART_FILTER::speed, &PART_VALUES::speeds, &PART_CHARACTERISTICS::speed},
    {&PART_FILTER::temperature, &PART_VALUES::temperatures, &PART_CHARACTERISTICS::temperature},
}};

/// All of them, hidden ones, too.
PART_FILTER parts_of_device(DEV_DEVICE_ENUM device) {
    PART_FILTER filter;
    filter.device = dstr_get_user_string(device);
    filter.hidden = true;
    return filter;
}

/// Calls `use(place, parts)` for each value of a characteristic, with the parts of a device that have it, until it
/// returns true: asks the device library for the parts with each value, instead of for the values of each part.
template <class USE>
void for_each_value(const CHARACTERISTIC& characteristic, const std::string& device, USE use) {
    PART_FILTER filter;
    filter.hidden = true;
    filter.device = device;
    BYTE place = 0;
    for (const std::string& value : part_values().*characteristic.values) {
        filter.*characteristic.filter = value;
        if (use(++place, part_numbers(filter))) {
            return;
        }
    }
}

/// The characteristics of the parts of some devices, or of all, by number.
std::vector<CHARACTERISTIC_PLACES> characteristics_of_parts(const std::vector<std::string>& devices) {
    std::vector<CHARACTERISTIC_PLACES> places(static_cast<std::size_t>(DEV_PART_MAX));
    for (const std::string& device : devices) {
        for (std::size_t i = 0; i < CHARACTERISTICS.size(); ++i) {
            for_each_value(CHARACTERISTICS[i], device, [&](BYTE place, const std::vector<int>& parts) {
                for (const int part : parts) {
                    places[static_cast<std::size_t>(part)][i] = place;
                }
                return false;
            });
        }
    }
    return places;
}

/// The names of the devices of parts; those of many devices are better asked for with all others.
std::vector<std::string> devices_to_ask_for(const std::vector<int>& parts) {
    constexpr std::size_t MANY = 64;
    const DEV_PART_MANAGER manager;
    std::vector<std::string> devices;
    DEV_DEVICE_ENUM last = DEV_DEVICE_INVALID;  // mostly that of the next part, too
    for (const int part : parts) {
        if (const DEV_DEVICE_ENUM device = manager.get_device_of(part); device != last) {
            devices.push_back(dstr_get_user_string(device));
            last = device;
        }
        if (devices.size() == MANY) {
            return {PART_FILTER::ANY};
        }
    }
    return devices;
}

PART_CHARACTERISTICS texts_of(const CHARACTERISTIC_PLACES& places) {
    PART_CHARACTERISTICS texts;
    for (std::size_t i = 0; i < CHARACTERISTICS.size(); ++i) {
        if (places[i] != 0) {
            texts.*CHARACTERISTICS[i].text = (part_values().*CHARACTERISTICS[i].values)[places[i] - std::size_t{1}];
        }
    }
    return texts;
}

bool has(const std::vector<int>& numbers, int number) {
    return std::binary_search(numbers.begin(), numbers.end(), number);
}

/// Whether all of the parts are among those that the filter lets pass once it has their device: asks for one device after
/// another, since with most families the first one shows that they are not.
bool all_pass(const std::vector<int>& parts, PART_FILTER filter) {
    const DEV_PART_MANAGER manager;
    for (auto first = parts.begin(); first != parts.end();) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(*first);
        const auto is_of_other = [&](int part) { return manager.get_device_of(part) != device; };
        const auto last = std::find_if(first, parts.end(), is_of_other);
        filter.device = dstr_get_user_string(device);
        const std::vector<int> passing = part_numbers(filter);
        if (!std::includes(passing.begin(), passing.end(), first, last)) {
            return false;
        }
        first = last;
    }
    return true;
}

/// The place of the value that all of the parts have, of which the first one is of that device; 0: of none.
BYTE place_of_common_value(const CHARACTERISTIC& characteristic, const std::vector<int>& parts,
                           const std::string& device) {
    BYTE common = 0;
    for_each_value(characteristic, device, [&](BYTE place, const std::vector<int>& of_device) {
        if (!has(of_device, parts.front())) {
            return false;
        }
        PART_FILTER filter;
        filter.hidden = true;
        filter.*characteristic.filter = (part_values().*characteristic.values)[place - std::size_t{1}];
        common = all_pass(parts, filter) ? place : BYTE{0};
        return true;
    });
    return common;
}

}  // namespace

std::vector<int> part_numbers(const PART_FILTER& filter) {
    std::vector<int> numbers;
    DEV_PART_MANAGER().filter_part_list(&numbers, filter.family, filter.device, filter.package, filter.pins,
                                        filter.speed, filter.orderable, filter.production, filter.hidden,
                                        filter.temperature);
    return numbers;
}

PART_ENTRIES::KNOWN_DEVICE& PART_ENTRIES::known(DEV_DEVICE_ENUM device) {
    if (m_last == nullptr || m_last->first != device) {
        const auto [known, is_new] = m_devices.try_emplace(device);
        if (is_new) {
            known->second.parts = part_numbers(parts_of_device(device));
        }
        m_last = &*known;
    }
    return m_last->second;
}

const DEVICE_ENTRY& PART_ENTRIES::device(DEV_DEVICE_ENUM device) {
    std::optional<DEVICE_ENTRY>& entry = known(device).entry;
    if (!entry) {
        entry = device_entry(device);
    }
    return *entry;
}

bool PART_ENTRIES::lists(int part) {
    const DEV_DEVICE_ENUM device = m_manager.get_device_of(part);
    return device != DEV_DEVICE_INVALID && has(parts_of(device), part);
}

PART_STATUS PART_ENTRIES::status_of(int part) {
    const DEV_DEVICE_ENUM device = m_manager.get_device_of(part);
    std::optional<STATUS_LISTS>& lists = known(device).parts_by_status;
    if (!lists) {
        PART_FILTER orderable = parts_of_device(device);
        orderable.orderable = true;
        PART_FILTER production = parts_of_device(device);
        production.production = true;
        PART_FILTER shown = parts_of_device(device);
        shown.hidden = false;
        lists = {part_numbers(orderable), part_numbers(production), part_numbers(shown)};
    }
    return {has(lists->orderable, part), has(lists->production, part), !has(lists->shown, part)};
}

PART_CHARACTERISTICS PART_ENTRIES::common_characteristics(const std::vector<int>& parts) {
    constexpr unsigned FEW = 4;
    CHARACTERISTIC_PLACES common{};
    if (m_questions++ < FEW) {
        const std::string device = dstr_get_user_string(m_manager.get_device_of(parts.front()));
        std::transform(CHARACTERISTICS.begin(), CHARACTERISTICS.end(), common.begin(),
                       [&](const CHARACTERISTIC& each) { return place_of_common_value(each, parts, device); });
        return texts_of(common);
    }
    if (m_characteristics.empty()) {
        m_characteristics = characteristics_of_parts({PART_FILTER::ANY});
    }
    const auto places_of = [this](int part) -> const CHARACTERISTIC_PLACES& {
        return m_characteristics[static_cast<std::size_t>(part)];
    };
    common = places_of(parts.front());
    for (const int part : parts) {
        for (std::size_t i = 0; i < common.size(); ++i) {
            common[i] = places_of(part)[i] == common[i] ? common[i] : BYTE{0};
        }
    }
    return texts_of(common);
}

PART_NAMES part_names_of(int part) {
    PART_NAMES names;
    names.name = upper_name(part);
    names.package_name = GRAMMAR::get_package_name(names.name, true);
    names.pgm_name = GRAMMAR::get_pgm_name(names.name, false, true);
    // A name without a programming name is taken for one.
    const std::string& converted = names.pgm_name.empty() ? names.name : names.pgm_name;
    names.pgm_part_pcf = GRAMMAR::get_pgm_part_pcf(converted);
    names.pgm_family_pcf = GRAMMAR::get_pgm_family_pcf(converted);
    return names;
}

std::vector<PART_ENTRY> part_entries(const std::vector<int>& numbers) {
    const std::vector<CHARACTERISTIC_PLACES> characteristics = characteristics_of_parts(devices_to_ask_for(numbers));
    const DEV_PART_MANAGER manager;
    PART_ENTRIES known;
    std::vector<PART_ENTRY> entries;
    entries.reserve(numbers.size());
    for (const int part : numbers) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        entries.push_back({part_names_of(part), known.device(device), known.status_of(part),
                           texts_of(characteristics[static_cast<std::size_t>(part)]), part, device});
    }
    return entries;
}

DEVICE_ENTRY device_entry(DEV_DEVICE_ENUM device) {
    DEVICE_ENTRY entry;
    entry.family_number = DEV_PART_MANAGER().get_family_of(device);
    entry.device = upper_name(device);
    entry.family = upper_name(entry.family_number);
    GRAMMAR::get_dev_pcfs(entry.device, entry.dev_part_pcf, entry.dev_family_pcf);
    return entry;
}

std::vector<DEV_DEVICE_ENUM> devices_without_parts(const PART_FILTER& filter) {
    const bool any_part = std::all_of(TEXTS_OF_PARTS.begin(), TEXTS_OF_PARTS.end(), [&filter](const auto field) {
        return gen_stricmp(filter.*field, PART_FILTER::ANY) == 0;
    });
    if (!any_part || filter.orderable || filter.production) {
        return {};
    }
    const DEV_FAMILY_ENUM family = dstr_get_dev_family_enum_by_string(filter.family.c_str());
    const bool any_family = gen_stricmp(filter.family, PART_FILTER::ANY) == 0;
    const bool any_device = gen_stricmp(filter.device, PART_FILTER::ANY) == 0;
    PART_FILTER all;
    all.hidden = true;
    const DEV_PART_MANAGER manager;
    std::set<DEV_DEVICE_ENUM> with_parts;
    for (const int part : part_numbers(all)) {
        with_parts.insert(manager.get_device_of(part));
    }
    std::vector<DEV_DEVICE_ENUM> devices;
    for (int number = DEV_DEVICE_INVALID + 1; number < DEV_DEVICE_GENERIC; ++number) {
        const auto device = static_cast<DEV_DEVICE_ENUM>(number);
        if (dstr_is_valid_dev_device_enum(device) && !with_parts.contains(device) &&
            (any_family || manager.get_family_of(device) == family) &&
            (any_device || gen_stricmp(dstr_get_user_string(device), filter.device) == 0)) {
            devices.push_back(device);
        }
    }
    return devices;
}

JSON text_or_null(const std::string& text) {
    return text.empty() ? JSON() : JSON(text);
}

JSON number_or_null(const std::string& text) {
    DWORD number = 0;
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    return error == std::errc() && end == last ? JSON(number) : JSON();
}
