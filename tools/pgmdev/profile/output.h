#pragma once

/// \file
/// Device profiles as JSON and as text for people.

#include <span>
#include <string>
#include <vector>

#include "pgmdev_dev_info.h"
#include "terminal/command.h"
#include "terminal/command_line.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// The first members, one of which keys a record.
inline constexpr std::size_t PROFILE_KEYS = 4;

/// Adds the members to an object, under their names. Identifiers and enumerators are names, or null for none, or
/// numbers where no name is known.
void add_members(JSON& object, const PGMDEV_DEVICE_INFO& record);

/// What add_members adds.
std::vector<SCHEMA_MEMBER> profile_members();

/// The schema of a record in a list: `index` and the members.
JSON profile_schema();

/// All members, a line each; identifiers and enumerators with number and name.
void print_members(const PGMDEV_DEVICE_INFO& record, const std::string& heading);

/// What keys the record: "family KESTREL".
std::string key_text(const PGMDEV_DEVICE_INFO& record);

/// The records as a list, for people with their most telling members.
void print_records(std::span<const PGMDEV_DEVICE_INFO> records, const ARGUMENTS& given, const COMMAND& command);
