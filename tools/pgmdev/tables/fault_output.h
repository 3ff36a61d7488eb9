#pragma once

/// \file
/// Faults of source tables, for people and for programs.

#include <string>
#include <vector>

#include "pgmdev_table_fault.h"
#include "terminal/json.h"

/// A fault as an object; `row_key` is the key under which it tells the row.
JSON fault_json(const PGMDEV_TABLE_FAULT& fault, const std::string& row_key);

/// The schema of fault_json.
JSON fault_schema(const std::string& row_key);

/// Faults as an array of objects.
JSON faults_json(const std::vector<PGMDEV_TABLE_FAULT>& faults, const std::string& row_key);

/// A line for each fault on standard error. `describe` makes the line.
void print_faults(const std::vector<PGMDEV_TABLE_FAULT>& faults, const std::string& csv_file,
                  std::string (*describe)(const PGMDEV_TABLE_FAULT&, const std::string&));
