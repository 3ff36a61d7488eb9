#pragma once

/// \file
/// What one line of a log says of the identification of a flash.

#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// The bytes that a line says to be an identification; none when it says none. Of a line that tells only a part of it,
/// fewer than LEAST_IDENTIFICATION.
std::vector<BYTE> identification_in(const std::string& line);

/// Whether the line speaks of an identification, so that bytes in the next one are probably those of it.
bool announces_identification(const std::string& line);

/// Whether the line says that an identification was expected, and leaves to the next one which: "Expected JEDEC ID:".
bool announces_what_was_expected(const std::string& line);

/// The bytes behind a field such as "manufacturer:" or "memory type"; none when the line has it not.
std::vector<BYTE> field_in(const std::string& line, std::string_view field);

/// The names of the flash that a line tells.
std::vector<std::string> names_in(const std::string& line);
