#pragma once

/// \file
/// Source tables with a header: a row of types, a row of names, anything for people, and a line of dashes. Cells are
/// separated by commas and the blanks around them; lines without anything else are left out.

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "faults.h"

struct CSV_COLUMN {
    std::string_view name;
    std::string_view type;
};

struct CSV_CELL {
    SOURCE_PLACE place;
    std::string text;
};

using CSV_ROW = std::vector<CSV_CELL>;

/// Hands over the rows below the header, one by one, with their cells in the order of `columns`; the table itself has these
/// columns in any order. Rows with too few or too many cells are faults and left out; of a table with a faulty header no
/// row is handed over.
void read_csv_table(const std::filesystem::path& path, std::span<const CSV_COLUMN> columns, FAULTS& faults,
                    const std::function<void(const CSV_ROW&)>& take_row);
