#pragma once

/// \file
/// The payload of the packed flash database: its head, and its records as loops over the member table.

#include <string>
#include <vector>

#include "packed/codec.h"
#include "pgmdev_sfl_flash_info.h"

/// Bytes of a record besides the characters of its texts: a tag for each member, the fixed-size values, a length byte
/// for each text, and "END1".
inline constexpr DWORD FLASH_RECORD_FIXED_SIZE = [] {
    DWORD size = PACKED_MARKER_SIZE;
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        size += 1U + (member.type() == PGMDEV_MANAGER_DWORD ? 4U : 1U);
    }
    return size;
}();
static_assert(FLASH_RECORD_FIXED_SIZE == 85);

/// Reads the members of one record, without the marker behind it.
void read_flash_members(PACKED_READER& reader, PGMDEV_SFL_FLASH_INFO& record);

/// The most records, the last one possibly cut, that a payload of `size` bytes can hold.
QWORD flash_records_in(QWORD size);

/// The bytes that a row of the source table takes as a record.
QWORD flash_record_size(const std::vector<std::string>& cells);

/// The condition that a cell of the source table breaks, or null.
const char* flash_cell_condition(PGMDEV_MANAGER_TYPE type, const std::string& cell);

/// Writes one cell as a value of its member's type; a cell that breaks its condition is reported.
void write_flash_cell(PACKED_WRITER& writer, PGMDEV_MANAGER_TYPE type, const std::string& cell);

/// Writes the cells of one row, without the marker behind it; there must be as many as members.
void write_flash_members(PACKED_WRITER& writer, const std::vector<std::string>& cells);

/// The record that a row of valid cells is compiled to.
PGMDEV_SFL_FLASH_INFO flash_record_of(const std::vector<std::string>& cells);
