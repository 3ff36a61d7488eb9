#pragma once

/// \file
/// The format of the device-information source table: its header rows, its keys, and the cells of its rows.

#include <vector>

#include "pgmdev_dev_info.h"
#include "pgmdev_types.h"
#include "source/header.h"
#include "source/table.h"

/// Lines before the data rows: types and names.
inline constexpr std::size_t DEV_INFO_HEADER_LINES = 2;

/// The longest line that a table may have, in characters.
inline constexpr QWORD DEV_INFO_LINE_MAX = 10240;

/// The first four members, one of which keys a row.
inline constexpr std::size_t DEV_INFO_KEYS = 4;

/// The first pass: the number of cells in every line, the type row and the name row, one key in every data row, and
/// that there are as many data rows as a valid database has records. `record_count` receives the rows up to the first
/// faulty one; the result is the size of the record section in bytes.
QWORD check_dev_info_layout(const std::vector<SOURCE_LINE>& lines, bool readable, DWORD& record_count,
                            const FAULT_SINK& sink);

/// The second pass, for every line: its length.
void check_dev_info_length(const SOURCE_LINE& line, const FAULT_SINK& sink);

/// The second pass, for one data row with the right number of cells: every cell against its member's kind.
void check_dev_info_cells(const SOURCE_LINE& line, const FAULT_SINK& sink);

/// How faults call a row: its key.
std::string dev_info_row_name(const SOURCE_LINE& line);

/// Looks at each row as a row: values that contradict each other or do not fit. `records` are what `lines`, sound data
/// rows, are compiled to.
void check_dev_info_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<PGMDEV_DEVICE_INFO>& records,
                         const FAULT_SINK& sink);

/// Looks at all rows together: keys that stand twice or reach nothing, families without a row. A missing row would
/// mislead it.
void check_dev_info_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<PGMDEV_DEVICE_INFO>& records,
                                  const FAULT_SINK& sink);
