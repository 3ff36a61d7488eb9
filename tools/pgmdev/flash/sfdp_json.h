#pragma once

/// \file
/// What a flash says of itself, for programs.

#include <vector>

#include "pgmdev_flash_sfdp.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// All that was read of a dump.
JSON sfdp_json(const PGMDEV_FLASH_SFDP& sfdp);
std::vector<SCHEMA_MEMBER> sfdp_members();

/// The record that follows: its members, "assumed" and "row", a row of the source table. Null when there is none.
JSON derived_record_json(const PGMDEV_FLASH_SFDP::DERIVED_RECORD& derived);
JSON derived_record_schema();

/// The record as a row of the source table.
std::string source_row(const PGMDEV_SFL_FLASH_INFO& record);
