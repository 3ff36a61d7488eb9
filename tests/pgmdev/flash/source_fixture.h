#pragma once

/// \file
/// Flash source tables of the tests' own.

#include <string>
#include <vector>

#include "pgmdev/flash/columns.h"

namespace flash_reference {

inline const CELLS TYPE_ROW = row_of(&COLUMN::type);
inline const CELLS NAME_ROW = row_of(&COLUMN::name);
inline const CELLS DATA_ROW = row_of(&COLUMN::cell);  ///< without fault

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
