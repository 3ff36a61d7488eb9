#pragma once

/// \file
/// Why a source table cannot be compiled.

#include <optional>
#include <string>

#include "files/output.h"
#include "pgmdev_table_fault.h"
#include "terminal/failure.h"

/// Why the part list cannot be read: a clause for people; "" when it can.
std::string part_list_obstacle();

/// Whether what the library finds wrong with a table is that the part list cannot be read, or is none.
bool is_of_part_list(const PGMDEV_TABLE_FAULT& fault);

/// What to say of such a part list.
FAILURE part_list_failure(std::optional<MSG_INTERNAL_ERROR_REPORT> report = {});

/// The failure of a source table, named by `argument`, that cannot be read; `obstacle` says why.
COMMAND_FAILURE unreadable_table(const std::string& csv_file, const std::string& argument, const std::string& obstacle,
                                 std::optional<MSG_INTERNAL_ERROR_REPORT> report);

/// A source table that cannot be read throws COMMAND_FAILURE; `argument` has named it. Pipes and devices are left to the
/// library.
void require_readable_table(const std::string& csv_file, const std::string& argument);

/// The failure of a table that has faults, which have been shown.
COMMAND_FAILURE refused_table(const std::string& csv_file, std::optional<MSG_INTERNAL_ERROR_REPORT> report);

/// The failure that the compiler's report stands for, after a look at the files it reads and writes.
COMMAND_FAILURE compile_failure(const std::string& csv_file, bool needs_part_list, const OUTPUT_FILE& output,
                                const MSG_INTERNAL_ERROR_REPORT& report);
