#include "flash/list.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "flash/output.h"
#include "flash/rows.h"
#include "flash/size_filter.h"
#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/filtered_listing.h"
#include "terminal/size_text.h"
#include "wildcard.h"

namespace {

/// Which records are wanted, besides by name; those that are not given do not restrict.
struct WANTED {
    std::optional<std::string> maker;
    std::optional<std::string> voltage;
    std::optional<QWORD> size;
};

std::optional<std::string> trimmed_text(const ARGUMENTS& given, const char* option) {
    return given.has(option) ? std::optional(gen_remove_leading_and_trailing_white_spaces(given.text(option)))
                             : std::nullopt;
}

bool is_wanted(const PGMDEV_SFL_FLASH_INFO& record, const WANTED& wanted) {
    const std::string& voltage = record.asc_voltage;
    const bool fits_voltage = !wanted.voltage || fits_pattern(voltage, *wanted.voltage) ||
                              fits_pattern(voltage, *wanted.voltage + "V");  // people write 3.3 for 3.3V
    return fits_voltage && (!wanted.maker || fits_pattern(record.manufacturer_name, *wanted.maker)) &&
           (!wanted.size || record.device_bit_size == *wanted.size);
}

/// What may have been meant by a text that no row has.
std::string texts_near(const std::string& value, const std::vector<FLASH_ROW>& rows,
                       std::string PGMDEV_SFL_FLASH_INFO::*text) {
    std::set<std::string> known;
    for (const FLASH_ROW& row : rows) {
        known.insert(row.record.*text);
    }
    return nearest_or_all(value, {known.begin(), known.end()});
}

/// The sizes next to one that no row has, below and above it.
std::string sizes_near(QWORD size, const std::vector<FLASH_ROW>& rows) {
    std::set<QWORD> known;
    for (const FLASH_ROW& row : rows) {
        known.insert(row.record.device_bit_size);
    }
    const auto above = known.upper_bound(size);
    std::vector<std::string> near;
    if (above != known.begin()) {
        near.push_back(size_text(*std::prev(above)));
    }
    if (above != known.end()) {
        near.push_back(size_text(*above));
    }
    return did_you_mean(near);
}

/// Which of the filters no row passes even by itself, with what may have been meant.
std::string vain_filters(const std::vector<FLASH_ROW>& rows, const WANTED& wanted, const ARGUMENTS& given) {
    struct FILTER {
        const char* option;
        WANTED alone;
        std::string PGMDEV_SFL_FLASH_INFO::*text;  ///< null: not by a text
    };
    const FILTER filters[]{{"--maker", {wanted.maker, {}, {}}, &PGMDEV_SFL_FLASH_INFO::manufacturer_name},
                           {"--voltage", {{}, wanted.voltage, {}}, &PGMDEV_SFL_FLASH_INFO::asc_voltage},
                           {"--size", {{}, {}, wanted.size}, nullptr}};
    std::string reasons;
    for (const FILTER& filter : filters) {
        const bool passed = std::any_of(rows.begin(), rows.end(),
                                        [&](const FLASH_ROW& row) { return is_wanted(row.record, filter.alone); });
        if (!passed && given.has(filter.option)) {
            const std::string& value = given.text(filter.option);
            reasons += fmt::format(
                "; none passes {} {}{}", filter.option, value,
                filter.text != nullptr ? texts_near(value, rows, filter.text) : sizes_near(*wanted.size, rows));
        }
    }
    return reasons;
}

TEXT_TABLE table_of(bool every_row) {
    std::vector<std::string> heading = record_heading();
    if (every_row) {
        heading.insert(heading.begin(), "row");
        heading.insert(heading.end() - 1, "enabled");
    }
    TEXT_TABLE table(std::move(heading));
    table.leaves_out(record_columns_that_matter_least());
    return table;
}

std::vector<std::string> cells_of(const FLASH_ROW& row, bool every_row) {
    std::vector<std::string> cells = record_cells(row.record);
    cells.insert(cells.begin(), row.index ? std::to_string(*row.index) : "-");
    if (every_row) {
        cells.insert(cells.begin(), std::to_string(row.row.value()));
        cells.back() = row.is_enabled() ? "yes" : "no";
        cells.push_back(row.enabling_switch.empty() ? "-" : row.enabling_switch);
    }
    return cells;
}

void list(const ARGUMENTS& given, COMMAND& command) {
    const bool every_row = given.has("--all-rows");
    const WANTED wanted{trimmed_text(given, "--maker"), trimmed_text(given, "--voltage"),
                        given.has("--size") ? std::optional(parse_size(given.text("--size"))) : std::nullopt};
    const auto passes = [&wanted](const ARGUMENTS& patterns) {
        return [&wanted, pattern = GIVEN_PATTERN(patterns)](const FLASH_ROW& row) {
            return is_wanted(row.record, wanted) && pattern.fits(row.record.device_name);
        };
    };
    std::vector<JSON> objects;
    TEXT_TABLE table = table_of(every_row);
    const std::vector<FLASH_ROW> rows = every_row ? all_flash_rows() : enabled_flash_rows();
    const auto is_chosen = passes(given);
    for (const FLASH_ROW& row : rows) {
        if (is_chosen(row)) {
            objects.push_back(row_json(row, every_row));
            table.add(cells_of(row, every_row));
        }
    }
    const auto missing = [&] {
        std::vector<std::string> names(rows.size());
        std::transform(rows.begin(), rows.end(), names.begin(),
                       [](const FLASH_ROW& row) { return row.record.device_name; });
        return fmt::format(
            "there is no {}flash{} that passes all filters{}{}", every_row ? "" : "enabled ", given_pattern_text(given),
            vain_filters(rows, wanted, given),
            did_you_mean_by_pattern(
                given, [&](const std::string& name) { return nearest(name, names); },
                [&](const ARGUMENTS& others) { return std::count_if(rows.begin(), rows.end(), passes(others)); }));
    };
    print_filtered_listing(object_schema(row_members(every_row)), objects, table, missing, given, command);
}

JSON listed_flash_schema() {
    return object_schema(any_row_members());
}

}  // namespace

VERB flash_list_verb() {
    VERB verb = with_pattern(VERB("list", "The enabled records of the database, all or chosen ones",
                                  "pgmdev --json flash list \"W25Q*\" --size 128Mbit", list));
    verb.takes({"--maker", "Only of makers whose names fit this pattern", ARGUMENT::OPTIONAL_TEXT, "PATTERN"})
        .takes({"--size", "Only of this size, such as 512Kbit, 128Mbit or 1Gbit; Mbit without unit",
                ARGUMENT::OPTIONAL_TEXT, "SIZE"})
        .takes(
            {"--voltage", "Only for voltages that fit this pattern, such as 3.3V", ARGUMENT::OPTIONAL_TEXT, "PATTERN"})
        .takes({"--all-rows", "Switched-off rows, too, with the switch that enables them", ARGUMENT::FLAG});
    return with_list_options(std::move(verb), listed_flash_schema);
}
