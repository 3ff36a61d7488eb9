#include "flash/aliases.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "flash/database.h"
#include "gen.h"

namespace {

constexpr auto WARNING = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
constexpr const char* NO_ROW_OF_ITS_OWN = "a name that has no row of its own";

/// Of both lists.
constexpr std::size_t COLUMNS = FLASH_ALIAS_CELLS;

/// What is wrong with the form of a list.
std::vector<PGMDEV_TABLE_FAULT> form_faults(const CSV_LINES& list, std::string_view columns) {
    std::vector<PGMDEV_TABLE_FAULT> faults;
    if (!list.names().empty() && list.names().size() != COLUMNS) {
        faults.push_back(list_fault("", fmt::format("three columns: {}", columns)));
    }
    for (const CSV_LINE& line : list.lines()) {
        if (!list.has_all_cells(line)) {
            faults.push_back(list_fault("", fmt::format("as many cells in line {} as in the first", line.number)));
        }
    }
    return faults;
}

struct IN_ANY_CASE {
    bool operator()(const std::string& a, const std::string& b) const { return gen_stricmp(a, b) < 0; }
};
using ROW_NAMES = std::set<std::string, IN_ANY_CASE>;

ROW_NAMES names_of(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    ROW_NAMES names;
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        names.insert(record.device_name);
    }
    return names;
}

/// What `make` makes of a list of the installed database, once for each file.
template <class MADE, class MAKE>
const MADE& made_of_installed_list(const std::string& list, MAKE make) {
    static std::map<std::string, MADE> all;
    const std::string file = installed_flash_list(list);
    const auto known = all.find(file);
    return known != all.end() ? known->second : all.emplace(file, make(file)).first->second;
}

const CSV_LINES& installed_lines(const std::string& list) {
    return made_of_installed_list<CSV_LINES>(list, [](const std::string& file) { return read_flash_list(file); });
}

const CSV_LINES& installed_aliases() {
    return installed_lines(FLASH_ALIASES_LIST);
}

}  // namespace

const std::vector<FLASH_ALIAS>& flash_aliases() {
    return made_of_installed_list<std::vector<FLASH_ALIAS>>(
        FLASH_ALIASES_LIST, [](const std::string&) { return aliases_of(installed_aliases()); });
}

NOTES_FAULTS flash_alias_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    NOTES_FAULTS found{beside_flash_source(csv_file, FLASH_ALIASES_LIST), {}};
    const CSV_LINES read = read_flash_list(found.file);
    found.faults = form_faults(read, "alias, device_name, reason");
    if (records.empty()) {  // the table has faults of its own
        return found;
    }
    const ROW_NAMES names = names_of(records);
    for (const FLASH_ALIAS& alias : aliases_of(read)) {
        if (!names.contains(alias.device_name)) {
            found.faults.push_back(list_fault(
                alias.name, fmt::format("a row for it, not {}, which has none", alias.device_name), WARNING));
        } else if (names.contains(alias.name)) {
            found.faults.push_back(list_fault(alias.name, NO_ROW_OF_ITS_OWN, WARNING));
        }
    }
    return found;
}

NOTES_FAULTS left_out_flash_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    NOTES_FAULTS found{beside_flash_source(csv_file, FLASH_LEFT_OUT_LIST), {}};
    const CSV_LINES read = read_flash_list(found.file);
    found.faults = form_faults(read, "device_name, identification, reason");
    const ROW_NAMES names = names_of(records);
    for (const CSV_LINE& line : read.lines()) {
        if (names.contains(std::string(line.first))) {
            found.faults.push_back(list_fault(std::string(line.first), NO_ROW_OF_ITS_OWN, WARNING));
        }
    }
    return found;
}

const std::vector<LEFT_OUT_FLASH>& left_out_flash() {
    return made_of_installed_list<std::vector<LEFT_OUT_FLASH>>(FLASH_LEFT_OUT_LIST, [](const std::string& file) {
        const CSV_LINES list = read_flash_list(file);
        std::vector<LEFT_OUT_FLASH> chips;
        for (const CSV_LINE& line : list.lines()) {
            if (list.has_cells(line, COLUMNS)) {
                chips.push_back({std::string(line.first), list.cells_of(line).back()});
            }
        }
        return chips;
    });
}

std::optional<std::string> why_flash_is_left_out(const std::string& name) {
    const std::vector<LEFT_OUT_FLASH>& chips = left_out_flash();
    const auto found = std::find_if(chips.begin(), chips.end(),
                                    [&name](const LEFT_OUT_FLASH& chip) { return gen_stricmp(chip.name, name) == 0; });
    return found == chips.end() ? std::nullopt : std::optional(found->reason);
}

std::string no_flash_named(const std::string& name) {
    const std::optional<std::string> why = why_flash_is_left_out(name);
    return why ? fmt::format("the flash \"{}\" is left out of the table: {}", name, *why)
               : fmt::format("no flash is named \"{}\"", name);
}

std::optional<FLASH_ALIAS> find_flash_alias(const std::string& name) {
    return find_alias(installed_aliases(), name);
}

std::vector<std::string> with_flash_aliases(std::vector<std::string> names) {
    return with_aliases(installed_aliases(), std::move(names));
}

std::vector<std::string> names_of_installed_flash(std::span<const PGMDEV_SFL_FLASH_INFO> records) {
    return names_of_flash(records, installed_aliases());
}
