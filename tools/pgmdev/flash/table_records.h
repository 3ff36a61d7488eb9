#pragma once

/// \file
/// What the verbs of tables know of flash records.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pgmdev_flash_table.h"
#include "tables/notes_files.h"
#include "tables/packed_schema.h"
#include "terminal/json.h"

struct FLASH_RECORDS {
    using RECORD = PGMDEV_SFL_FLASH_INFO;

    static constexpr const auto& MEMBERS = PGMDEV_SFL_FLASH_MEMBERS;
    static constexpr const char* GOOD_KEYS = "one for each device name";
    static constexpr const char* GOOD_VALUES = "no member takes names";

    static PACKED_SCHEMA schema();

    /// Device name and identification bytes: "W25Q64JV 0:EF 1:40 2:17".
    static std::string key(const RECORD& record);
    static std::string match_key(const RECORD& record);  ///< names are the same in any case
    static std::string cell(const PGMDEV_SFL_FLASH_MEMBER& member, const RECORD& record);
    static JSON values(const RECORD& record);

    static std::vector<NOTES_FAULTS> notes_beside(const std::string& csv_file, const PGMDEV_FLASH_TABLE& table);
    static std::vector<NOTES_COPY> notes_of(const std::string& csv_file, const std::string& pcf_file);

    static std::vector<std::string> key_faults(const std::vector<RECORD>& records);
    static std::vector<std::string> value_faults(const std::vector<RECORD>& /*records*/) { return {}; }
    static std::vector<std::string> names_of(std::string_view /*member*/) { return {}; }
    static std::vector<std::pair<std::string, std::vector<DWORD>>> index_tables(const PGMDEV_FLASH_TABLE& /*table*/) {
        return {};
    }
};
