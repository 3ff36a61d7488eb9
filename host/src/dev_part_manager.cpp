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

bool passes(const std::optional<int>& filter, int number) {
    return !filter || *filter == number;
}

bool passes(const std::string& filter, std::uint32_t address) {
    return equal_names(filter, ANY) || equal_names(filter, DSTR_TABLES.pool.at(address));
}

/// Which rows of a table of facts pass a filter for each of the two texts.
std::vector<bool> passing_rows(const FACT_TABLE& table, const std::string& first, const std::string& second) {
    std::vector<bool> rows(table.count);
    for (std::uint32_t i = 0; i < table.count; ++i) {
        rows[i] = passes(first, table.rows[i].first) && passes(second, table.rows[i].second);
    }
    return rows;
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
    const std::optional<int> wanted_family = number_filter(DSTR_TABLES.families, family);
    const std::optional<int> wanted_device = number_filter(DSTR_TABLES.devices, device);
    const std::vector<bool> packages = passing_rows(DSTR_TABLES.packages, package, pin_count);
    const std::vector<bool> grades = passing_rows(DSTR_TABLES.grades, speed_grade, temperature_grade);
    const int refused = include_hidden ? 0 : PART_IS_HIDDEN;
    const int wanted =
        PART_IS_REAL | (orderable_only ? PART_IS_ORDERABLE : 0) | (production_only ? PART_IS_PRODUCTION : 0);

    parts->clear();
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const PART_FACTS& facts = DSTR_TABLES.part_facts[part];
        if ((facts.flags & (wanted | refused)) == wanted && passes(wanted_device, facts.device) &&
            passes(wanted_family, DSTR_TABLES.device_families[facts.device]) && packages[facts.package] &&
            grades[facts.grade]) {
            parts->push_back(part);
        }
    }
    return !parts->empty();
}
