#pragma once

/// \file
/// The source table of the programming profiles: its header rows, its keys, and the checks of its rows.

#include <string>
#include <vector>

#include "profiles/records.h"
#include "records/compiler.h"

struct PROFILE_SOURCE {
    using RECORD = PGMDEV_DEVICE_INFO;

    static constexpr auto COLUMNS = source_columns(PGMDEV_DEVICE_INFO_MEMBERS);
    static constexpr SOURCE_HEADER HEADER{COLUMNS, "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER",
                                          "temp == m_db_name_list[i]"};
    static constexpr std::size_t HEADER_LINES = 2;  ///< types and names
    static constexpr bool KEEP_EMPTY = true;
    static constexpr QWORD LONGEST_LINE = 10240;  ///< in characters

    /// The first pass: the number of cells in every line, the type row and the name row, one key in every data row, and
    /// that there are as many data rows as a valid database has records. The layout counts the rows up to the first
    /// faulty one.
    static void check_layout(const std::vector<SOURCE_LINE>& lines, bool readable, SOURCE_LAYOUT& layout,
                             const FAULT_SINK& sink);

    /// The length of a line.
    static void check_line(const SOURCE_LINE& line, const FAULT_SINK& sink);

    /// The key.
    static std::string row_name(const SOURCE_LINE& line);

    /// Looks at each row as a row: values that contradict each other or do not fit. `records` are what `lines`, sound
    /// data rows, are compiled to.
    static void check_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                           const FAULT_SINK& sink);

    /// Looks at all rows together: keys that stand twice or reach nothing, families without a row. A missing row would
    /// mislead it.
    static void check_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                                    const FAULT_SINK& sink);
};
