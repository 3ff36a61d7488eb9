#pragma once

/// \file
/// What all source tables share: their columns, and the two rows that state them.

#include <span>
#include <string>
#include <string_view>

#include "pgmdev_manager_type.h"
#include "source/faults.h"
#include "source/table.h"

struct SOURCE_COLUMN {
    std::string_view name;
    PGMDEV_MANAGER_TYPE kind = PGMDEV_MANAGER_STRING;
};

/// The columns of one kind of table, and the texts of the failed checks.
struct SOURCE_HEADER {
    std::span<const SOURCE_COLUMN> columns;
    const char* wrong_count;
    const char* wrong_name;
};

/// How the type row spells a kind.
const char* column_type_name(PGMDEV_MANAGER_TYPE kind);

/// What a cell of a kind may hold, for the table's maintainer.
const char* accepted_cell(PGMDEV_MANAGER_TYPE kind);

/// A fault of one cell.
PGMDEV_TABLE_FAULT cell_fault(const SOURCE_LINE& line, std::size_t cell, std::string_view member, std::string condition,
                              std::string expected);

/// Whether the line has as many cells as the table has columns.
bool check_cell_count(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink);

/// The type row states each column's kind, spelled exactly.
void check_type_row(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink);

/// The name row states each column's name, in any case.
void check_name_row(const SOURCE_LINE& line, const SOURCE_HEADER& header, const FAULT_SINK& sink);
