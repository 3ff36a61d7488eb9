#include "terminal/text_table.h"

#include <fmt/core.h>

#include <algorithm>
#include <numeric>
#include <string_view>

#include "terminal/screen.h"

namespace {

using ROWS = std::vector<std::vector<std::string>>;
using WIDTHS = std::vector<std::size_t>;

constexpr std::size_t GAP = 2;  // blanks between columns

/// The lengths of the cells of a column, ascending.
WIDTHS lengths_of(const ROWS& rows, std::size_t column) {
    WIDTHS lengths;
    for (const auto& row : rows) {
        if (column < row.size()) {
            lengths.push_back(row[column].size());
        }
    }
    std::sort(lengths.begin(), lengths.end());
    return lengths;
}

/// For each column the width that all of its cells need.
WIDTHS full_widths(const ROWS& rows) {
    WIDTHS widths;
    for (std::size_t i = 0; i < rows.front().size(); ++i) {
        widths.push_back(lengths_of(rows, i).back());
    }
    return widths;
}

/// For each column the width that its heading and nearly all of its cells need.
WIDTHS usual_widths(const ROWS& rows) {
    WIDTHS widths;
    for (std::size_t i = 0; i < rows.front().size(); ++i) {
        const WIDTHS lengths = lengths_of(rows, i);
        const std::size_t rare = lengths.size() / 20;  // one cell in twenty may be longer
        widths.push_back(
            std::max(rows.front()[i].size(), lengths[lengths.size() - 1 - std::max<std::size_t>(rare, 1)]));
    }
    return widths;
}

std::size_t line_width(const WIDTHS& widths) {
    return std::accumulate(widths.begin(), widths.end(), std::size_t{0}) + GAP * (widths.size() - 1);
}

/// The widths of the columns that fit into a line, the first ones.
WIDTHS fitted_widths(const ROWS& rows, std::size_t width) {
    WIDTHS widths = full_widths(rows);
    if (line_width(widths) <= width) {
        return widths;
    }
    widths = usual_widths(rows);
    while (widths.size() > 1 && line_width(widths) > width) {
        widths.pop_back();
    }
    widths.front() = std::min(widths.front(), width);
    return widths;
}

/// The text, cut where it is too long, between characters of UTF-8.
std::string cut(const std::string& text, std::size_t width) {
    constexpr std::string_view MARK = "..";
    if (text.size() <= width) {
        return text;
    }
    std::size_t end = width > MARK.size() ? width - MARK.size() : 0;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return text.substr(0, end) + std::string(MARK.substr(0, std::min(width, MARK.size())));
}

std::string line_of(const std::vector<std::string>& row, const WIDTHS& widths) {
    std::string line;
    for (std::size_t i = 0; i < std::min(row.size(), widths.size()); ++i) {
        line += fmt::format("{:<{}}{:{}}", cut(row[i], widths[i]), widths[i], "", GAP);
    }
    return line.erase(line.find_last_not_of(' ') + 1);
}

/// Says which columns do not fit.
void print_left_out(const std::vector<std::string>& heading, std::size_t shown, std::size_t width) {
    std::string names;
    for (std::size_t i = shown; i < heading.size(); ++i) {
        names += (names.empty() ? "" : ", ") + heading[i];
    }
    if (names.empty()) {
        return;
    }
    const std::string line = fmt::format("(left out: {}; --wide shows all)", names);
    fmt::print("{}\n", line.size() <= width
                           ? line
                           : fmt::format("(columns left out: {}; --wide shows all)", heading.size() - shown));
}

}  // namespace

std::string printable(const std::string& text) {
    std::string shown;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        shown += byte < 0x20 || byte == 0x7F ? fmt::format("\\x{:02X}", byte) : std::string(1, c);
    }
    return shown;
}

void TEXT_TABLE::add(std::vector<std::string> row) {
    std::transform(row.begin(), row.end(), row.begin(), printable);
    m_rows.push_back(std::move(row));
}

void TEXT_TABLE::print() const {
    const auto width = table_width();
    const WIDTHS widths = width ? fitted_widths(m_rows, *width) : full_widths(m_rows);
    fmt::print("{}\n", in_bold(line_of(m_rows.front(), widths)));
    for (std::size_t i = 1; i < m_rows.size(); ++i) {
        fmt::print("{}\n", line_of(m_rows[i], widths));
    }
    if (width) {
        print_left_out(m_rows.front(), widths.size(), *width);
    }
}
