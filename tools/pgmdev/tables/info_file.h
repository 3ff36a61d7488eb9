#pragma once

/// \file
/// The text beside a packed database, DATABASE.info: what the database was compiled from, and digests by which silent
/// damage is found out. docs/formats.md describes it.

#include <span>
#include <string>

#include "file_info.h"
#include "pgmdev_types.h"
#include "terminal/json.h"

struct DATABASE_INFO {
    std::string database;         ///< its file name, without directories, and what commands a terminal shown as \xNN
    std::string database_sha256;  ///< in lower-case hexadecimal digits
    std::string source;           ///< file name of the source table, likewise
    std::string source_sha256;
    QWORD records = 0;
    QWORD payload_size = 0;   ///< in bytes
    std::string compiled_by;  ///< the command and its version
    /// SHA-256 of the database that is being replaced; "" once it is. The text is written before the database takes its
    /// place and again behind it, so that it fits whichever of the two is found after a crash.
    std::string replaces_sha256;

    bool operator==(const DATABASE_INFO&) const = default;
};

/// What is known of a database when it has been compiled from a source table; it replaces nothing.
DATABASE_INFO database_info(const std::string& database, std::span<const BYTE> database_bytes,
                            const std::string& source, std::span<const BYTE> source_bytes, QWORD records,
                            QWORD payload_size);

/// The text.
std::string info_text(const DATABASE_INFO& info);

/// Whether a database is the one that its text tells of.
struct INFO_FINDING {
    INFO_STATE state = INFO_STATE::MISSING;
    DATABASE_INFO info;   ///< what the text tells
    std::string message;  ///< for people
};

INFO_FINDING check_info(const std::string& database);

/// An object of all that a text tells.
JSON info_json(const DATABASE_INFO& info);
JSON info_schema();
