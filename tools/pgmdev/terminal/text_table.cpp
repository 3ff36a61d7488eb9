#include "terminal/text_table.h"

#include <fmt/core.h>

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "terminal/printable.h"
#include "terminal/screen.h"

namespace {

using ROWS = std::vector<std::vector<std::string>>;
using WIDTHS = std::vector<std::size_t>;

constexpr std::size_t GAP = 2;       // blanks between columns
constexpr std::size_t LEFT_OUT = 0;  // instead of a width: no cell and no heading is that narrow

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

/// For each column the width that its heading and nearly all of its cells need. Nothing is cut for the sake of a few
/// characters.
WIDTHS usual_widths(const ROWS& rows) {
    constexpr std::size_t FEW = 4;
    WIDTHS widths;
    for (std::size_t i = 0; i < rows.front().size(); ++i) {
        const WIDTHS lengths = lengths_of(rows, i);
        const std::size_t rare = std::max<std::size_t>(lengths.size() / 20, 1);  // one cell in twenty may be longer
        const std::size_t last = lengths.size() - 1;                             // 0: there is only the heading
        const std::size_t usual = std::max(rows.front()[i].size(), lengths[last - std::min(last, rare)]);
        widths.push_back(lengths.back() <= usual + FEW ? lengths.back() : usual);
    }
    return widths;
}

std::size_t line_width(const WIDTHS& widths) {
    return std::accumulate(widths.begin(), widths.end(), std::size_t{0}) + GAP * (widths.size() - 1);
}

/// The width of the line that the columns with a width make.
std::size_t shown_width(WIDTHS widths) {
    std::erase(widths, LEFT_OUT);
    return line_width(widths);
}

/// The widths of the columns that fit into a line, LEFT_OUT for the others.
WIDTHS fitted_widths(const ROWS& rows, const std::vector<std::string>& left_out_first, std::size_t width) {
    WIDTHS widths = full_widths(rows);
    if (line_width(widths) <= width) {
        return widths;
    }
    widths = usual_widths(rows);
    const auto leave_out = [&widths, width](std::size_t column) {
        if (shown_width(widths) > width) {
            widths[column] = LEFT_OUT;
        }
    };
    const std::vector<std::string>& heading = rows.front();
    for (const std::string& name : left_out_first) {
        leave_out(static_cast<std::size_t>(std::find(heading.begin(), heading.end(), name) - heading.begin()));
    }
    for (std::size_t i = widths.size(); i-- > 1;) {
        leave_out(i);
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

bool is_ascii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Appends the text and blanks up to the width, which other characters than those of ASCII need not fill as bytes do.
void append_filled(std::string& line, const std::string& text, std::size_t width) {
    if (is_ascii(text)) {
        line.append(text).append(width - text.size(), ' ');
    } else {
        line += fmt::format("{:<{}}", text, width);
    }
}

std::string line_of(const std::vector<std::string>& row, const WIDTHS& widths) {
    std::string line;
    for (std::size_t i = 0; i < std::min(row.size(), widths.size()); ++i) {
        if (widths[i] != LEFT_OUT) {
            append_filled(line, cut(row[i], widths[i]), widths[i]);
            line.append(GAP, ' ');
        }
    }
    return line.erase(line.find_last_not_of(' ') + 1);
}

/// Says which columns do not fit.
void print_left_out(const std::vector<std::string>& heading, const WIDTHS& widths, std::size_t width) {
    std::string names;
    for (std::size_t i = 0; i < heading.size(); ++i) {
        if (widths[i] == LEFT_OUT) {
            names += (names.empty() ? "" : ", ") + heading[i];
        }
    }
    if (names.empty()) {
        return;
    }
    const std::string line = fmt::format("(left out: {}; --wide shows all)", names);
    fmt::print("{}\n", line.size() <= width ? line
                                            : fmt::format("(columns left out: {}; --wide shows all)",
                                                          std::count(widths.begin(), widths.end(), LEFT_OUT)));
}

}  // namespace

TEXT_TABLE& TEXT_TABLE::leaves_out(std::vector<std::string> columns) {
    m_left_out_first = std::move(columns);
    return *this;
}

void TEXT_TABLE::add(std::vector<std::string> row) {
    std::transform(row.begin(), row.end(), row.begin(), printable);
    m_rows.push_back(std::move(row));
}

void TEXT_TABLE::print() const {
    const auto width = table_width();
    const WIDTHS widths = width ? fitted_widths(m_rows, m_left_out_first, *width) : full_widths(m_rows);
    fmt::print("{}\n", in_bold(line_of(m_rows.front(), widths)));
    for (std::size_t i = 1; i < m_rows.size(); ++i) {
        fmt::print("{}\n", line_of(m_rows[i], widths));
    }
    if (width) {
        print_left_out(m_rows.front(), widths, *width);
    }
}
