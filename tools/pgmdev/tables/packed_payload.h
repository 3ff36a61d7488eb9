#pragma once

/// \file
/// The payload of a packed database, value by value.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/packed_file.h"
#include "tables/packed_schema.h"
#include "terminal/json.h"

/// A run of bytes that belong together.
struct PACKED_FIELD {
    std::size_t offset = 0;  ///< in the payload
    std::span<const BYTE> bytes;
    std::string tag;               ///< its name; "" where there is none
    std::optional<DWORD> record;   ///< empty outside the records
    std::string_view member;       ///< of the record, or what the bytes are
    std::optional<DWORD> element;  ///< in an index table
    JSON value;
    std::string text;  ///< the value for people, with name and unit
};

using FIELD_SINK = std::function<void(const PACKED_FIELD&)>;

/// Hands every value to `sink`, which may be empty, up to the end or the first fault. The checks tell how far that is.
std::vector<TABLE_CHECK> scan_payload(std::span<const BYTE> payload, const PACKED_SCHEMA& schema,
                                      const FIELD_SINK& sink);
