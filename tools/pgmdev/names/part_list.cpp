#include "names/part_list.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "names/part_entries.h"
#include "names/part_filter_options.h"
#include "nouns.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "terminal/did_you_mean.h"
#include "terminal/filtered_listing.h"
#include "terminal/schema.h"

namespace {

/// The rows of a list as programs and as people see them.
struct ROWS {
    std::vector<JSON> objects;
    TEXT_TABLE table;
};

/// One list: what is in it, and how its rows come from the numbers of the parts that pass the filters.
struct LIST {
    const char* thing;
    const char* description;
    const char* example;
    JSON (*schema)();
    ROWS (*rows)(const std::vector<int>& parts, const ARGUMENTS& given);
    std::vector<std::string> (*similar)(const std::string& name);  ///< of the names that a pattern is for
};

std::string shown(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string status_of(const PART_ENTRY& part) {
    std::string status = part.production ? "production" : "not in production";
    status += part.orderable ? ", orderable" : "";
    return status + (part.hidden ? ", hidden" : "");
}

JSON part_schema() {
    return object_schema({{"name", text_schema()},
                          {"number", number_schema()},
                          {"device", text_schema()},
                          {"family", text_schema()},
                          {"package_name", text_schema()},
                          {"pgm_name", text_schema()},
                          {"pgm_part_pcf", text_schema()},
                          {"orderable", flag_schema()},
                          {"production", flag_schema()},
                          {"hidden", flag_schema()},
                          {"package", or_null(text_schema())},
                          {"pins", or_null(number_schema())},
                          {"speed", or_null(number_schema())},
                          {"temperature", or_null(text_schema())}});
}

/// Those whose names fit the pattern.
std::vector<int> with_given_pattern(std::vector<int> parts, const ARGUMENTS& given) {
    std::erase_if(parts,
                  [pattern = GIVEN_PATTERN(given)](int part) { return !pattern.fits(dstr_get_user_string(part)); });
    return parts;
}

ROWS part_rows(const std::vector<int>& parts, const ARGUMENTS& given) {
    ROWS rows{{},
              TEXT_TABLE({"part", "device", "family", "package", "speed", "temperature", "status", "package name",
                          "programming name", "programmer-file part"})};
    for (const PART_ENTRY& part : part_entries(with_given_pattern(parts, given))) {
        rows.objects.push_back({{"name", part.name},
                                {"number", static_cast<DWORD>(part.number)},
                                {"device", part.device},
                                {"family", part.family},
                                {"package_name", part.package_name},
                                {"pgm_name", part.pgm_name},
                                {"pgm_part_pcf", part.pgm_part_pcf},
                                {"orderable", part.orderable},
                                {"production", part.production},
                                {"hidden", part.hidden},
                                {"package", text_or_null(part.package)},
                                {"pins", number_or_null(part.pins)},
                                {"speed", number_or_null(part.speed)},
                                {"temperature", text_or_null(part.temperature)}});
        rows.table.add({part.name, part.device, part.family, shown(part.package + part.pins), shown(part.speed),
                        shown(part.temperature), status_of(part), shown(part.package_name), shown(part.pgm_name),
                        shown(part.pgm_part_pcf)});
    }
    return rows;
}

JSON device_schema() {
    return object_schema({{"name", text_schema()},
                          {"number", number_schema()},
                          {"family", text_schema()},
                          {"dev_part_pcf", text_schema()},
                          {"dev_family_pcf", text_schema()},
                          {"parts", number_schema()}});
}

ROWS device_rows(const std::vector<int>& parts, const ARGUMENTS& given) {
    const GIVEN_PATTERN pattern(given);
    const DEV_PART_MANAGER manager;
    std::map<DEV_DEVICE_ENUM, std::size_t> counts;
    for (const int part : parts) {
        ++counts[manager.get_device_of(part)];
    }
    for (const DEV_DEVICE_ENUM device : devices_without_parts(part_filter(given))) {
        counts.emplace(device, 0);
    }
    ROWS rows{{}, TEXT_TABLE({"device", "family", "programmer-file part", "programmer-file family", "parts"})};
    for (const auto& [number, count] : counts) {
        if (pattern.fits(upper_name(number))) {
            const DEVICE_ENTRY device = device_entry(number);
            rows.objects.push_back({{"name", device.device},
                                    {"number", static_cast<DWORD>(number)},
                                    {"family", device.family},
                                    {"dev_part_pcf", device.dev_part_pcf},
                                    {"dev_family_pcf", device.dev_family_pcf},
                                    {"parts", count}});
            rows.table.add({device.device, device.family, shown(device.dev_part_pcf), shown(device.dev_family_pcf),
                            std::to_string(count)});
        }
    }
    return rows;
}

JSON family_schema() {
    return object_schema({{"name", text_schema()},
                          {"number", number_schema()},
                          {"pcf_family_pcf", text_schema()},
                          {"devices", number_schema()},
                          {"parts", number_schema()}});
}

ROWS family_rows(const std::vector<int>& parts, const ARGUMENTS& given) {
    struct FAMILY {
        std::set<int> devices;
        std::size_t parts = 0;
    };
    const GIVEN_PATTERN pattern(given);
    const DEV_PART_MANAGER manager;
    std::map<DEV_FAMILY_ENUM, FAMILY> families;
    for (const int part : parts) {
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        FAMILY& family = families[manager.get_family_of(device)];
        family.devices.insert(device);
        ++family.parts;
    }
    ROWS rows{{}, TEXT_TABLE({"family", "programmer-file family", "devices", "parts"})};
    for (const auto& [number, family] : families) {
        if (const std::string name = upper_name(number); pattern.fits(name)) {
            const std::string pcf = PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(name);
            rows.objects.push_back({{"name", name},
                                    {"number", static_cast<DWORD>(number)},
                                    {"pcf_family_pcf", pcf},
                                    {"devices", family.devices.size()},
                                    {"parts", family.parts}});
            rows.table.add({name, shown(pcf), std::to_string(family.devices.size()), std::to_string(family.parts)});
        }
    }
    return rows;
}

JSON opn_schema() {
    return object_schema({{"index", number_schema()}, {"name", text_schema()}, {"hash", number_schema()}});
}

ROWS opn_rows(const std::vector<int>& parts, const ARGUMENTS& given) {
    std::map<DWORD, std::string> names;
    for (const int part : with_given_pattern(parts, given)) {
        const std::string name = upper_name(part);
        if (const DWORD index = PGMDEV_MGR::get_opn_enum(name); index != INVALID_DWORD) {
            names.emplace(index, name);
        }
    }
    ROWS rows{{}, TEXT_TABLE({"index", "name", "hash"})};
    for (const auto& [index, name] : names) {
        const QWORD hash = PGMDEV_MGR::get_opn_hash(name);
        rows.objects.push_back({{"index", index}, {"name", name}, {"hash", hash}});
        rows.table.add({std::to_string(index), name, fmt::format("0x{:012X}", hash)});
    }
    return rows;
}

constexpr LIST PART_LIST{
    "part",      "Parts, by number", "pgmdev part list \"KES75*\" --temperature INDUSTRIAL --orderable",
    part_schema, part_rows,          nearest_parts};
constexpr LIST DEVICE_LIST{"device",
                           "Devices that have such parts, and how many; without filters also those without parts",
                           "pgmdev device list --family Osprey --package FBGA",
                           device_schema,
                           device_rows,
                           nearest_devices};
constexpr LIST FAMILY_LIST{"family",
                           "Families that have such parts, and how many",
                           "pgmdev family list --pins 780",
                           family_schema,
                           family_rows,
                           nearest_families};
constexpr LIST OPN_LIST{"ordering code",
                        "The first ordering-code index of each part, and the hash of its name",
                        "pgmdev --json opn list --family Kestrel --speed 6",
                        opn_schema,
                        opn_rows,
                        nearest_parts};

/// Says when an empty list would have rows with --hidden.
std::string hidden_text(const LIST& list, const ARGUMENTS& given) {
    PART_FILTER filter = part_filter(given);
    if (filter.hidden) {
        return "";
    }
    filter.hidden = true;
    const std::size_t count = list.rows(part_numbers(filter), given).objects.size();
    return count == 0 ? "" : fmt::format("; with --hidden there {} {}", count == 1 ? "is" : "are", count);
}

VERB list_verb(const LIST& list) {
    const auto run = [&list](const ARGUMENTS& given, COMMAND& command) {
        const ROWS rows = list.rows(part_numbers(part_filter(given)), given);
        print_filtered_listing(
            list.schema(), rows.objects, rows.table,
            [&] {
                return empty_list_text(list.thing, given) + hidden_text(list, given) +
                       did_you_mean_by_pattern(given, list.similar, [&](const ARGUMENTS& others) {
                           return std::ssize(list.rows(part_numbers(part_filter(others)), others).objects);
                       });
            },
            given, command);
    };
    return with_list_options(with_part_filters(with_pattern(VERB("list", list.description, list.example, run))),
                             list.schema);
}

}  // namespace

VERB part_list_verb() {
    return list_verb(PART_LIST);
}

VERB opn_list_verb() {
    return list_verb(OPN_LIST);
}

NOUN_CONTENTS device_contents() {
    return {list_of(list_verb(DEVICE_LIST))};
}

NOUN_CONTENTS family_contents() {
    return {list_of(list_verb(FAMILY_LIST))};
}
