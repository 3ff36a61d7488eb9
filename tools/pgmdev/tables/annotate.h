#pragma once

/// \file
/// Every byte of a packed database, field by field.

#include <string>
#include <vector>

#include "tables/packed_schema.h"
#include "terminal/command.h"
#include "terminal/json.h"

/// Shows the head of the file, then every field of the payload with its offset, tag, record, member and value, up to the
/// end or to the first damage, which makes the result a refusal.
void annotate_database(const std::string& pcf_file, std::vector<BYTE> bytes, const PACKED_SCHEMA& schema,
                       COMMAND& command);

/// The schema of what it answers.
JSON annotation_schema();
