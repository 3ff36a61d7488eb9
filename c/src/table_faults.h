#pragma once

/// \file
/// What is wrong with a source table, or with notes beside a database, as records.

#include "pgmdev_table_fault.h"
#include "records.h"

/// No faults, with their members.
pgmdev_records no_faults();

/// `text` is all of it in one line.
void add_fault(pgmdev_records& faults, const PGMDEV_TABLE_FAULT& fault, std::string text);
