#pragma once

/// \file
/// Faults of source tables: found by checks, handed to a sink, described for people.

#include <functional>
#include <string>
#include <vector>

#include "fio.h"
#include "pgmdev_table_fault.h"

/// Receives a fault and the line of the check that found it. It may end the operation, or collect and go on.
using FAULT_SINK = std::function<void(const PGMDEV_TABLE_FAULT& fault, int check_line)>;

/// Says on the debug channel where a table is refused, and why.
void trace_refusal(const PGMDEV_TABLE_FAULT& fault, const FIO_PATH& csv_file);

/// Refuses a table at its first fault: the debug channel says where, the fault's condition is reported with the file
/// `file`.
FAULT_SINK refusing_sink(const FIO_PATH& csv_file, const char* file);

/// One line of text: "file:line:column: fault: ..."
std::string describe_fault(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name);

/// Puts faults into line order; those of one line stay in the order in which they were found.
void sort_faults(std::vector<PGMDEV_TABLE_FAULT>& faults);

/// Whether a fault, not only warnings, is among them.
bool has_fault(const std::vector<PGMDEV_TABLE_FAULT>& faults) noexcept;
