#pragma once

/// \file
/// Whole files as bytes, and their digests.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "file_reader.h"
#include "pgmdev_types.h"
#include "terminal/failure.h"

/// The bytes of a file, not of a pipe or device; nothing when it cannot be read to its end, or is larger than any table or
/// database is.
std::optional<std::vector<BYTE>> file_bytes(const std::string& path);

/// The same, where a file that cannot be read ends the command.
std::vector<BYTE> required_file_bytes(const std::string& path);

/// The text of a file of these kinds, likewise.
std::string required_file_text(const std::string& path, FILE_KINDS kinds);

/// The failure of a file that cannot be read; `obstacle` is a clause that says why, or "".
COMMAND_FAILURE unreadable_file(const std::string& path, const std::string& obstacle);

/// Whether the file begins like a packed database, of whichever kind. One that cannot be read is taken for one by its name.
bool is_packed_database(const std::string& path);

/// The SHA-256 of the bytes, in lower-case hexadecimal digits.
std::string sha256_of(std::span<const BYTE> bytes);
