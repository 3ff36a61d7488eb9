#include "names/part_entries.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
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

/// Which parts, by number, pass a filter.
std::vector<bool> marks(const PART_FILTER& filter) {
    std::vector<bool> marked(static_cast<std::size_t>(DEV_PART_MAX));
    for (const int part : part_numbers(filter)) {
        marked[static_cast<std::size_t>(part)] = true;
    }
    return marked;
}

/// What parts can be filtered by, and their values.
struct CHARACTERISTIC {
    std::string PART_FILTER::*filter;
    std::vector<std::string> PART_VALUES::*values;
    std::string PART_ENTRY::*entry;
};

constexpr std::array CHARACTERISTICS{
    CHARACTERISTIC{&PART_FILTER::package, &PART_VALUES::packages, &PART_ENTRY::package},
    CHARACTERISTIC{&PART_FILTER::pins, &PART_VALUES::pins, &PART_ENTRY::pins},
    CHARACTERISTIC{&PART_FILTER::speed, &PART_VALUES::speeds, &PART_ENTRY::speed},
    CHARACTERISTIC{&PART_FILTER::temperature, &PART_VALUES::temperatures, &PART_ENTRY::temperature},
};

/// Asks the device library for the parts with each value, instead of for the values of each part.
void add_characteristics(std::vector<PART_ENTRY>& entries) {
    std::vector<PART_ENTRY*> places(static_cast<std::size_t>(DEV_PART_MAX));
    for (PART_ENTRY& entry : entries) {
        places[static_cast<std::size_t>(entry.number)] = &entry;
    }
    for (const CHARACTERISTIC& each : CHARACTERISTICS) {
        for (const std::string& value : part_values().*each.values) {
            PART_FILTER filter;
            filter.hidden = true;
            filter.*each.filter = value;
            for (const int part : part_numbers(filter)) {
                if (PART_ENTRY* entry = places[static_cast<std::size_t>(part)]) {
                    entry->*each.entry = value;
                }
            }
        }
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

std::vector<PART_ENTRY> part_entries(const PART_FILTER& filter) {
    PART_FILTER orderable;
    orderable.orderable = true;
    orderable.hidden = true;
    PART_FILTER production;
    production.production = true;
    production.hidden = true;
    const std::vector<bool> shown_parts = marks({});
    const std::vector<bool> orderable_parts = marks(orderable);
    const std::vector<bool> production_parts = marks(production);
    const DEV_PART_MANAGER manager;
    std::map<DEV_DEVICE_ENUM, DEVICE_ENTRY> devices;
    std::vector<PART_ENTRY> entries;
    for (const int part : part_numbers(filter)) {
        PART_ENTRY entry;
        const auto place = static_cast<std::size_t>(part);
        entry.number = part;
        entry.device_number = manager.get_device_of(part);
        const auto [device, is_new] = devices.try_emplace(entry.device_number);
        if (is_new) {
            device->second = device_entry(entry.device_number);
        }
        add_device(entry, device->second);
        entry.orderable = orderable_parts[place];
        entry.production = production_parts[place];
        entry.hidden = !shown_parts[place];
        name_part(entry);
        entries.push_back(std::move(entry));
    }
    add_characteristics(entries);
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
