#include "pgmdev_part_index.h"

#include <array>
#include <unordered_set>

#include "names/catalog_parts.h"
#include "names/conversions.h"
#include "names/part_indexes.h"
#include "names/stores.h"
#include "stl.h"

namespace {

using TABLE = PGMDEV_DDB_GRAMMAR_ENUM;

/// The tables whose entries are names of parts or devices, or lead on to these.
constexpr std::array TABLES_OF_PARTS{TABLE::PACKAGE_NAME,   TABLE::PGM_NAME,     TABLE::PGM_PART_PCF,
                                     TABLE::PGM_FAMILY_PCF, TABLE::DEV_PART_PCF, TABLE::DEV_FAMILY_PCF};

using CONVERSION = PGMDEV_PART_INDEX::CONVERSION;

/// None of a number that is no conversion.
std::vector<std::string_view> names_before(const GRAMMAR_STORE* store, CONVERSION conversion, const std::string& name) {
    switch (conversion) {
        case CONVERSION::PACKAGE_NAME:
            return names_with_key(store, TABLE::PACKAGE_NAME, name);
        case CONVERSION::PGM_NAME:
            return names_with_pgm_name(store, name);
        case CONVERSION::PGM_PART_PCF:
            return names_with_pgm_pcf(store, TABLE::PGM_PART_PCF, name);
        case CONVERSION::PGM_FAMILY_PCF:
            return names_with_pgm_pcf(store, TABLE::PGM_FAMILY_PCF, name);
        case CONVERSION::DEV_PART_PCF:
            return names_with_key(store, TABLE::DEV_PART_PCF, name);
        case CONVERSION::DEV_FAMILY_PCF:
            return names_with_key(store, TABLE::DEV_FAMILY_PCF, name);
    }
    return {};
}

}  // namespace

PGMDEV_PART_INDEX::PGMDEV_PART_INDEX() {
    parts_by_programmer_file_name(INDEX_WANTED::NOW);
    if (!host_has_catalog_parts()) {
        parts_by_possible_name(INDEX_WANTED::NOW);
    }
}

PGMDEV_PART_INDEX::~PGMDEV_PART_INDEX() = default;

std::string PGMDEV_PART_INDEX::get_part_name_from_pcf(std::string pcf_name) const {
    stl_toupper(pcf_name);
    return parts_by_programmer_file_name(INDEX_WANTED::NOW)->find(pcf_name).value_or("");
}

std::string PGMDEV_PART_INDEX::get_possible_full_name(std::string name) const {
    stl_toupper(name);
    const auto full_name =
        host_has_catalog_parts() ? catalog_part_denoted(name) : parts_by_possible_name(INDEX_WANTED::NOW)->find(name);
    return full_name.value_or("");
}

std::vector<std::string> PGMDEV_PART_INDEX::get_names_converted_to(CONVERSION conversion, std::string name) {
    const GRAMMAR_STORE* store = get_grammar_store();
    normalize_name(name);
    const std::vector<std::string_view> names = names_before(store, conversion, name);
    return {names.begin(), names.end()};
}

std::vector<std::string> PGMDEV_PART_INDEX::get_origins(std::string name) {
    const GRAMMAR_STORE* store = get_grammar_store();
    normalize_name(name);
    std::vector<std::string_view> origins{name};
    std::unordered_set<std::string_view> seen{name};
    for (std::size_t i = 0; i < origins.size(); ++i) {
        for (const TABLE table : TABLES_OF_PARTS) {
            for (const std::string_view entry : entries_of(store, table, origins[i])) {
                if (seen.insert(entry).second) {
                    origins.push_back(entry);
                }
            }
        }
    }
    return {origins.begin() + 1, origins.end()};
}

std::vector<std::string> PGMDEV_PART_INDEX::get_converted_names() {
    const GRAMMAR_STORE* store = get_grammar_store();
    std::vector<std::string> names;
    for (const TABLE table : TABLES_OF_PARTS) {
        const std::vector<std::string_view> keys = keys_of(store, table);
        names.insert(names.end(), keys.begin(), keys.end());
    }
    return names;
}
