#pragma once

/// \file
/// Small files of comma-separated cells that stand beside a table: a line with names, then lines of as many cells. A cell
/// holds no comma, and a blank line does not count.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct CSV_LINE {
    std::size_t number;      ///< in the file, from 1
    std::string_view first;  ///< its first cell
    std::string_view text;
};

/// What such a file holds; of one that is not there the text is "". Whoever looks for a few lines finds them by their first
/// cells, and has only these taken apart.
class CSV_LINES {
public:
    explicit CSV_LINES(std::string text);

    const std::vector<std::string>& names() const { return m_names; }

    /// All but the one with the names.
    const std::vector<CSV_LINE>& lines() const { return m_lines; }

    /// Those with that first cell, in their order. The first question goes over all lines, later ones through sorted ones.
    std::vector<CSV_LINE> lines_of(std::string_view first) const;

    /// Whether a line has as many cells as there are names.
    bool has_all_cells(const CSV_LINE& line) const;

    /// Whether the file has that many columns, and the line all of them.
    bool has_cells(const CSV_LINE& line, std::size_t columns) const {
        return m_names.size() == columns && has_all_cells(line);
    }

    /// The cells of a line that has all; of another one none.
    std::vector<std::string> cells_of(const CSV_LINE& line) const;

private:
    std::unique_ptr<const std::string> m_text;  ///< which stays where it is, as what is in it
    std::vector<std::string> m_names;
    std::vector<CSV_LINE> m_lines;
    mutable bool m_was_asked = false;
    mutable std::vector<CSV_LINE> m_sorted;  ///< by first cell, from the second question on
};
