#include "flash/aliases.h"

#include <algorithm>

#include "files/csv_lines.h"
#include "flash/database.h"
#include "gen.h"

const std::vector<FLASH_ALIAS>& flash_aliases() {
    static const std::vector<FLASH_ALIAS> aliases = [] {
        std::vector<FLASH_ALIAS> read;
        for (const std::vector<std::string>& cells : read_csv_lines(installed_flash_list(FLASH_ALIASES_LIST)).lines) {
            if (cells.size() == 3) {
                read.push_back({cells[0], cells[1], cells[2]});
            }
        }
        return read;
    }();
    return aliases;
}

std::optional<FLASH_ALIAS> find_flash_alias(const std::string& name) {
    const std::vector<FLASH_ALIAS>& aliases = flash_aliases();
    const auto found = std::find_if(aliases.begin(), aliases.end(),
                                    [&name](const FLASH_ALIAS& alias) { return gen_stricmp(alias.name, name) == 0; });
    return found != aliases.end() ? std::optional(*found) : std::nullopt;
}
