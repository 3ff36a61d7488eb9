#pragma once

/// \file
/// Programming profiles in the packed database and in the source table, and the index tables behind them.

#include <array>
#include <span>

#include "pgmdev_dev_info.h"
#include "profiles/cell_names.h"
#include "records/codec.h"

/// The first members, one of which keys a record.
inline constexpr std::size_t PROFILE_KEYS = 4;

template <>
struct RECORD_SCHEMA<PGMDEV_DEVICE_INFO> {
    static constexpr const auto& MEMBERS = PGMDEV_DEVICE_INFO_MEMBERS;
    static constexpr const PACKED_FORMAT& FORMAT = DEV_INFO_FORMAT;
    static constexpr CELL_SYNTAX SYNTAX{true, R"(string == "" || string == "FALSE" || string == "TRUE")",
                                        find_cell_name};
    static constexpr const char* WRONG_CELL_COUNT = "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER";
};

using PROFILE_CODEC = RECORD_CODEC<PGMDEV_DEVICE_INFO>;

/// One of the index tables: its marker, and the texts of the failed checks.
struct INDEX_TABLE {
    PGMDEV_MANAGER_TYPE tag;
    const char* wrong_tag;
    const char* wrong_count;
};

/// The index tables in file order: by family, by device, by part.
inline constexpr std::array<INDEX_TABLE, 3> INDEX_TABLES{{
    {PGMDEV_MANAGER_FAMILY_TBL, "data[index++] == PGMDEV_MANAGER_FAMILY_TBL",
     "get_dword(data, index) == DWORD(DEV_FAMILY_MAX)"},
    {PGMDEV_MANAGER_DEVICE_TBL, "data[index++] == PGMDEV_MANAGER_DEVICE_TBL",
     "get_dword(data, index) == DWORD(DEV_DEVICE_MAX)"},
    {PGMDEV_MANAGER_PART_TBL, "data[index++] == PGMDEV_MANAGER_PART_TBL",
     "get_dword(data, index) == DWORD(DEV_PART_MAX)"},
}};

/// The numbers of entries of the three tables.
std::array<DWORD, INDEX_TABLES.size()> index_table_counts();

/// The bytes that the three tables take in a body.
DWORD index_tables_size();

void read_index_table(PACKED_READER& reader, const INDEX_TABLE& table, std::span<DWORD> entries);
void write_index_table(PACKED_WRITER& writer, const INDEX_TABLE& table, std::span<const DWORD> entries);
