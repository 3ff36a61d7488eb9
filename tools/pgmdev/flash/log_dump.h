#pragma once

/// \file
/// Lines of a log that have nothing but bytes, of which nobody says what they are.

#include <string>
#include <vector>

#include "pgmdev_types.h"

/// The bytes of a line of a hex dump, the first one of the dump, or of a line that has nothing but what was received:
/// "read: 0xEF 0x40 0x18".
std::vector<BYTE> dump_in(const std::string& line);

/// Those of the latter alone.
std::vector<BYTE> received_in(const std::string& line);

/// Whether the line tells of a command that was sent, and that no flash answers with an identification: "write: 0x03 0x00".
bool asks_for_no_identification(const std::string& line);
