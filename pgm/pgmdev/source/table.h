#pragma once

/// \file
/// Source tables as lines of cells that know where they stand.

#include <functional>
#include <string>
#include <vector>

#include "fio.h"
#include "pgmdev_types.h"

/// A line that holds more than white space.
struct SOURCE_LINE {
    DWORD number = 0;                ///< in the file, from 1
    QWORD length = 0;                ///< in characters, with the white space around it
    DWORD first_column = 0;          ///< where the white space before it ends, from 1
    std::vector<std::string> cells;  ///< without the separators
    std::vector<DWORD> columns;      ///< where each cell begins in the line, from 1
};

/// Whose cells may be about 4 million at most: those of a table that is kept, or of a line that is forgotten when the next
/// one comes.
enum class LIMITED_CELLS { OF_ALL_LINES, OF_A_LINE };

/// Calls `use` for each line of a source table: lines end at line feeds, the last one also without; white space around a
/// line does not count, lines without anything else are left out. With `keep_empty` every separator ends a cell, otherwise
/// empty cells are dropped. False when the file could not be read to its end, or goes beyond the limits, these cells and
/// 64 MiB; what was used until then is not all.
bool for_each_source_line(const FIO_PATH& path, bool keep_empty, LIMITED_CELLS limited,
                          const std::function<void(SOURCE_LINE)>& use);

/// All lines of a source table. `readable` tells whether it could be read; one that could not reads as empty.
std::vector<SOURCE_LINE> read_source_table(const FIO_PATH& path, bool keep_empty, bool& readable);
