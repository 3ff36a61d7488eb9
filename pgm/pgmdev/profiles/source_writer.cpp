#include <algorithm>

#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "pgmdev_dev_info_table.h"
#include "profiles/source.h"
#include "records/source_writer.h"

namespace {

bool spell(const PGMDEV_DEVICE_INFO_MEMBER& member, const PGMDEV_DEVICE_INFO& record, std::string& cell) {
    bool nameable = false;
    cell = pgmdev_device_info_cell(member, record, nameable);
    return nameable && cell.find_first_of(" \t\n,") == std::string::npos;
}

std::size_t keys_of(const std::vector<std::string>& row) {
    return PROFILE_KEYS - static_cast<std::size_t>(std::count(row.begin(), row.begin() + PROFILE_KEYS, ""));
}

}  // namespace

std::string PGMDEV_DEV_INFO_TABLE::source_text(std::string& obstacle) const {
    constexpr std::size_t ROWS = PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE;
    if (m_records.size() != ROWS) {
        obstacle =
            std::to_string(m_records.size()) + " records cannot be a source table, which has " + std::to_string(ROWS);
        return {};
    }
    SOURCE_CELLS rows = source_header_cells(PROFILE_SOURCE::HEADER);
    const std::size_t header_rows = rows.size();
    if (!append_rows(rows, m_records, spell, obstacle)) {
        return {};
    }
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (const std::size_t keys = keys_of(rows[i]); i >= header_rows && keys != 1) {
            obstacle = "record " + std::to_string(i - header_rows) + " has " + std::to_string(keys) +
                       " keys: a source table takes one";
            return {};
        }
        text += source_row_text(rows[i]);
    }
    return text;
}
