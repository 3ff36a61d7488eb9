#pragma once

#include <string>
#include <vector>

/// A table for people: columns as wide as their widest cell, two blanks between them.
class TEXT_TABLE {
public:
    explicit TEXT_TABLE(std::vector<std::string> heading) : m_rows{std::move(heading)} {}

    void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }

    /// Prints the heading and the rows on standard output.
    void print() const;

private:
    std::vector<std::vector<std::string>> m_rows;
};
