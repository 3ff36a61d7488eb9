#include <optional>
#include <string_view>

#include "dev.h"
#include "dstr_catalog.h"

namespace {

constexpr std::string_view ANY = "ANY";

/// A filter by number: none, or the only number that passes.
std::optional<int> number_filter(const NAME_TABLE& table, const std::string& filter) {
    return equal_names(filter, ANY) ? std::nullopt : std::optional(number_of(DSTR_TABLES.pool, table, filter));
}

bool passes(const std::string& filter, std::uint32_t address) {
    return equal_names(filter, ANY) || equal_names(filter, DSTR_TABLES.pool.at(address));
}

/// Which rows of a table of facts pass a filter for each of the two texts: a byte for each, since every part is looked
/// up in them.
using PASSING = std::vector<std::uint8_t>;

PASSING passing_rows(const FACT_TABLE& table, const std::string& first, const std::string& second) {
    PASSING rows(table.count);
    for (std::uint32_t i = 0; i < table.count; ++i) {
        rows[i] = passes(first, table.rows[i].first) && passes(second, table.rows[i].second) ? 1 : 0;
    }
    return rows;
}

PASSING passing_devices(const std::string& family, const std::string& device) {
    const std::optional<int> wanted_family = number_filter(DSTR_TABLES.families, family);
    const std::optional<int> wanted_device = number_filter(DSTR_TABLES.devices, device);
    PASSING devices(DEV_DEVICE_MAX);
    for (int i = 0; i < DEV_DEVICE_MAX; ++i) {
        devices[static_cast<std::size_t>(i)] =
            wanted_device.value_or(i) == i &&
            wanted_family.value_or(DSTR_TABLES.device_families[i]) == DSTR_TABLES.device_families[i];
    }
    return devices;
}

}  // namespace

DEV_PART_MANAGER::DEV_PART_MANAGER() = default;
DEV_PART_MANAGER::~DEV_PART_MANAGER() = default;

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) const {
    const bool known = device > DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX;
    return known ? static_cast<DEV_FAMILY_ENUM>(DSTR_TABLES.device_families[device]) : DEV_FAMILY_INVALID;
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(int part) const {
    const bool known = part > DEV_PART_INVALID && part < DEV_PART_MAX;
    return known ? static_cast<DEV_DEVICE_ENUM>(DSTR_TABLES.part_facts[part].device) : DEV_DEVICE_INVALID;
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<int>* parts, const std::string& family, const std::string& device,
                                        const std::string& package, const std::string& pin_count,
                                        const std::string& speed_grade, bool orderable_only, bool production_only,
                                        bool include_hidden, const std::string& temperature_grade) const {
    const PASSING devices = passing_devices(family, device);
    const PASSING packages = passing_rows(DSTR_TABLES.packages, package, pin_count);
    const PASSING grades = passing_rows(DSTR_TABLES.grades, speed_grade, temperature_grade);
    const int refused = include_hidden ? 0 : PART_IS_HIDDEN;
    const int wanted =
        PART_IS_REAL | (orderable_only ? PART_IS_ORDERABLE : 0) | (production_only ? PART_IS_PRODUCTION : 0);

    // Each part is put behind those that pass, and stays there when it passes, too: which ones do cannot be foretold.
    parts->resize(static_cast<std::size_t>(DEV_PART_GENERIC));
    std::size_t count = 0;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const PART_FACTS& facts = DSTR_TABLES.part_facts[part];
        const auto has_flags = static_cast<std::size_t>((facts.flags & (wanted | refused)) == wanted);
        (*parts)[count] = part;
        count += has_flags & devices[facts.device] & packages[facts.package] & grades[facts.grade];
    }
    parts->resize(count);
    return count != 0;
}
