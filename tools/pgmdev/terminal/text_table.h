#pragma once

#include <string>
#include <vector>

/// A table for people: columns as wide as their widest cell, two blanks between them, control characters shown as \xNN.
///
/// On a terminal, a table that is too wide for it is fitted to it: cells that are longer than nearly all others of their
/// column, by more than a few characters, are cut, and then columns are left out: those that are said to matter least, then
/// the last ones. A last line tells which. So the other columns stand in the order of their importance.
class TEXT_TABLE {
public:
    explicit TEXT_TABLE(std::vector<std::string> heading) : m_rows{std::move(heading)} {}

    /// The columns that matter less than those behind them, the least first.
    TEXT_TABLE& leaves_out(std::vector<std::string> columns);

    void add(std::vector<std::string> row);

    /// Prints the heading and the rows on standard output.
    void print() const;

private:
    std::vector<std::vector<std::string>> m_rows;
    std::vector<std::string> m_left_out_first;
};
