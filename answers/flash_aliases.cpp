#include "flash_aliases.h"

#include <utility>

#include "gen.h"

namespace {

/// The alias of a line; none: it has another form.
std::optional<FLASH_ALIAS> alias_of(const CSV_LINES& list, const CSV_LINE& line) {
    if (!list.has_cells(line, FLASH_ALIAS_CELLS)) {
        return std::nullopt;
    }
    const std::vector<std::string> cells = list.cells_of(line);
    return FLASH_ALIAS{cells[0], cells[1], cells[2]};
}

}  // namespace

std::vector<FLASH_ALIAS> aliases_of(const CSV_LINES& list) {
    std::vector<FLASH_ALIAS> aliases;
    for (const CSV_LINE& line : list.lines()) {
        if (auto alias = alias_of(list, line)) {
            aliases.push_back(*std::move(alias));
        }
    }
    return aliases;
}

std::optional<FLASH_ALIAS> find_alias(const CSV_LINES& list, std::string_view name) {
    for (const CSV_LINE& line : list.lines()) {
        if (gen_stricmp(line.first, name) == 0) {
            if (auto alias = alias_of(list, line)) {
                return alias;
            }
        }
    }
    return std::nullopt;
}

std::vector<std::string> with_aliases(const CSV_LINES& list, std::vector<std::string> names) {
    for (const CSV_LINE& line : list.lines()) {
        if (list.has_cells(line, FLASH_ALIAS_CELLS)) {
            names.emplace_back(line.first);
        }
    }
    return names;
}

std::vector<std::string> names_of_flash(std::span<const PGMDEV_SFL_FLASH_INFO> records, const CSV_LINES& list) {
    std::vector<std::string> names;
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        if (record.default_dev) {
            names.push_back(record.device_name);
        }
    }
    return with_aliases(list, std::move(names));
}
