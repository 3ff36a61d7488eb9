#pragma once

/// \file
/// The members of a flash record as the tests know them: one list, independent of the library's own.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_sfl_flash_info.h"

namespace flash_reference {

using CELLS = std::vector<std::string>;

inline std::string le32(unsigned long long value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return bytes;
}

inline std::string tagged_text(const std::string& text) {
    return std::string(1, '\2') + static_cast<char>(text.size() & 0xFF) + text;
}
inline std::string tagged_bool(bool value) {
    return {'\3', value ? '\1' : '\0'};
}
inline std::string tagged_byte(unsigned value) {
    return {'\4', static_cast<char>(value)};
}
inline std::string tagged_dword(unsigned long long value) {
    return '\6' + le32(value);
}

struct COLUMN {
    const char* name;
    const char* type;
    const char* cell;   ///< with which nothing is wrong or remarkable
    const char* value;  ///< in the description of a user's flash, accepted and plausible
    std::string (*field)(const PGMDEV_SFL_FLASH_INFO& record);  ///< as a packed record holds it
};

#define MEMBER(name, type, tagged, cell, value)                                                 \
    COLUMN {                                                                                    \
#name, type, cell, value, [](const PGMDEV_SFL_FLASH_INFO& r) { return tagged(r.name); } \
    }

// clang-format off
inline constexpr std::array COLUMNS{
    MEMBER(manufacturer_name, "STL_STRING", tagged_text, "Maker", "ACME"),
    MEMBER(device_name, "STL_STRING", tagged_text, "CHIP", "AC25X80"),
    MEMBER(silicon_id, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(memory_id, "BYTE", tagged_byte, "0x18", "20"),
    MEMBER(memory_id_index, "BYTE", tagged_byte, "2", "2"),
    MEMBER(memory_type, "BYTE", tagged_byte, "0xBA", "113"),
    MEMBER(memory_type_index, "BYTE", tagged_byte, "1", "1"),
    MEMBER(mfc_id, "BYTE", tagged_byte, "0x20", "32"),
    MEMBER(mfc_id_index, "BYTE", tagged_byte, "0", "0"),
    MEMBER(orvane_id, "BYTE", tagged_byte, "24", "18"),
    MEMBER(default_dev, "bool", tagged_bool, "TRUE", "1"),
    MEMBER(ini, "STL_STRING", tagged_text, "NONE", "NONE"),
    MEMBER(extended_mode, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(micron_flow, "bool", tagged_bool, "TRUE", "0"),
    MEMBER(spansion_flow, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(startup_protected, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(aai_mode, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(flag_status, "bool", tagged_bool, "TRUE", "0"),
    MEMBER(die_count, "BYTE", tagged_byte, "1", "1"),
    MEMBER(device_bit_size, "DWORD", tagged_dword, "134217728", "8388608"),
    MEMBER(device_sector_byte, "DWORD", tagged_dword, "65536", "65536"),
    MEMBER(half_size, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(byte4_addressing, "bool", tagged_bool, "FALSE", "0"),
    MEMBER(bulk_erase_time, "DWORD", tagged_dword, "250", "80"),
    MEMBER(sec_erase_time, "DWORD", tagged_dword, "3", "3"),
    MEMBER(program_utime, "DWORD", tagged_dword, "5000", "5000"),
    MEMBER(protection_mask, "BYTE", tagged_byte, "0x5C", "28"),
    MEMBER(protection_value, "BYTE", tagged_byte, "0x5C", "28"),
    MEMBER(unprotect_value, "BYTE", tagged_byte, "0x00", "0"),
    MEMBER(protection_division, "BYTE", tagged_byte, "15", "7"),
    MEMBER(bottom_value, "BYTE", tagged_byte, "5", "5"),
    MEMBER(sdm_support, "bool", tagged_bool, "TRUE", "0"),
    MEMBER(asc_voltage, "STL_STRING", tagged_text, "3.3V", "3.3V"),
};
// clang-format on

#undef MEMBER

inline constexpr std::size_t MEMBERS = COLUMNS.size();
static_assert(MEMBERS == 33);

/// The place of a column. One of a name that there is not does not compile.
consteval std::size_t column_of(std::string_view name) {
    std::size_t place = 0;
    while (name != COLUMNS.at(place).name) {
        ++place;
    }
    return place;
}

/// Bytes of a record whose texts are empty, with its end marker.
inline std::size_t empty_record_size() {
    std::size_t size = 4;
    for (const COLUMN& column : COLUMNS) {
        size += column.field({}).size();
    }
    return size;
}

/// One cell or value of every column.
inline CELLS row_of(const char* COLUMN::*what) {
    CELLS row;
    for (const COLUMN& column : COLUMNS) {
        row.emplace_back(column.*what);
    }
    return row;
}

}  // namespace flash_reference
