#pragma once

/// \file
/// The ways of `flash identify` that ask the flash itself.

#include <string>
#include <vector>

#include "flash/identification.h"
#include "terminal/command.h"

/// `--sfdp DUMP HEX`: the record and the flash's own words side by side. A flash that no record matches gets its record from
/// them.
void identify_with_sfdp(const FLASH_QUESTION& question, const std::string& dump, COMMAND& command);

/// `--system [DIR]`: every serial flash that the kernel of the system found. `directories`: none, or the one.
void identify_system(const std::vector<std::string>& directories, COMMAND& command);
