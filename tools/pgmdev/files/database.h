#pragma once

/// \file
/// Why a packed database cannot be used.

#include <cstddef>
#include <optional>
#include <string>

#include "files/origins.h"
#include "terminal/failure.h"
#include "terminal/reports.h"

/// What the packed format is made of, from its beginning: magic, stamp, size of the body; and, at its end, a checksum.
inline constexpr std::size_t PACKED_MAGIC_LENGTH = 8;
inline constexpr std::size_t PACKED_STAMP_LENGTH = 32;
inline constexpr std::size_t PACKED_HEAD_LENGTH = PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH + 4;
inline constexpr std::size_t PACKED_CHECKSUM_LENGTH = 2;

/// What tells the databases apart.
struct DATABASE_KIND {
    const char* name;        ///< for people
    const char* magic;       ///< the first bytes
    std::string (*stamp)();  ///< that this library reads
    const char* noun;        ///< whose verbs compile it
};

extern const DATABASE_KIND FLASH_DATABASE_KIND;
extern const DATABASE_KIND PROFILE_DATABASE_KIND;

/// The failure to read a database, after a look at the file. `report` is what the library has said.
COMMAND_FAILURE database_failure(const DATABASE_KIND& kind, const PLACE& place,
                                 std::optional<MSG_INTERNAL_ERROR_REPORT> report);

/// What `read` gives, which reads a database. All that the library reports meanwhile is a failure to read it.
template <class READ>
auto read_database(const DATABASE_KIND& kind, const PLACE& place, READ read) try {
    forget_report();
    auto database = read();
    if (const auto report = last_report()) {  // of a file of another kind, which gives an empty database
        throw database_failure(kind, place, report);
    }
    return database;
} catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    throw database_failure(kind, place, error.report());
}
