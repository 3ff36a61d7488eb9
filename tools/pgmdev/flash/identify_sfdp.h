#pragma once

/// \file
/// The ways of `flash identify` that ask the flash itself.

#include "terminal/command_line.h"

/// `--sfdp DUMP HEX`: the record and the flash's own words side by side. A flash that no record matches gets its record from
/// them.
void identify_with_sfdp(const ARGUMENTS& given, COMMAND& command);

/// `--system [DIR]`: every serial flash that the kernel of the system found.
void identify_system(const ARGUMENTS& given, COMMAND& command);
