#pragma once

/// \file
/// What may be behind many faults of a source table at once: how the program that wrote it writes tables.

#include <string>
#include <vector>

#include "pgmdev_table_fault.h"

/// Hints at the causes of such faults in a table of the noun, told from the bytes of the file; none when the form of the
/// table is not broken, nothing stands out, or the file cannot be read.
std::vector<std::string> hints_at_causes(const std::string& csv_file, const std::string& noun,
                                         const std::vector<PGMDEV_TABLE_FAULT>& faults);

void print_hints(const std::string& csv_file, const std::vector<std::string>& hints);
