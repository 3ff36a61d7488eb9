#pragma once

/// \file
/// What one line of a log says of the identification of a flash.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// Maker, type and capacity: an identification has no fewer bytes.
inline constexpr std::size_t LEAST_IDENTIFICATION = 3;

/// The bytes that a line says to be an identification; none when it says none. Of a line that tells only a part of it,
/// fewer than LEAST_IDENTIFICATION.
std::vector<BYTE> identification_in(const std::string& line);

/// Whether the line speaks of an identification, so that bytes in the next one are probably those of it.
bool announces_identification(const std::string& line);

/// The bytes behind a field such as "manufacturer:" or "memory type"; none when the line has it not.
std::vector<BYTE> field_in(const std::string& line, std::string_view field);

/// The bytes of a line of a hex dump, the first one of the dump, or of a line that has nothing but what was received:
/// "read: 0xEF 0x40 0x18".
std::vector<BYTE> dump_in(const std::string& line);

/// The names of the flash that a line tells.
std::vector<std::string> names_in(const std::string& line);
