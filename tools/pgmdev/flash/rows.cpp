#include "flash/rows.h"

#include "cfg.h"
#include "configuration/keys.h"
#include "files/database.h"
#include "flash/database.h"
#include "flash/output.h"

std::vector<FLASH_ROW> enabled_flash_rows() {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    std::vector<FLASH_ROW> rows;
    for (DWORD index = 0; index < manager.get_flash_count(); ++index) {
        rows.push_back(enabled_flash_row(manager, index));
    }
    return rows;
}

FLASH_ROW enabled_flash_row(PGMDEV_FLASH_MANAGER& manager, DWORD index) {
    const PGMDEV_SFL_FLASH_INFO& record = manager.get_flash_database()[index];
    return {record, index, std::nullopt, enabling_switch_of(record)};
}

std::vector<FLASH_ROW> all_flash_rows() {
    PGMDEV_FLASH_MANAGER programs = open_flash_database(1);
    return all_flash_rows(programs);
}

std::vector<FLASH_ROW> all_flash_rows(PGMDEV_FLASH_MANAGER& programs) {
    const PGMDEV_FLASH_TABLE table = flash_table();
    std::vector<FLASH_ROW> rows;
    rows.reserve(table.records().size());
    DWORD enabled = 0;
    for (const PGMDEV_SFL_FLASH_INFO& record : table.records()) {
        const std::string enabling_switch = enabling_switch_of(record);
        const bool is_enabled = enabling_switch.empty() || cfg_is_on(enabling_switch, false) != 0;
        rows.push_back({record, is_enabled ? std::optional(enabled) : std::nullopt, static_cast<DWORD>(rows.size()),
                        enabling_switch});
        enabled += is_enabled ? 1 : 0;
    }
    // The user's own description stands before the records of the database.
    const DWORD before = programs.get_flash_count() - enabled;
    for (FLASH_ROW& row : rows) {
        row.index = row.index ? std::optional(*row.index + before) : std::nullopt;
    }
    return rows;
}

PGMDEV_FLASH_TABLE flash_table() {
    const PLACE place = flash_database_place();
    return read_database(FLASH_DATABASE_KIND, place,
                         [&place] { return PGMDEV_FLASH_TABLE::from_database(FIO_PATH(place.path)); });
}

JSON row_json(const FLASH_ROW& row, bool every_row) {
    JSON object{{"index", row.index}};
    add_members(object, row.record);
    if (every_row) {
        object["row"] = row.row;
        object["enabled"] = row.is_enabled();
        object["switch"] = row.enabling_switch.empty() ? JSON() : JSON(row.enabling_switch);
    }
    return object;
}

std::vector<SCHEMA_MEMBER> row_members(bool every_row) {
    return every_row ? any_row_members() : indexed_record_members();
}

std::vector<SCHEMA_MEMBER> any_row_members() {
    std::vector<SCHEMA_MEMBER> members = record_members();
    members.insert(members.begin(), {"index", or_null(number_schema())});
    members.push_back({"row", number_schema(), false});
    members.push_back({"enabled", flag_schema(), false});
    members.push_back({"switch", or_null(text_schema()), false});
    return members;
}
