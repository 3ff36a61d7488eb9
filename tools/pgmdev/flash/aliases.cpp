#include "flash/aliases.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <set>

#include "files/csv_lines.h"
#include "flash/database.h"
#include "gen.h"

namespace {

constexpr std::size_t ALIAS_CELLS = 3;

std::vector<FLASH_ALIAS> aliases_of(const CSV_LINES& read) {
    std::vector<FLASH_ALIAS> aliases;
    for (const std::vector<std::string>& cells : read.lines) {
        if (cells.size() == ALIAS_CELLS) {
            aliases.push_back({cells[0], cells[1], cells[2]});
        }
    }
    return aliases;
}

}  // namespace

const std::vector<FLASH_ALIAS>& flash_aliases() {
    static std::map<std::string, std::vector<FLASH_ALIAS>> lists;
    const std::string file = installed_flash_list(FLASH_ALIASES_LIST);
    const auto known = lists.find(file);
    return known != lists.end() ? known->second : lists.emplace(file, aliases_of(read_csv_lines(file))).first->second;
}

NOTES_FAULTS flash_alias_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    constexpr auto WARNING = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
    NOTES_FAULTS found{beside_flash_source(csv_file, FLASH_ALIASES_LIST), {}};
    const CSV_LINES read = read_csv_lines(found.file);
    if (!read.names.empty() && read.names.size() != ALIAS_CELLS) {
        found.faults.push_back(list_fault("", "three columns: alias, device_name, reason"));
    }
    for (const std::size_t line : read.malformed) {
        found.faults.push_back(list_fault("", fmt::format("as many cells in line {} as in the first", line)));
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
    const std::vector<FLASH_ALIAS>& aliases = flash_aliases();
    const auto found = std::find_if(aliases.begin(), aliases.end(),
                                    [&name](const FLASH_ALIAS& alias) { return gen_stricmp(alias.name, name) == 0; });
    return found != aliases.end() ? std::optional(*found) : std::nullopt;
}

std::vector<std::string> with_flash_aliases(std::vector<std::string> names) {
    for (const FLASH_ALIAS& alias : flash_aliases()) {
        names.push_back(alias.name);
    }
    return names;
}
