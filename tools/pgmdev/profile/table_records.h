#pragma once

/// \file
/// What the verbs of tables know of profiles.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pgmdev_dev_info_table.h"
#include "tables/notes_files.h"
#include "tables/packed_schema.h"
#include "terminal/json.h"

struct PROFILE_RECORDS {
    using RECORD = PGMDEV_DEVICE_INFO;

    static constexpr const auto& MEMBERS = PGMDEV_DEVICE_INFO_MEMBERS;
    static constexpr const char* GOOD_KEYS = "one key in each record, the family GENERIC among them";
    static constexpr const char* GOOD_VALUES = "all identifiers and enumerators are known";

    static PACKED_SCHEMA schema();

    /// What the record is about: "family AVOCET".
    static std::string key(const RECORD& record);
    static std::string match_key(const RECORD& record);
    static std::string cell(const PGMDEV_DEVICE_INFO_MEMBER& member, const RECORD& record);
    static JSON values(const RECORD& record);

    static std::vector<NOTES_FAULTS> notes_beside(const std::string& /*csv_file*/,
                                                  const PGMDEV_DEV_INFO_TABLE& /*table*/) {
        return {};
    }
    static std::vector<NOTES_COPY> notes_of(const std::string& /*csv_file*/, const std::string& /*pcf_file*/) {
        return {};
    }

    static std::vector<std::string> key_faults(const std::vector<RECORD>& records);
    static std::vector<std::string> value_faults(const std::vector<RECORD>& records);
    static std::vector<std::string> names_of(std::string_view member);
    static std::vector<std::pair<std::string, std::vector<DWORD>>> index_tables(const PGMDEV_DEV_INFO_TABLE& table);
};
