#include "flash/aliases.h"

#include <fmt/core.h>

#include <map>
#include <set>
#include <utility>

#include "flash/database.h"
#include "gen.h"

namespace {

/// What `make` makes of the list of the installed database, once for each list.
template <class MADE, class MAKE>
const MADE& made_of_installed_list(MAKE make) {
    static std::map<std::string, MADE> all;
    const std::string file = installed_flash_list(FLASH_ALIASES_LIST);
    const auto known = all.find(file);
    return known != all.end() ? known->second : all.emplace(file, make(file)).first->second;
}

const CSV_LINES& installed_aliases() {
    return made_of_installed_list<CSV_LINES>([](const std::string& file) { return read_flash_list(file); });
}

}  // namespace

const std::vector<FLASH_ALIAS>& flash_aliases() {
    return made_of_installed_list<std::vector<FLASH_ALIAS>>(
        [](const std::string&) { return aliases_of(installed_aliases()); });
}

NOTES_FAULTS flash_alias_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    constexpr auto WARNING = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
    NOTES_FAULTS found{beside_flash_source(csv_file, FLASH_ALIASES_LIST), {}};
    const CSV_LINES read = read_flash_list(found.file);
    if (!read.names().empty() && read.names().size() != FLASH_ALIAS_CELLS) {
        found.faults.push_back(list_fault("", "three columns: alias, device_name, reason"));
    }
    for (const CSV_LINE& line : read.lines()) {
        if (read.cells_of(line).empty()) {
            found.faults.push_back(
                list_fault("", fmt::format("as many cells in line {} as in the first", line.number)));
        }
    }
    if (records.empty()) {  // the table has faults of its own
        return found;
    }
    const auto comes_before = [](const std::string& a, const std::string& b) { return gen_stricmp(a, b) < 0; };
    std::set<std::string, decltype(comes_before)> names;
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        names.insert(record.device_name);
    }
    for (const FLASH_ALIAS& alias : aliases_of(read)) {
        if (!names.contains(alias.device_name)) {
            found.faults.push_back(list_fault(
                alias.name, fmt::format("a row for it, not {}, which has none", alias.device_name), WARNING));
        } else if (names.contains(alias.name)) {
            found.faults.push_back(list_fault(alias.name, "a name that has no row of its own", WARNING));
        }
    }
    return found;
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
