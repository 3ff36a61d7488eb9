#pragma once

/// \file
/// What is wrong with source files, and where.

#include <iosfwd>
#include <string>
#include <vector>

/// A place in a source file. Line 0 is the file as a whole, column 0 the line as a whole.
struct SOURCE_PLACE {
    std::string file;
    int line = 0;
    int column = 0;
};

/// The place as people and editors know it: "file:line:column", "file:line" for a whole line, "file" for a whole file.
std::string text_of(const SOURCE_PLACE& place);

/// Collects faults, so that one run tells them all, as far as anybody would read them.
class FAULTS {
public:
    static constexpr std::size_t MOST_LINES = 10000;

    void add(const SOURCE_PLACE& place, const std::string& text);

    bool empty() const { return m_lines.empty(); }
    const std::vector<std::string>& lines() const { return m_lines; }
    void print(std::ostream& output) const;

private:
    std::vector<std::string> m_lines;
    std::size_t m_further = 0;  ///< those that are only counted
};
