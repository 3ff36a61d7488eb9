#pragma once

/// \file
/// What may be behind many faults of a source table at once: how the program that wrote it writes tables.

#include <string>
#include <vector>

#include "pgmdev_table_fault.h"
#include "tables/notes_files.h"

/// Hints at the causes of such faults in a table of the noun, told from the bytes of the file; none when the form of the
/// table is not broken, nothing stands out, or the file cannot be read.
std::vector<std::string> hints_at_causes(const std::string& csv_file, const std::string& noun,
                                         const std::vector<PGMDEV_TABLE_FAULT>& faults);

/// A hint at each of the files that is in UTF-16, of those that go with a table.
std::vector<std::string> hints_at_notes(const std::vector<NOTES_COPY>& notes);

void print_hints(const std::string& csv_file, const std::vector<std::string>& hints);
