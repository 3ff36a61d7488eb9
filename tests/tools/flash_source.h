#pragma once

/// \file
/// Source tables of serial flash, written by the tests.

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A column of the table: its name, its type, and a cell that nothing is wrong or remarkable with.
struct FLASH_COLUMN {
    const char* name;
    const char* type;
    const char* cell;
};

inline constexpr std::array<FLASH_COLUMN, 33> FLASH_COLUMNS{{
    {"manufacturer_name", "STL_STRING", "Maker"},
    {"device_name", "STL_STRING", "CHIP"},
    {"silicon_id", "bool", "FALSE"},
    {"memory_id", "BYTE", "0x18"},
    {"memory_id_index", "BYTE", "2"},
    {"memory_type", "BYTE", "0xBA"},
    {"memory_type_index", "BYTE", "1"},
    {"mfc_id", "BYTE", "0x20"},
    {"mfc_id_index", "BYTE", "0"},
    {"orvane_id", "BYTE", "24"},
    {"default_dev", "bool", "TRUE"},
    {"ini", "STL_STRING", "NONE"},
    {"extended_mode", "bool", "FALSE"},
    {"micron_flow", "bool", "TRUE"},
    {"spansion_flow", "bool", "FALSE"},
    {"startup_protected", "bool", "FALSE"},
    {"aai_mode", "bool", "FALSE"},
    {"flag_status", "bool", "TRUE"},
    {"die_count", "BYTE", "1"},
    {"device_bit_size", "DWORD", "134217728"},
    {"device_sector_byte", "DWORD", "65536"},
    {"half_size", "bool", "FALSE"},
    {"byte4_addressing", "bool", "FALSE"},
    {"bulk_erase_time", "DWORD", "250"},
    {"sec_erase_time", "DWORD", "3"},
    {"program_utime", "DWORD", "5000"},
    {"protection_mask", "BYTE", "0x5C"},
    {"protection_value", "BYTE", "0x5C"},
    {"unprotect_value", "BYTE", "0x00"},
    {"protection_division", "BYTE", "15"},
    {"bottom_value", "BYTE", "5"},
    {"sdm_support", "bool", "TRUE"},
    {"asc_voltage", "STL_STRING", "3.3V"},
}};

inline std::string joined(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += (line.empty() ? "" : ", ") + cell;
    }
    return line;
}

/// A table with the eight header lines, which a test may change, and rows that differ from the sample where it says so.
class FLASH_SOURCE {
public:
    using CHANGES = std::map<std::string, std::string>;

    static constexpr unsigned FIRST_ROW_LINE = 9;

    FLASH_SOURCE() : m_lines(8) {
        std::vector<std::string> types;
        std::vector<std::string> names;
        for (const FLASH_COLUMN& column : FLASH_COLUMNS) {
            types.emplace_back(column.type);
            names.emplace_back(column.name);
        }
        const std::string ignored = joined(std::vector<std::string>(FLASH_COLUMNS.size(), "-"));
        m_lines = {joined(types), joined(names), "a table", "for a test", ignored, ignored, ignored, "-"};
    }

    FLASH_SOURCE& row(const CHANGES& changes = {}) {
        std::vector<std::string> cells;
        for (const FLASH_COLUMN& column : FLASH_COLUMNS) {
            const auto change = changes.find(column.name);
            cells.push_back(change != changes.end() ? change->second : column.cell);
        }
        return line(joined(cells));
    }

    FLASH_SOURCE& line(const std::string& text) {
        m_lines.push_back(text);
        return *this;
    }

    /// A line of the table, counted from 1.
    std::string& line_at(std::size_t number) { return m_lines.at(number - 1); }

    /// Changes the first `from` of a line.
    FLASH_SOURCE& replace(std::size_t number, const std::string& from, const std::string& to) {
        std::string& text = line_at(number);
        text.replace(text.find(from), from.size(), to);
        return *this;
    }

    std::string text() const {
        std::string all;
        for (const std::string& each : m_lines) {
            all += each + "\n";
        }
        return all;
    }

private:
    std::vector<std::string> m_lines;
};
