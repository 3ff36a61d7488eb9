#pragma once

/// \file
/// The flash source table: its header lines, and the checks of its rows.

#include <string>
#include <vector>

#include "flash/records.h"
#include "records/compiler.h"

struct FLASH_SOURCE {
    using RECORD = PGMDEV_SFL_FLASH_INFO;

    static constexpr auto COLUMNS = source_columns(PGMDEV_SFL_FLASH_MEMBERS);
    static constexpr SOURCE_HEADER HEADER{COLUMNS, "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER",
                                          "temp == m_name_list[i]"};
    static constexpr std::size_t HEADER_LINES = 8;  ///< types, names, and six that the compiler does not read
    static constexpr bool KEEP_EMPTY = false;

    /// The first pass: the number of cells in every line, the type row and the name row, and that there is a data row.
    static void check_layout(const std::vector<SOURCE_LINE>& lines, bool readable, SOURCE_LAYOUT& layout,
                             const FAULT_SINK& sink);

    static void check_line(const SOURCE_LINE& /*line*/, const FAULT_SINK& /*sink*/) {}

    /// The device name.
    static std::string row_name(const SOURCE_LINE& line) { return line.cells[1]; }

    /// Looks at each row as a row: geometry, colliding indexes, cells that do not fit, unusual values. `records` are
    /// what `lines`, sound data rows, are compiled to.
    static void check_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                           const FAULT_SINK& sink);

    /// Looks at all rows together: default rows, rows that are never reached. A missing row would mislead it.
    static void check_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                                    const FAULT_SINK& sink);
};
