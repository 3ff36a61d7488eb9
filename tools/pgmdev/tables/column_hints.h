#pragma once

/// \file
/// What may be behind lines of a source table that have too few or too many cells: which column or cell it is.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_manager_type.h"
#include "pgmdev_table_fault.h"

struct HINTED_COLUMN {
    std::string_view name;
    PGMDEV_MANAGER_TYPE kind;
};

/// A kind of table: its columns, and whether an empty cell is one.
struct HINTED_TABLE {
    std::vector<HINTED_COLUMN> columns;
    bool keeps_empty;
};

/// A hint at the first such fault of a table with that text: the columns that the line of the names lacks, or has besides, or
/// else the first cell that cannot be one of its column. None when there is no such fault.
std::optional<std::string> hint_at_columns(std::string_view text, const HINTED_TABLE& table,
                                           const std::vector<PGMDEV_TABLE_FAULT>& faults);
