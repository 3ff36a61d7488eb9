#include <algorithm>

#include "flash/source.h"
#include "pgmdev_flash_table.h"
#include "records/source_writer.h"

// The flash table as its maintainers edit it: columns of equal width.

namespace {

// The header has types, names, two lines of comments, units, lines that are free, and one that sets the records apart.
constexpr const char* COMMENTS =
    "Serial-flash-table\nOne-row-per-flash-and-way-of-recognising-it,the-first-that-matches-wins\n";
constexpr std::size_t FREE_ROWS = 2;
constexpr const char* NOTHING = "-";  // a free cell must not be empty
constexpr const char* RULER = "-\n";

/// The unit of each member.
std::vector<std::string> units() {
    std::vector<std::string> cells;
    cells.reserve(PGMDEV_SFL_FLASH_MEMBERS.size());
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        cells.emplace_back(member.unit.empty() ? NOTHING : member.unit);
    }
    return cells;
}

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
    const std::size_t units_row = rows.size();
    rows.push_back(units());
    rows.resize(rows.size() + FREE_ROWS, std::vector<std::string>(rows.front().size(), NOTHING));
    const std::size_t first_record = rows.size();
    if (!append_rows(rows, m_records, spell, obstacle)) {
        return {};
    }
    const std::vector<std::size_t> widths = widths_of(rows);
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        text += (i == units_row ? COMMENTS : i == first_record ? RULER : "") + aligned(rows[i], widths);
    }
    return text;
}
