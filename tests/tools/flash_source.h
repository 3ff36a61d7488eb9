#pragma once

/// \file
/// Source tables of serial flash, written by the tests.

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev/flash/source_fixture.h"

/// A table with the eight header lines, which a test may change, and rows that differ from the sample where it says so.
class FLASH_SOURCE {
public:
    using CHANGES = std::map<std::string, std::string>;

    static constexpr unsigned FIRST_ROW_LINE = 9;

    FLASH_SOURCE() : m_lines(flash_reference::header()) {}

    FLASH_SOURCE& row(const CHANGES& changes = {}) {
        flash_reference::CELLS cells = flash_reference::data_row();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (const auto change = changes.find(flash_reference::COLUMNS[i].name); change != changes.end()) {
                cells[i] = change->second;
            }
        }
        return line(flash_reference::joined(cells, ", "));
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
