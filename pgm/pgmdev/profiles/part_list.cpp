#include "profiles/part_list.h"

#include "gen.h"
#include "source/table.h"

namespace {

constexpr const char* PART_LIST_FILE = "/h/pgm_parts.txt";
constexpr const char* COMMENT = "//";

// Cells of a line.
constexpr std::size_t PART_CELL = 0;
constexpr std::size_t DEVICE_CELL = 1;
constexpr std::size_t PCF_CELL = 6;
constexpr std::size_t CELLS = 7;

/// Whether the line begins with the mark of a comment; behind a separator the mark is that of nothing.
bool is_part_list_comment(const SOURCE_LINE& line) {
    return !line.cells.empty() && line.columns.front() == line.first_column && line.cells.front().starts_with(COMMENT);
}

}  // namespace

const char* read_part_list(std::vector<PGMDEV_PGM_PART>& parts) {
    bool whole = true;
    const bool readable = for_each_source_line(
        gen_get_tessary_path() + PART_LIST_FILE, false, LIMITED_CELLS::OF_A_LINE, [&](const SOURCE_LINE& line) {
            const std::vector<std::string>& cells = line.cells;
            whole = whole && (is_part_list_comment(line) || cells.size() >= CELLS);
            if (whole && !is_part_list_comment(line)) {
                parts.push_back({dstr_get_dev_part_enum_by_string(cells[PART_CELL].c_str()),
                                 dstr_get_dev_device_enum_by_string(cells[DEVICE_CELL].c_str()), cells[PCF_CELL]});
            }
        });
    return !whole ? "svec.size() >= 7" : readable ? nullptr : "status";
}
