#include <algorithm>

#include "flash/source.h"
#include "pgmdev_flash_table.h"
#include "records/source_writer.h"

// The flash table as its maintainers edit it: columns of equal width.

namespace {

constexpr const char* COMMENTS =
    "Serial-flash-table\nOne-row-per-flash-and-way-of-recognising-it,the-first-that-matches-wins\n";
constexpr const char* NOTHING = "-";  // a free cell must not be empty

bool spell(const PGMDEV_SFL_FLASH_MEMBER& member, const PGMDEV_SFL_FLASH_INFO& record, std::string& cell) {
    cell = std::visit([&](auto field) { return pgmdev_cell(record.*field, member.base); }, member.field);
    return !cell.empty() && cell.find_first_of(" \t\n,\r\v\f") == std::string::npos;
}

std::vector<std::size_t> widths_of(const SOURCE_CELLS& rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    return widths;
}

std::string aligned(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
        line += row[i] + "," + std::string(widths[i] - row[i].size() + 1, ' ');
    }
    return line + row.back() + "\n";
}

}  // namespace

std::string PGMDEV_FLASH_TABLE::source_text(std::string& obstacle) const {
    SOURCE_CELLS rows = source_header_cells(FLASH_SOURCE::HEADER);
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        rows.resize(5);
        rows[2].emplace_back(member.unit.empty() ? NOTHING : member.unit);
        rows[3].emplace_back(NOTHING);
        rows[4].emplace_back(NOTHING);
    }
    if (!append_rows(rows, m_records, spell, obstacle)) {
        return {};
    }
    // The header lines: types, names, two of comments, units and two that are free, one that sets the data rows apart.
    const std::vector<std::size_t> widths = widths_of(rows);
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        text += (i == 2 ? COMMENTS : i == 5 ? "-\n" : "") + aligned(rows[i], widths);
    }
    return text;
}
