#include "names/part_entries.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <utility>

#include "gen.h"
#include "names/part_values.h"
#include "pgmdev_device_grammar_mgr.h"
#include "stl.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// What only parts have.
constexpr std::array TEXTS_OF_PARTS{&PART_FILTER::package, &PART_FILTER::pins, &PART_FILTER::speed,
                                    &PART_FILTER::temperature};

template <class IDENTIFIER>
std::string upper_name(IDENTIFIER identifier) {
    std::string name = dstr_get_user_string(identifier);
    stl_toupper(name);
    return name;
}

/// What parts can be filtered by, and their values.
struct CHARACTERISTIC {
    std::string PART_FILTER::*filter;
    std::vector<std::string> PART_VALUES::*values;
    std::string PART_ENTRY::*entry;
};

constexpr std::array<CHARACTERISTIC, PART_CHARACTERISTIC_COUNT> CHARACTERISTICS{{
    {&PART_FILTER::package, &PART_VALUES::packages, &PART_ENTRY::package},
    {&PART_FILTER::pins, &PART_VALUES::pins, &PART_ENTRY::pins},
    {&PART_FILTER::speed, &PART_VALUES::speeds, &PART_ENTRY::speed},
    {&PART_FILTER::temperature, &PART_VALUES::temperatures, &PART_ENTRY::temperature},
}};

/// Calls `use(value, parts)` for each value of a characteristic, with the parts of a device that have it, until it
/// returns true: asks the device library for the parts with each value, instead of for the values of each part.
template <class USE>
void for_each_value(const CHARACTERISTIC& characteristic, const std::string& device, USE use) {
    PART_FILTER filter;
    filter.hidden = true;
    filter.device = device;
    for (const std::string& value : part_values().*characteristic.values) {
        filter.*characteristic.filter = value;
        if (use(value, part_numbers(filter))) {
            return;
        }
    }
}

/// The characteristics of parts of one device.
void add_characteristics_of_device(std::vector<PART_ENTRY>& entries) {
    const std::string device = dstr_get_user_string(entries.front().device_number);
    for (const CHARACTERISTIC& each : CHARACTERISTICS) {
        std::size_t known = 0;
        for_each_value(each, device, [&](const std::string& value, const std::vector<int>& parts) {
            for (PART_ENTRY& entry : entries) {
                if (std::binary_search(parts.begin(), parts.end(), entry.number)) {
                    entry.*each.entry = value;
                    ++known;
                }
            }
            return known == entries.size();
        });
    }
}

void name_part(PART_ENTRY& entry) {
    entry.name = upper_name(entry.number);
    entry.package_name = GRAMMAR::get_package_name(entry.name, true);
    entry.pgm_name = GRAMMAR::get_pgm_name(entry.name, false, true);
    GRAMMAR::get_pgm_pcfs(entry.name, entry.pgm_part_pcf, entry.pgm_family_pcf);
}

void add_device(PART_ENTRY& entry, const DEVICE_ENTRY& device) {
    entry.device = device.name;
    entry.family_number = device.family_number;
    entry.family = device.family;
    entry.dev_part_pcf = device.dev_part_pcf;
    entry.dev_family_pcf = device.dev_family_pcf;
}

}  // namespace

std::vector<int> part_numbers(const PART_FILTER& filter) {
    std::vector<int> numbers;
    DEV_PART_MANAGER().filter_part_list(&numbers, filter.family, filter.device, filter.package, filter.pins,
                                        filter.speed, filter.orderable, filter.production, filter.hidden,
                                        filter.temperature);
    return numbers;
}

PART_ENTRIES::PART_ENTRIES() {
    PART_FILTER all;
    all.hidden = true;
    PART_FILTER orderable = all;
    orderable.orderable = true;
    PART_FILTER production = all;
    production.production = true;
    m_listed = marks(all);
    m_shown = marks({});
    m_orderable = marks(orderable);
    m_production = marks(production);
}

PART_ENTRIES::MARKS PART_ENTRIES::marks(const PART_FILTER& filter) {
    MARKS marked(static_cast<std::size_t>(DEV_PART_MAX));
    for (const int part : part_numbers(filter)) {
        marked[static_cast<std::size_t>(part)] = true;
    }
    return marked;
}

PART_ENTRY PART_ENTRIES::make(int part) {
    PART_ENTRY entry;
    entry.number = part;
    entry.device_number = m_manager.get_device_of(part);
    const auto [device, is_new] = m_devices.try_emplace(entry.device_number);
    if (is_new) {
        device->second = device_entry(entry.device_number);
    }
    add_device(entry, device->second);
    entry.orderable = is_marked(m_orderable, part);
    entry.production = is_marked(m_production, part);
    entry.hidden = !is_marked(m_shown, part);
    name_part(entry);
    return entry;
}

void PART_ENTRIES::add_characteristics(std::vector<PART_ENTRY>& entries) {
    constexpr unsigned FEW = 4;
    const auto of_another_device = [&entries](const PART_ENTRY& entry) {
        return entry.device_number != entries.front().device_number;
    };
    if (entries.empty()) {
        return;
    }
    if (m_questions++ < FEW && std::none_of(entries.begin(), entries.end(), of_another_device)) {
        add_characteristics_of_device(entries);
        return;
    }
    if (m_characteristics.empty()) {
        m_characteristics.resize(m_listed.size());
        for (std::size_t i = 0; i < CHARACTERISTICS.size(); ++i) {
            BYTE place = 0;
            for_each_value(CHARACTERISTICS[i], PART_FILTER::ANY,
                           [&](const std::string&, const std::vector<int>& parts) {
                               ++place;
                               for (const int part : parts) {
                                   m_characteristics[static_cast<std::size_t>(part)][i] = place;
                               }
                               return false;
                           });
        }
    }
    for (PART_ENTRY& entry : entries) {
        for (std::size_t i = 0; i < CHARACTERISTICS.size(); ++i) {
            const BYTE place = m_characteristics[static_cast<std::size_t>(entry.number)][i];
            const std::vector<std::string>& values = part_values().*CHARACTERISTICS[i].values;
            entry.*CHARACTERISTICS[i].entry = place != 0 ? values[place - std::size_t{1}] : "";
        }
    }
}

std::vector<PART_ENTRY> part_entries(const PART_FILTER& filter) {
    PART_ENTRIES maker;
    std::vector<PART_ENTRY> entries;
    for (const int part : part_numbers(filter)) {
        entries.push_back(maker.make(part));
    }
    maker.add_characteristics(entries);
    return entries;
}

DEVICE_ENTRY device_entry(DEV_DEVICE_ENUM device) {
    DEVICE_ENTRY entry;
    entry.family_number = DEV_PART_MANAGER().get_family_of(device);
    entry.name = upper_name(device);
    entry.family = upper_name(entry.family_number);
    GRAMMAR::get_dev_pcfs(entry.name, entry.dev_part_pcf, entry.dev_family_pcf);
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
