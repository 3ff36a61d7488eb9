#pragma once

/// \file
/// Serial flash records as JSON and as text for people.

#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"
#include "terminal/command.h"
#include "terminal/command_line.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// Adds the members to an object, under their names.
void add_members(JSON& object, const PGMDEV_SFL_FLASH_INFO& record);

/// What add_members adds.
std::vector<SCHEMA_MEMBER> record_members();

/// What record_json has.
std::vector<SCHEMA_MEMBER> indexed_record_members();
JSON record_schema();

/// `index` and the members.
JSON record_json(DWORD index, const PGMDEV_SFL_FLASH_INFO& record);

/// All members, a line each, with their units.
void print_members(DWORD index, const PGMDEV_SFL_FLASH_INFO& record);

/// What a person who drives the flash wants to know.
void print_summary(const PGMDEV_SFL_FLASH_INFO& record);

/// The records as a list, for people with their most telling members.
void print_records(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, const ARGUMENTS& given, const COMMAND& command);

/// A size in the largest of Mbit, Kbit and bit that leaves no fraction: "128 Mbit".
std::string size_text(QWORD bits);
