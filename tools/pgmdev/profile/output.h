#pragma once

/// \file
/// Device profiles as JSON and as text for people.

#include <span>
#include <string>

#include "pgmdev_dev_info.h"
#include "terminal/command.h"
#include "terminal/json.h"

/// Adds the members to an object, under their names. Identifiers and enumerators are names, or null for none, or
/// numbers where no name is known.
void add_members(JSON& object, const PGMDEV_DEVICE_INFO& record);

/// All members, a line each; identifiers and enumerators with number and name.
void print_members(const PGMDEV_DEVICE_INFO& record, const std::string& heading);

/// What keys the record: "family KESTREL".
std::string key_text(const PGMDEV_DEVICE_INFO& record);

/// The records as a table of their most telling members, or as a JSON array.
void print_records(std::span<const PGMDEV_DEVICE_INFO> records, const COMMAND& command);
