#pragma once

/// \file
/// What is wrong with source files, and where.

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The name of a source file, which all its places share: there are as many of them as names.
class SOURCE_FILE_NAME {
public:
    SOURCE_FILE_NAME() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): it is the name
    SOURCE_FILE_NAME(std::string name) : m_name(std::make_shared<const std::string>(std::move(name))) {}

    std::string text() const { return m_name != nullptr ? *m_name : ""; }

private:
    std::shared_ptr<const std::string> m_name;
};

/// A place in a source file. Line 0 is the file as a whole, column 0 the line as a whole.
struct SOURCE_PLACE {
    SOURCE_FILE_NAME file;
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
