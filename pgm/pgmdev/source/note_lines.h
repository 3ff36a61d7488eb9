#pragma once

/// \file
/// Small tables of words and sentences: cells between commas, those with commas in quotation marks, lines that begin with
/// "#" for people only.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_table_fault.h"
#include "pgmdev_types.h"

struct NOTE_LINE {
    DWORD number = 0;                ///< in the file, from 1
    std::vector<std::string> cells;  ///< one for each column, without quotation marks and blanks around
    std::vector<DWORD> columns;      ///< where each cell begins in the line, from 1
};

/// The lines behind the heading, which states the names of the columns. A line without as many cells as columns, with an
/// empty cell or an open quotation mark is a fault and left out; so is a file that cannot be read, is no text, or is
/// larger than people write such tables. Nothing when there is no such file.
std::optional<std::vector<NOTE_LINE>> read_note_lines(const std::string& file,
                                                      std::span<const std::string_view> columns,
                                                      std::vector<PGMDEV_TABLE_FAULT>& faults);

/// A fault in one cell of a line.
PGMDEV_TABLE_FAULT note_fault(const NOTE_LINE& line, std::size_t cell, std::span<const std::string_view> columns,
                              std::string expected,
                              PGMDEV_TABLE_FAULT::SEVERITY severity = PGMDEV_TABLE_FAULT::SEVERITY::FAULT);
