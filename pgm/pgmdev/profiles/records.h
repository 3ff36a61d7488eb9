#pragma once

/// \file
/// The body of the packed device-information database: records as loops over the member table, and index tables.

#include <array>
#include <span>
#include <string>
#include <vector>

#include "packed/codec.h"
#include "pgmdev_dev_info.h"

/// Bytes of a record besides the characters of its texts: a tag for each member, the fixed-size values, a length byte
/// for each text, and "END1".
inline constexpr DWORD DEV_INFO_RECORD_FIXED_SIZE = [] {
    DWORD size = PACKED_MARKER_SIZE;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        constexpr std::array<DWORD, 8> VALUE_SIZES{4, 1, 1, 1, 1, 2, 4, 4};  // by kind
        size += 1 + VALUE_SIZES[member.kind];
    }
    return size;
}();
static_assert(DEV_INFO_RECORD_FIXED_SIZE == 276);

/// Reads the members of one record, without the marker behind it.
void read_dev_info_members(PACKED_READER& reader, PGMDEV_DEVICE_INFO& record);

/// The most records, the last one possibly cut, that a body of `size` bytes can hold.
QWORD dev_info_records_in(QWORD size);

/// The bytes that a row of the source table takes as a record.
QWORD dev_info_record_size(const std::vector<std::string>& cells);

/// The condition that a cell of the source table breaks, or null.
const char* dev_info_cell_condition(const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell);

/// Writes one cell as a value of its member; a cell that breaks its condition is reported.
void write_dev_info_cell(PACKED_WRITER& writer, const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell);

/// Writes the cells of one row, without the marker behind it; there must be as many as members.
void write_dev_info_members(PACKED_WRITER& writer, const std::vector<std::string>& cells);

/// The record that a row of valid cells is compiled to.
PGMDEV_DEVICE_INFO dev_info_record_of(const std::vector<std::string>& cells);

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

void read_index_table(PACKED_READER& reader, const INDEX_TABLE& table, std::span<DWORD> entries);
void write_index_table(PACKED_WRITER& writer, const INDEX_TABLE& table, std::span<const DWORD> entries);
