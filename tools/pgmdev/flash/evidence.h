#pragma once

/// \file
/// What supports the rows of a flash table, as the command tells it, and what is wrong with the list of that.

#include <vector>

#include "flash_evidence.h"
#include "pgmdev_sfl_flash_info.h"
#include "tables/table_support.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// What is wrong with the list (lines of another form, classes that do not exist, records without a line), and how many
/// of the records have each class.
TABLE_SUPPORT support_of(const FLASH_EVIDENCE& evidence, const std::vector<PGMDEV_SFL_FLASH_INFO>& records);

/// An object: the groups, each with "evidence" and "sources".
JSON support_json(const std::vector<FLASH_SUPPORT>& support);
JSON support_schema();

/// The schema of the shares of a table.
JSON shares_schema();

/// A line for each group.
void print_support(const std::vector<FLASH_SUPPORT>& support);
