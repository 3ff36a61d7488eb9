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

/// Collects faults, as far as anybody would read them, from a table that may be of any length.
class COLLECTED_FAULTS {
public:
    /// Further ones are only counted.
    static constexpr std::size_t MOST = 10000;
    /// Of a row's name and of a cell, in bytes; "..." stands for more.
    static constexpr std::size_t LONGEST_TEXT = 1000;

    void add(PGMDEV_TABLE_FAULT fault);

    bool empty() const { return m_faults.empty(); }

    /// In line order; behind them, where not all are here, one for the table as a whole that says so: a fault, if any of
    /// those missing is one.
    std::vector<PGMDEV_TABLE_FAULT> take();

private:
    std::vector<PGMDEV_TABLE_FAULT> m_faults;
    std::size_t m_further = 0;
    PGMDEV_TABLE_FAULT::SEVERITY m_severity_of_further = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
};

/// Puts faults into line order; those of one line stay in the order in which they were found.
void sort_faults(std::vector<PGMDEV_TABLE_FAULT>& faults);

/// Whether a fault, not only warnings, is among them.
bool has_fault(const std::vector<PGMDEV_TABLE_FAULT>& faults) noexcept;
