#include "pgmdev_flash_source.h"

#include <algorithm>
#include <array>

#include "pgmdev_flash_payload.h"
#include "pgmdev_report.h"
#include "stl.h"

namespace {

constexpr std::size_t TYPE_ROW = 0;
constexpr std::size_t NAME_ROW = 1;

/// How the type row spells the types, by tag.
constexpr std::array<const char*, 7> TYPE_NAMES{nullptr, nullptr, "STL_STRING", "bool", "BYTE", "WORD", "DWORD"};

/// What a cell of a type may hold, by tag.
constexpr std::array<const char*, 7> ACCEPTED_CELLS{
    nullptr,
    nullptr,
    "a text without blanks and commas",
    "TRUE or FALSE",
    "a number: decimal, or hexadecimal after 0x; 0 to 255 fit",
    "a number: decimal, or hexadecimal after 0x; 0 to 65535 fit",
    "a number: decimal, or hexadecimal after 0x, up to 0xFFFFFFFF",
};

/// Lines whose number of cells is free.
bool is_free(std::size_t line_index) {
    return line_index == 2 || line_index == 3 || line_index == 7;
}

PGMDEV_TABLE_FAULT cell_fault(const SOURCE_LINE& line, std::size_t cell, std::string condition, std::string expected) {
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.column = line.columns[cell];
    fault.member = PGMDEV_SFL_FLASH_MEMBERS[cell].name;
    fault.cell = line.cells[cell];
    fault.condition = std::move(condition);
    fault.expected = std::move(expected);
    return fault;
}

void check_type_row(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const std::string type = TYPE_NAMES[PGMDEV_SFL_FLASH_MEMBERS[i].type()];
        if (line.cells[i] != type) {
            sink(cell_fault(line, i, "svec.at(i) == \"" + type + "\"", "the type " + type), __LINE__);
        }
    }
}

void check_name_row(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        std::string name = line.cells[i];
        stl_tolower(name);
        if (name != PGMDEV_SFL_FLASH_MEMBERS[i].name) {
            const std::string expected(PGMDEV_SFL_FLASH_MEMBERS[i].name);
            sink(cell_fault(line, i, "temp == m_name_list[i]", "the member name " + expected), __LINE__);
        }
    }
}

bool check_cell_count(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    if (line.cells.size() == PGMDEV_SFL_FLASH_MEMBERS.size()) {
        return true;
    }
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.condition = "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER";
    fault.expected = std::to_string(PGMDEV_SFL_FLASH_MEMBERS.size()) + " cells, this line has " +
                     std::to_string(line.cells.size()) + " (cells end at blanks, tabs and commas)";
    sink(fault, __LINE__);
    return false;
}

}  // namespace

FLASH_LAYOUT check_flash_layout(const std::vector<SOURCE_LINE>& lines, bool readable, const FAULT_SINK& sink) {
    FLASH_LAYOUT layout{0, PACKED_BODY_HEAD_SIZE + PACKED_MARKER_SIZE};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (is_free(i) || !check_cell_count(lines[i], sink)) {
            continue;
        }
        if (i == TYPE_ROW) {
            check_type_row(lines[i], sink);
        } else if (i == NAME_ROW) {
            check_name_row(lines[i], sink);
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
            PGMDEV_TABLE_FAULT fault = cell_fault(line, i, condition, ACCEPTED_CELLS[type]);
            fault.row = line.cells[1];
            sink(fault, __LINE__);
        }
    }
}
