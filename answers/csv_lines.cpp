#include "csv_lines.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ascii.h"
#include "text_lines.h"

namespace {

std::string_view without_white_space_around(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(ASCII_WHITE_SPACE), text.size()));
    return text.substr(0, text.find_last_not_of(ASCII_WHITE_SPACE) + 1);
}

/// Calls `use(cell)` with what stands between commas; behind the last comma only with what is there.
template <class USE>
void for_each_cell(std::string_view line, USE use) {
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(','), line.size());
        use(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
}

std::vector<std::string> split(std::string_view line) {
    std::vector<std::string> cells;
    for_each_cell(line, [&cells](std::string_view cell) { cells.emplace_back(without_white_space_around(cell)); });
    return cells;
}

}  // namespace

CSV_LINES::CSV_LINES(std::string text) : m_text(std::make_unique<const std::string>(std::move(text))) {
    std::size_t number = 0;
    for_each_line(without_byte_order_mark(*m_text), [&](std::string_view line) {
        ++number;
        if (line.ends_with('\r')) {
            line.remove_suffix(1);  // it would stand behind the last comma
        }
        const std::size_t end = std::min(line.find(','), line.size());
        const std::string_view first = without_white_space_around(line.substr(0, end));
        if (first.empty() && end + 1 >= line.size()) {
            return;
        }
        if (m_names.empty()) {
            m_names = split(line);
        } else {
            m_lines.push_back({number, first, line});
        }
    });
}

std::vector<CSV_LINE> CSV_LINES::lines_of(std::string_view first) const {
    std::vector<CSV_LINE> found;
    if (!m_was_asked) {
        m_was_asked = true;
        std::copy_if(m_lines.begin(), m_lines.end(), std::back_inserter(found),
                     [first](const CSV_LINE& line) { return line.first == first; });
        return found;
    }
    const auto comes_before = [](const CSV_LINE& left, const CSV_LINE& right) { return left.first < right.first; };
    if (m_sorted.empty()) {
        m_sorted = m_lines;
        std::stable_sort(m_sorted.begin(), m_sorted.end(), comes_before);
    }
    const auto [begin, end] = std::equal_range(m_sorted.begin(), m_sorted.end(), CSV_LINE{0, first, {}}, comes_before);
    found.assign(begin, end);
    return found;
}

bool CSV_LINES::has_all_cells(const CSV_LINE& line) const {
    std::size_t count = 0;
    for_each_cell(line.text, [&count](std::string_view /*cell*/) { ++count; });
    return count == m_names.size();
}

std::vector<std::string> CSV_LINES::cells_of(const CSV_LINE& line) const {
    return has_all_cells(line) ? split(line.text) : std::vector<std::string>();
}
