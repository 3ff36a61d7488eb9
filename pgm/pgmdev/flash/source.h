#pragma once

/// \file
/// The format of the flash source table: its header lines, and the cells of its rows.

#include <string>
#include <vector>

#include "pgmdev_flash_table.h"
#include "pgmdev_types.h"
#include "source/header.h"
#include "source/table.h"

/// Lines before the data rows: types, names, and six that the compiler does not read.
inline constexpr std::size_t FLASH_HEADER_LINES = 8;

/// What the first pass over a table finds out.
struct FLASH_LAYOUT {
    DWORD record_count = 0;
    QWORD payload_size = 0;  ///< in bytes, uncompressed
};

/// The first pass: the number of cells in every line, the type row and the name row, and that there is a data row.
FLASH_LAYOUT check_flash_layout(const std::vector<SOURCE_LINE>& lines, bool readable, const FAULT_SINK& sink);

/// The second pass, for one data row of the right length: every cell against its member's type.
void check_flash_cells(const SOURCE_LINE& line, const FAULT_SINK& sink);

/// Looks at each row as a row: geometry, colliding indexes, cells that do not fit, unusual values. `records` are what
/// `lines`, sound data rows, are compiled to.
void check_flash_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<PGMDEV_SFL_FLASH_INFO>& records,
                      const FAULT_SINK& sink);

/// Looks at all rows together: default rows, rows that are never reached. A missing row would mislead it.
void check_flash_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<PGMDEV_SFL_FLASH_INFO>& records,
                               const FAULT_SINK& sink);
