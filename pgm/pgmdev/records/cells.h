#pragma once

/// \file
/// Cells of a source table as values: what a cell may hold, and the value that it stands for.

#include <string>
#include <string_view>

#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

/// What differs between the source tables.
struct CELL_SYNTAX {
    bool allow_empty;        ///< an empty cell stands for nothing, 0 or false; otherwise it is refused
    const char* not_a_bool;  ///< the condition that another cell of a bool breaks

    /// Finds what the cell of an identifier or enumerator stands for; null in a table that has none.
    bool (*find_name)(std::string_view member, PGMDEV_MANAGER_TYPE kind, const std::string& cell, DWORD& value);
};

/// Whether cells of that kind hold names, not numbers.
constexpr bool is_named(PGMDEV_MANAGER_TYPE kind) {
    return kind == PGMDEV_MANAGER_DEVID_ENUM || kind == PGMDEV_MANAGER_ENUM;
}

constexpr bool is_text(PGMDEV_MANAGER_TYPE kind) {
    return kind == PGMDEV_MANAGER_DEVID_STR || kind == PGMDEV_MANAGER_STRING;
}

// Each takes the value of a cell. The result is null, or the condition that the cell breaks.
const char* take_text(const CELL_SYNTAX& syntax, const std::string& cell, std::string& value);
const char* take_bool(const CELL_SYNTAX& syntax, const std::string& cell, bool& value);
const char* take_number(const CELL_SYNTAX& syntax, const std::string& cell, DWORD& value);
const char* take_name(const CELL_SYNTAX& syntax, std::string_view member, PGMDEV_MANAGER_TYPE kind,
                      const std::string& cell, DWORD& value);

/// The condition that a cell breaks which spells no number.
inline constexpr const char* NOT_A_NUMBER = "Invalid string to integer conversion";

/// As take_number, but a cell that spells no number is reported by the host, which is the one to know. Should its report
/// return, the result is the condition.
const char* take_number_or_report(const CELL_SYNTAX& syntax, const std::string& cell, DWORD& value);

/// Either of the two.
using TAKE_NUMBER = decltype(take_number);
