#pragma once

/// \file
/// Source tables of serial flash, written by the tests.

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev/flash/columns.h"

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
        for (const flash_reference::COLUMN& column : flash_reference::COLUMNS) {
            types.emplace_back(column.type);
            names.emplace_back(column.name);
        }
        const std::string ignored = joined(std::vector<std::string>(flash_reference::COLUMNS.size(), "-"));
        m_lines = {joined(types), joined(names), "a table", "for a test", ignored, ignored, ignored, "-"};
    }

    FLASH_SOURCE& row(const CHANGES& changes = {}) {
        std::vector<std::string> cells;
        for (const flash_reference::COLUMN& column : flash_reference::COLUMNS) {
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
