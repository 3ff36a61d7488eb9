#pragma once

/// \file
/// Serial flash records as JSON and as text for people.

#include <cstddef>
#include <optional>
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

/// The index, if there is one, and all members, a line each, with their units.
void print_members(const std::optional<DWORD>& index, const PGMDEV_SFL_FLASH_INFO& record);

/// Where the texts begin that print_summary has behind its labels.
inline constexpr std::size_t SUMMARY_COLUMN = 16;

/// What a person who drives the flash wants to know.
void print_summary(const PGMDEV_SFL_FLASH_INFO& record);

/// The most telling members, for people: what they are called, behind the index, and as cells of a table.
std::vector<std::string> record_heading();

/// The columns that a narrow terminal does without first: how records are recognised takes half a line.
std::vector<std::string> record_columns_that_matter_least();
std::vector<std::string> record_cells(const PGMDEV_SFL_FLASH_INFO& record);

/// The records as a list, for people with their most telling members.
void print_records(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, const ARGUMENTS& given, const COMMAND& command);
