#include "tables/column_hints.h"

#include <fmt/core.h>

#include <algorithm>

#include "gen.h"
#include "qtl.h"
#include "text_lines.h"

namespace {

using CELLS = std::vector<std::string>;

struct LINE {
    DWORD number = 0;
    CELLS cells;
    std::size_t blank = 0;  ///< where a blank or tab stands between two cells, from 1; 0: nowhere
};

/// The lines that are not empty, as the library splits them.
std::vector<LINE> lines_of(std::string_view text, bool keeps_empty) {
    const QTL_TOKENIZER tokenizer(" \t\n,", keeps_empty, "", "", "", false);
    std::vector<LINE> lines;
    DWORD number = 0;
    for_each_line(text, [&](std::string_view whole) {
        ++number;
        if (const std::string line = gen_remove_leading_and_trailing_white_spaces(std::string(whole)); !line.empty()) {
            const std::size_t blank = line.find_first_of(" \t");
            lines.push_back(
                {number, tokenizer.tokenize(line), blank == std::string::npos ? 0 : whole.find(line) + blank + 1});
        }
    });
    return lines;
}

/// Columns that are there and not known, or known and not there.
std::string hint_at_names(const LINE& names, const std::vector<HINTED_COLUMN>& columns) {
    const auto is_column = [&](const std::string& cell) {
        return std::any_of(columns.begin(), columns.end(), [&](const HINTED_COLUMN& column) {
            return gen_stricmp(cell, std::string(column.name)) == 0;
        });
    };
    for (const std::string& cell : names.cells) {
        if (!is_column(cell)) {
            return fmt::format("line {} names a column {} that no record has", names.number, cell);
        }
    }
    std::string_view before;
    for (const HINTED_COLUMN& column : columns) {
        const bool there = std::any_of(names.cells.begin(), names.cells.end(), [&](const std::string& cell) {
            return gen_stricmp(cell, std::string(column.name)) == 0;
        });
        if (!there) {
            return fmt::format("line {} does not name the column {}, which comes {}", names.number, column.name,
                               before.empty() ? "first" : fmt::format("behind {}", before));
        }
        before = column.name;
    }
    return fmt::format("line {} names a column twice", names.number);
}

/// Whether a cell may stand in a column, as far as can be told from its first character. Texts and names may be anything.
bool may_be_of(const std::string& cell, PGMDEV_MANAGER_TYPE kind) {
    switch (kind) {
        case PGMDEV_MANAGER_BOOL:
            return cell.empty() || cell == "TRUE" || cell == "FALSE";
        case PGMDEV_MANAGER_BYTE:
        case PGMDEV_MANAGER_WORD:
        case PGMDEV_MANAGER_DWORD:
            return cell.empty() || (cell[0] >= '0' && cell[0] <= '9');
        default:
            return true;
    }
}

std::string hint_at_cells(const LINE& line, const std::vector<HINTED_COLUMN>& columns) {
    const std::size_t common = std::min(line.cells.size(), columns.size());
    const bool is_short = line.cells.size() < columns.size();
    for (std::size_t i = 0; i < common; ++i) {
        if (!may_be_of(line.cells[i], columns[i].kind)) {
            return fmt::format("line {}: \"{}\" stands where {} is expected: {} there or before it", line.number,
                               line.cells[i], columns[i].name,
                               is_short ? "a cell is missing" : "there is a cell too many");
        }
    }
    if (common == 0) {
        return fmt::format("line {} has separators and no cell", line.number);
    }
    return fmt::format("line {}: all cells up to {} fit their columns: what follows is {}", line.number,
                       columns[common - 1].name, is_short ? "missing" : "too much");
}

}  // namespace

std::optional<std::string> hint_at_columns(std::string_view text, const HINTED_TABLE& table,
                                           const std::vector<PGMDEV_TABLE_FAULT>& faults) {
    constexpr std::size_t NAMES = 1;
    const std::vector<LINE> lines = lines_of(text, table.keeps_empty);
    // A comment may have any number of cells: the library has told which lines may not.
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const LINE& each) {
        return each.cells.size() != table.columns.size() &&
               std::any_of(faults.begin(), faults.end(), [&](const PGMDEV_TABLE_FAULT& fault) {
                   return fault.line == each.number && fault.column == 0;
               });
    });
    if (line == lines.end()) {
        return std::nullopt;
    }
    if (lines.size() > NAMES && lines[NAMES].cells.size() != table.columns.size()) {
        return hint_at_names(lines[NAMES], table.columns);
    }
    if (line->cells.size() == 1 && line->cells[0].find_first_not_of('-') == std::string::npos) {
        return fmt::format("line {} sets the rows apart from the header: a line above it is missing", line->number);
    }
    if (table.keeps_empty && line->blank != 0 && line->cells.size() > table.columns.size()) {
        return fmt::format("line {}, column {}: a blank ends a cell as a comma does: leave it out", line->number,
                           line->blank);
    }
    return hint_at_cells(*line, table.columns);
}
