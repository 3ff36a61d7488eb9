#pragma once

/// \file
/// Flash source tables of the tests' own.

#include <string>
#include <vector>

#include "pgmdev/flash/columns.h"
#include "pgmdev/flash/fixture.h"
#include "support/scratch.h"

namespace flash_reference {

inline CELLS type_row() {
    return row_of(&COLUMN::type);
}
inline CELLS name_row() {
    return row_of(&COLUMN::name);
}
inline CELLS data_row() {
    return row_of(&COLUMN::cell);
}  ///< without fault

/// The record that data_row() stands for.
inline PGMDEV_SFL_FLASH_INFO record_of_data_row() {
    PGMDEV_SFL_FLASH_INFO r;
    r.manufacturer_name = "Maker";
    r.device_name = "CHIP";
    r.memory_id = 0x18;
    r.memory_id_index = 2;
    r.memory_type = 0xBA;
    r.memory_type_index = 1;
    r.mfc_id = 0x20;
    r.orvane_id = 24;
    r.default_dev = true;
    r.ini = "NONE";
    r.micron_flow = r.flag_status = r.sdm_support = true;
    r.die_count = 1;
    r.device_bit_size = 134217728;
    r.device_sector_byte = 65536;
    r.bulk_erase_time = 250;
    r.sec_erase_time = 3;
    r.program_utime = 5000;
    r.protection_mask = r.protection_value = 0x5C;
    r.protection_division = 15;
    r.bottom_value = 5;
    r.asc_voltage = "3.3V";
    return r;
}

/// Bytes of the payload of a table with that row: head and end marker, members, and the texts of four of them.
inline std::size_t data_row_payload_size() {
    return 16 + empty_record_size() + std::string("MakerCHIPNONE3.3V").size();
}

/// The payload of a packed file, read as plainly as possible.
inline std::string payload_of(const std::string& path) {
    const std::string file = read_file(path);
    EXPECT_EQ(file.substr(0, 40), head());
    EXPECT_EQ(file.substr(file.size() - 2), std::string(2, '\0'));
    std::size_t size = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        size |= std::size_t{static_cast<unsigned char>(file.at(40 + i))} << (8 * i);
    }
    return inflated(file.substr(44, file.size() - 46), size);
}

inline std::string joined(const CELLS& cells, const std::string& separator = ",") {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : separator) + cells[i];
    }
    return line;
}

/// The eight lines before the data rows.
inline std::vector<std::string> header() {
    const std::string free = joined(CELLS(MEMBERS, "-"));
    return {joined(type_row()), joined(name_row()), "free", "free, too", free, free, free, "-"};
}

/// The text of a table: the header, then data rows.
inline std::string table(const std::vector<CELLS>& rows) {
    std::string text;
    for (const std::string& line : header()) {
        text += line + "\n";
    }
    for (const CELLS& row : rows) {
        text += joined(row) + "\n";
    }
    return text;
}

/// A data row with one cell changed.
inline CELLS row_with(std::size_t member, const std::string& cell, CELLS row = data_row()) {
    row[member] = cell;
    return row;
}

}  // namespace flash_reference
