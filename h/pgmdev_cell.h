#pragma once

/// \file
/// How the values of a record's members are written as cells of a source table.

#include <string>

#include "pgmdev_types.h"

/// In which base people write the numbers of a member.
enum class PGMDEV_NUMBER_BASE {
    BASE_10,  ///< quantities
    BASE_16   ///< bit patterns and identification codes
};

inline std::string pgmdev_cell(const std::string& text, PGMDEV_NUMBER_BASE /*base*/) {
    return text;
}

inline std::string pgmdev_cell(bool value, PGMDEV_NUMBER_BASE /*base*/) {
    return value ? "TRUE" : "FALSE";
}

/// Hexadecimal numbers have "0x" and two digits at least.
inline std::string pgmdev_cell(DWORD value, PGMDEV_NUMBER_BASE base) {
    if (base == PGMDEV_NUMBER_BASE::BASE_10) {
        return std::to_string(value);
    }
    std::string digits;
    for (DWORD rest = value; rest != 0 || digits.size() < 2; rest >>= 4) {
        digits.insert(digits.begin(), "0123456789ABCDEF"[rest & 0xF]);
    }
    return "0x" + digits;
}

inline std::string pgmdev_cell(BYTE value, PGMDEV_NUMBER_BASE base) {
    return pgmdev_cell(DWORD{value}, base);
}

inline std::string pgmdev_cell(WORD value, PGMDEV_NUMBER_BASE base) {
    return pgmdev_cell(DWORD{value}, base);
}
