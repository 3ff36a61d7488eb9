#include "csv_table.h"

#include <algorithm>
#include <optional>

#include "source_rows.h"

namespace {

constexpr const char* BLANKS = " \t\r";

struct CSV_LINE {
    CSV_ROW cells;
    SOURCE_PLACE end;  ///< behind its last character
};

int column_at(std::size_t offset) {
    return static_cast<int>(offset) + 1;
}

/// The cells of a line; none when there are only blanks.
CSV_LINE line_of(const std::string& text, SOURCE_PLACE place) {
    CSV_LINE line;
    const std::size_t end = text.find_last_not_of(BLANKS) + 1;
    for (std::size_t begin = 0; end != 0 && begin <= end;) {
        const std::size_t comma = std::min(text.find(',', begin), end);
        const std::size_t first = std::min(text.find_first_not_of(BLANKS, begin), comma);
        const std::size_t last = text.find_last_not_of(BLANKS, comma - 1);
        place.column = column_at(first);
        line.cells.push_back({place, first == comma ? "" : text.substr(first, last + 1 - first)});
        begin = comma + 1;
    }
    place.column = column_at(end);
    line.end = place;
    return line;
}

bool is_ruler(const CSV_LINE& line) {
    return line.cells.size() == 1 && line.cells[0].text.find_first_not_of('-') == std::string::npos;
}

bool has_cells(const CSV_LINE& line, std::size_t count, FAULTS& faults) {
    if (line.cells.size() == count) {
        return true;
    }
    faults.add(line.cells.size() < count ? line.end : line.cells[count].place,
               "expected " + std::to_string(count) + " cells, found " + std::to_string(line.cells.size()));
    return false;
}

/// Where each column stands in the table. Unless all of them are there, once, and nothing else is: a fault.
std::optional<std::vector<std::size_t>> read_names(const CSV_LINE& line, std::span<const CSV_COLUMN> columns,
                                                   FAULTS& faults) {
    std::vector<std::optional<std::size_t>> positions(columns.size());
    bool good = true;
    const auto refuse = [&](const SOURCE_PLACE& place, std::string_view name, const std::string& reason) {
        faults.add(place, "column \"" + std::string(name) + "\" " + reason);
        good = false;
    };
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const CSV_CELL& cell = line.cells[i];
        const auto column = std::find_if(columns.begin(), columns.end(),
                                         [&](const CSV_COLUMN& candidate) { return candidate.name == cell.text; });
        if (column == columns.end()) {
            refuse(cell.place, cell.text, "is not known");
            continue;
        }
        std::optional<std::size_t>& position = positions[static_cast<std::size_t>(column - columns.begin())];
        if (position) {
            refuse(cell.place, cell.text, "is already given at " + text_of(line.cells[*position].place));
        } else {
            position = i;
        }
    }
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (positions[i]) {
            found.push_back(*positions[i]);
        } else {
            refuse(line.end, columns[i].name, "is missing");
        }
    }
    return good ? std::optional(found) : std::nullopt;
}

bool has_types(const CSV_LINE& line, std::span<const CSV_COLUMN> columns, const std::vector<std::size_t>& positions,
               FAULTS& faults) {
    bool good = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const CSV_CELL& cell = line.cells[positions[i]];
        if (cell.text != columns[i].type) {
            faults.add(cell.place, "type \"" + cell.text + "\" of column \"" + std::string(columns[i].name) +
                                       "\" must be \"" + std::string(columns[i].type) + "\"");
            good = false;
        }
    }
    return good;
}

}  // namespace

void read_csv_table(const std::filesystem::path& path, std::span<const CSV_COLUMN> columns, FAULTS& faults,
                    const std::function<void(const CSV_ROW&)>& take_row) {
    const auto texts = read_lines(path, faults);
    if (!texts) {
        return;
    }
    SOURCE_PLACE place{path.generic_string()};
    std::vector<CSV_LINE> lines;
    for (const std::string& text : *texts) {
        ++place.line;
        if (CSV_LINE line = line_of(text, place); !line.cells.empty()) {
            lines.push_back(std::move(line));
        }
    }
    const auto ruler = std::find_if(lines.begin(), lines.end(), is_ruler);
    if (ruler - lines.begin() < 2 || ruler == lines.end()) {
        faults.add({place.file}, "has no header: types, names, and a line of dashes below them");
        return;
    }
    const CSV_LINE& types = lines[0];
    const CSV_LINE& names = lines[1];
    const auto positions = read_names(names, columns, faults);
    const bool typed = has_cells(types, names.cells.size(), faults);
    if (!positions || !typed || !has_types(types, columns, *positions, faults)) {
        return;
    }
    if (ruler + 1 == lines.end()) {
        faults.add({place.file}, "has no row below its header");
    }
    for (auto line = ruler + 1; line != lines.end(); ++line) {
        if (has_cells(*line, columns.size(), faults)) {
            CSV_ROW row;
            for (const std::size_t position : *positions) {
                row.push_back(line->cells[position]);
            }
            take_row(row);
        }
    }
}
