#include "flash/source.h"

namespace {

constexpr std::size_t TYPE_ROW = 0;
constexpr std::size_t NAME_ROW = 1;

/// Lines whose number of cells is free: two for comments, and the one that sets the data rows apart.
bool is_free(std::size_t line_index) {
    return line_index == 2 || line_index == 3 || line_index == 7;
}

}  // namespace

void FLASH_SOURCE::check_layout(const std::vector<SOURCE_LINE>& lines, bool readable, SOURCE_LAYOUT& layout,
                                const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (is_free(i) || !check_cell_count(lines[i], HEADER, sink)) {
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
