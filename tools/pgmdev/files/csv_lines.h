#pragma once

/// \file
/// Small files of comma-separated cells that stand beside a table: a line with names, then lines of as many cells.

#include <string>
#include <vector>

struct CSV_LINES {
    std::vector<std::string> names;
    std::vector<std::vector<std::string>> lines;  ///< of as many cells as there are names
    std::vector<std::size_t> malformed;           ///< numbers of the other lines, from 1
};

/// What the file holds; nothing when there is none. A cell holds no comma, and a blank line does not count.
CSV_LINES read_csv_lines(const std::string& path);
