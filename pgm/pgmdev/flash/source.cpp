#include "flash/source.h"

#include <algorithm>
#include <array>

#include "flash/records.h"

namespace {

constexpr std::size_t TYPE_ROW = 0;
constexpr std::size_t NAME_ROW = 1;

constexpr std::array<SOURCE_COLUMN, PGMDEV_SFL_FLASH_MEMBERS.size()> COLUMNS = [] {
    std::array<SOURCE_COLUMN, PGMDEV_SFL_FLASH_MEMBERS.size()> columns{};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i] = {PGMDEV_SFL_FLASH_MEMBERS[i].name, PGMDEV_SFL_FLASH_MEMBERS[i].type()};
    }
    return columns;
}();

constexpr SOURCE_HEADER HEADER{COLUMNS, "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER", "temp == m_name_list[i]"};

/// Lines whose number of cells is free.
bool is_free(std::size_t line_index) {
    return line_index == 2 || line_index == 3 || line_index == 7;
}

}  // namespace

FLASH_LAYOUT check_flash_layout(const std::vector<SOURCE_LINE>& lines, bool readable, const FAULT_SINK& sink) {
    FLASH_LAYOUT layout{0, PACKED_BODY_HEAD_SIZE + PACKED_MARKER_SIZE};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (is_free(i) || !check_cell_count(lines[i], HEADER, sink)) {
            continue;
        }
        if (i == TYPE_ROW) {
            check_type_row(lines[i], HEADER, sink);
        } else if (i == NAME_ROW) {
            check_name_row(lines[i], HEADER, sink);
        } else if (i >= FLASH_HEADER_LINES) {
            layout.payload_size += flash_record_size(lines[i].cells);
            ++layout.record_count;
        }
    }
    if (!readable || lines.size() <= FLASH_HEADER_LINES) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = "status && device_count > 0";
        fault.expected = readable ? "eight header lines and at least one data row" : "a file that can be read";
        sink(fault, __LINE__);
    }
    return layout;
}

void check_flash_cells(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const PGMDEV_MANAGER_TYPE type = PGMDEV_SFL_FLASH_MEMBERS[i].type();
        if (const char* condition = flash_cell_condition(type, line.cells[i])) {
            PGMDEV_TABLE_FAULT fault = cell_fault(line, i, COLUMNS[i].name, condition, accepted_cell(type));
            fault.row = line.cells[1];
            sink(fault, __LINE__);
        }
    }
}
