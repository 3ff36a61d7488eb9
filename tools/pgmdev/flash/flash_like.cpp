#include "flash/flash_like.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "flash/aliases.h"
#include "flash/rows.h"
#include "gen.h"
#include "terminal/did_you_mean.h"

std::optional<PGMDEV_SFL_FLASH_INFO> row_like(const std::string& text) {
    const std::string name = gen_remove_leading_and_trailing_white_spaces(text);
    const std::optional<FLASH_ALIAS> alias = find_flash_alias(name);
    const std::vector<FLASH_ROW> rows = all_flash_rows();
    const auto find = [&rows](const std::string& device_name) {
        return std::find_if(rows.begin(), rows.end(), [&](const FLASH_ROW& row) {
            return row.record.default_dev && gen_stricmp(row.record.device_name, device_name) == 0;
        });
    };
    auto row = find(name);
    if (row == rows.end() && alias) {
        row = find(alias->device_name);
    }
    return row != rows.end() ? std::optional(row->record) : std::nullopt;
}

std::string rows_near(const std::string& name) {
    std::vector<std::string> names;
    for (const FLASH_ROW& row : all_flash_rows()) {
        names.push_back(row.record.device_name);
    }
    return nearest_advice(name, with_flash_aliases(std::move(names)));
}
