#pragma once

/// \file
/// What may be behind many faults of a source table at once: how the program that wrote it writes tables.

#include <string>
#include <vector>

/// Hints at causes, told from the bytes of the file; none when nothing stands out, or the file cannot be read.
std::vector<std::string> hints_at_causes(const std::string& csv_file);
