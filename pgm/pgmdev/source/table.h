#pragma once

/// \file
/// Source tables as lines of cells that know where they stand.

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

/// Reads a source table: lines end at line feeds, the last one also without; white space around a line does not count,
/// lines without anything else are left out. `readable` tells whether the file could be read to its end and keeps to the
/// limits, 64 MiB and about 4 million cells; one that is not so reads as empty. With `keep_empty` every separator ends a cell, otherwise empty cells are dropped.
std::vector<SOURCE_LINE> read_source_table(const FIO_PATH& path, bool keep_empty, bool& readable);
