#include "flash/source.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t TYPE_ROW = 0;
constexpr std::size_t NAME_ROW = 1;

/// Lines of the header that hold what their maintainers like: two comments below the names, one above the data rows.
/// Those between belong to the columns, so that they must have as many cells.
constexpr std::array<std::size_t, 3> COMMENT_LINES{2, 3, 7};

bool is_comment(std::size_t line_index) {
    return std::find(COMMENT_LINES.begin(), COMMENT_LINES.end(), line_index) != COMMENT_LINES.end();
}

}  // namespace

void FLASH_SOURCE::check_layout(const std::vector<SOURCE_LINE>& lines, bool readable, SOURCE_LAYOUT& layout,
                                const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (is_comment(i) || !check_cell_count(lines[i], HEADER, sink)) {
            continue;
        }
        if (i == TYPE_ROW) {
            check_type_row(lines[i], HEADER, sink);
        } else if (i == NAME_ROW) {
            check_name_row(lines[i], HEADER, sink);
        } else if (i >= HEADER_LINES) {
            layout.section_size += FLASH_CODEC::packed_size(lines[i].cells);
            ++layout.record_count;
        }
    }
    if (!readable || lines.size() <= HEADER_LINES) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = "status && device_count > 0";
        fault.expected = readable ? "eight header lines and at least one data row" : "a file that can be read";
        sink(fault, PGMDEV_LINE);
    }
}
