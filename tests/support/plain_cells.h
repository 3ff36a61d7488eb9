#pragma once

/// \file
/// Cells between commas as a test itself reads them, to hold what the library reads against it.

#include <string>
#include <vector>

/// One more than there are commas.
inline std::vector<std::string> plain_cells(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == ',') {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return cells;
}
