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

/// A filter by text: none, or the only text that passes.
class WANTED_TEXT {
public:
    explicit WANTED_TEXT(const std::string& text) : m_text(text), m_any(equal_names(text, ANY)) {}

    bool passes(std::uint32_t address) const { return m_any || equal_names(m_text, DSTR_TABLES.pool.at(address)); }

private:
    std::string_view m_text;
    bool m_any;
};

/// A filter for each of the two texts of a fact.
struct FACT_FILTER {
    WANTED_TEXT first;
    WANTED_TEXT second;

    bool passes(const FACT_TEXTS& fact) const { return first.passes(fact.first) && second.passes(fact.second); }
};

/// Which rows of a table pass a filter: a byte for each, since every part is looked up in them.
using PASSING = std::vector<std::uint8_t>;

PASSING passing_rows(const FACT_TABLE& table, const FACT_FILTER& filter) {
    PASSING rows(table.count);
    for (std::uint32_t i = 0; i < table.count; ++i) {
        rows[i] = filter.passes(table.rows[i]) ? 1 : 0;
    }
    return rows;
}

/// The devices of that family, or all.
PASSING passing_devices(std::optional<int> family) {
    PASSING devices(DEV_DEVICE_MAX);
    for (std::size_t device = 0; device < devices.size(); ++device) {
        const int its_family = DSTR_TABLES.device_families[device];
        devices[device] = family.value_or(its_family) == its_family ? 1 : 0;
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
    const std::optional<int> wanted_family = number_filter(DSTR_TABLES.families, family);
    const std::optional<int> wanted_device = number_filter(DSTR_TABLES.devices, device);
    const FACT_FILTER packages{WANTED_TEXT(package), WANTED_TEXT(pin_count)};
    const FACT_FILTER grades{WANTED_TEXT(speed_grade), WANTED_TEXT(temperature_grade)};
    const int refused = include_hidden ? 0 : PART_IS_HIDDEN;
    const int wanted =
        PART_IS_REAL | (orderable_only ? PART_IS_ORDERABLE : 0) | (production_only ? PART_IS_PRODUCTION : 0);
    const auto has_flags = [=](const PART_FACTS& facts) { return (facts.flags & (wanted | refused)) == wanted; };

    if (wanted_device) {  // of which there are too few parts for tables of what passes
        parts->clear();
        const int its_family = DSTR_TABLES.device_families[*wanted_device];
        const PART_SPAN span = DSTR_TABLES.device_parts[*wanted_device];
        for (std::uint32_t part = span.first; part < span.end; ++part) {
            const PART_FACTS& facts = DSTR_TABLES.part_facts[part];
            if (facts.device == *wanted_device && wanted_family.value_or(its_family) == its_family &&
                has_flags(facts) && packages.passes(DSTR_TABLES.packages.rows[facts.package]) &&
                grades.passes(DSTR_TABLES.grades.rows[facts.grade])) {
                parts->push_back(static_cast<int>(part));
            }
        }
        return !parts->empty();
    }
    const PASSING devices = passing_devices(wanted_family);
    const PASSING package_rows = passing_rows(DSTR_TABLES.packages, packages);
    const PASSING grade_rows = passing_rows(DSTR_TABLES.grades, grades);
    // Each part is put behind those that pass, and stays there when it passes, too: which ones do cannot be foretold.
    parts->resize(static_cast<std::size_t>(DEV_PART_GENERIC));
    std::size_t count = 0;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const PART_FACTS& facts = DSTR_TABLES.part_facts[part];
        (*parts)[count] = part;
        count += static_cast<std::size_t>(has_flags(facts)) & devices[facts.device] & package_rows[facts.package] &
                 grade_rows[facts.grade];
    }
    parts->resize(count);
    return count != 0;
}
