#include "source/header.h"

#include <array>

#include "report.h"
#include "stl.h"

namespace {

/// The kinds of columns, by tag: how the type row spells it, and what its cells may hold.
struct COLUMN_TYPE {
    const char* name;
    const char* accepted;
};

constexpr std::array<COLUMN_TYPE, 8> COLUMN_TYPES{{
    {"DEVID_ENUM", "the name of a family in capitals; GENERIC for a device or part; or nothing"},
    {"DEVID_STR", "a text without blanks and commas"},
    {"STL_STRING", "a text without blanks and commas"},
    {"bool", "TRUE or FALSE"},
    {"BYTE", "a number: decimal, or hexadecimal after 0x; 0 to 255 fit"},
    {"WORD", "a number: decimal, or hexadecimal after 0x; 0 to 65535 fit"},
    {"DWORD", "a number: decimal, or hexadecimal after 0x, up to 0xFFFFFFFF"},
    {"ENUM", "the name of an enumerator, or nothing"},
}};

}  // namespace

const char* column_type_name(PGMDEV_MANAGER_TYPE kind) {
    return COLUMN_TYPES[kind].name;
}

const char* accepted_cell(PGMDEV_MANAGER_TYPE kind) {
    return COLUMN_TYPES[kind].accepted;
}

PGMDEV_TABLE_FAULT cell_fault(const SOURCE_LINE& line, std::size_t cell, std::string_view member, std::string condition,
                              std::string expected) {
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.column = line.columns[cell];
    fault.member = member;
    fault.cell = line.cells[cell];
    fault.condition = std::move(condition);
    fault.expected = std::move(expected);
    return fault;
}

bool check_cell_count(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink) {
    if (line.cells.size() == header.columns.size()) {
        return true;
    }
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.condition = header.wrong_count;
    fault.expected = std::to_string(header.columns.size()) + " cells, this line has " +
                     std::to_string(line.cells.size()) + " (cells end at blanks, tabs and commas)";
    sink(fault, PGMDEV_LINE);
    return false;
}

void check_type_row(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const std::string type = column_type_name(header.columns[i].kind);
        if (line.cells[i] != type) {
            sink(cell_fault(line, i, header.columns[i].name, "svec.at(i) == \"" + type + "\"", "the type " + type),
                 PGMDEV_LINE);
        }
    }
}

void check_name_row(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        std::string name = line.cells[i];
        stl_tolower(name);
        if (name != header.columns[i].name) {
            const std::string expected(header.columns[i].name);
            sink(cell_fault(line, i, expected, header.wrong_name, "the member name " + expected), PGMDEV_LINE);
        }
    }
}
