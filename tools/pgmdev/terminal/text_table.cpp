#include "terminal/text_table.h"

#include <fmt/core.h>

#include <algorithm>

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
    std::vector<std::size_t> widths(m_rows.front().size(), 0);
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (const auto& row : m_rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += fmt::format("{:<{}}  ", row[i], widths[i]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        fmt::print("{}\n", line);
    }
}
