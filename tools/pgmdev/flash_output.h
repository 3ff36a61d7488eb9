#pragma once

/// \file
/// Serial flash records as JSON, as text for people, and as a source table.

#include <string>

#include "command.h"
#include "pgmdev_flash_table.h"
#include "pgmdev_sfl_flash_info.h"

/// Adds the members to an object, under their names.
void add_members(JSON& object, const PGMDEV_SFL_FLASH_INFO& record);

/// `index` and the members.
JSON record_json(DWORD index, const PGMDEV_SFL_FLASH_INFO& record);

/// All members, a line each, with their units.
void print_members(DWORD index, const PGMDEV_SFL_FLASH_INFO& record);

/// What a person who drives the flash wants to know.
void print_summary(const PGMDEV_SFL_FLASH_INFO& record);

/// The records as a table of their most telling members, or as a JSON array.
void print_records(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, const COMMAND& command);

/// The table as a source table. A record that no source table can hold throws std::runtime_error.
void print_source_table(const PGMDEV_FLASH_TABLE& table);

/// The default row of each name in columns of readable width, "128 Mbit" for a size in bits.
std::string size_text(QWORD bits);
