#pragma once

/// \file
/// Flash source tables of the tests' own.

#include <array>
#include <string>
#include <vector>

namespace flash_reference {

using CELLS = std::vector<std::string>;

inline const CELLS TYPE_ROW{
    "STL_STRING", "STL_STRING", "bool",  "BYTE",  "BYTE", "BYTE", "BYTE", "BYTE", "BYTE",  "BYTE",  "bool",
    "STL_STRING", "bool",       "bool",  "bool",  "bool", "bool", "bool", "BYTE", "DWORD", "DWORD", "bool",
    "bool",       "DWORD",      "DWORD", "DWORD", "BYTE", "BYTE", "BYTE", "BYTE", "BYTE",  "bool",  "STL_STRING"};

inline const CELLS NAME_ROW{"manufacturer_name",  "device_name",         "silicon_id",        "memory_id",
                            "memory_id_index",    "memory_type",         "memory_type_index", "mfc_id",
                            "mfc_id_index",       "orvane_id",           "default_dev",       "ini",
                            "extended_mode",      "micron_flow",         "spansion_flow",     "startup_protected",
                            "aai_mode",           "flag_status",         "die_count",         "device_bit_size",
                            "device_sector_byte", "half_size",           "byte4_addressing",  "bulk_erase_time",
                            "sec_erase_time",     "program_utime",       "protection_mask",   "protection_value",
                            "unprotect_value",    "protection_division", "bottom_value",      "sdm_support",
                            "asc_voltage"};

/// A data row without fault.
inline const CELLS DATA_ROW{"Maker", "CHIP",      "FALSE", "0x18",  "2",     "0xBA",  "1",     "0x20",  "0",
                            "24",    "TRUE",      "NONE",  "FALSE", "TRUE",  "FALSE", "FALSE", "FALSE", "TRUE",
                            "1",     "134217728", "65536", "FALSE", "FALSE", "250",   "3",     "5000",  "0x5C",
                            "0x5C",  "0x00",      "15",    "5",     "TRUE",  "3.3V"};

inline std::string joined(const CELLS& cells, const std::string& separator = ",") {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : separator) + cells[i];
    }
    return line;
}

/// The eight lines before the data rows.
inline std::vector<std::string> header() {
    const std::string free = joined(CELLS(33, "-"));
    return {joined(TYPE_ROW), joined(NAME_ROW), "free", "free, too", free, free, free, "-"};
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
inline CELLS row_with(std::size_t member, const std::string& cell, CELLS row = DATA_ROW) {
    row[member] = cell;
    return row;
}

}  // namespace flash_reference
