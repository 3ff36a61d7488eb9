#pragma once

/// \file
/// The verbs of the noun `flash` that have a file of their own.

#include <string>
#include <vector>

#include "pgmdev_flash_manager.h"
#include "terminal/command.h"

/// Loads the flash database for that many device positions. A file of another kind, which loads nothing, throws
/// std::runtime_error.
PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count);

/// Maps one device position per response and shows what was found. "-" stands for one response per line of standard
/// input.
void identify_flash(const std::vector<std::string>& responses, bool silicon, COMMAND& command);

/// Shows all faults of a source table.
void check_flash_table(const std::string& csv_file, COMMAND& command);

/// Checks and compiles a source table, reads the result back, compares, and only then replaces the output.
void compile_flash_table(const std::string& csv_file, const std::string& pcf_file, COMMAND& command);

/// Holds the dialogue that describes a user's own flash, on standard input and output. In JSON the prompts go to
/// standard error.
void define_flash(COMMAND& command);

/// Shows what an encoded description holds, and why it would be refused. "-" stands for one text per line of standard
/// input.
void decode_flash(const std::string& text, COMMAND& command);

/// Makes the databases that are opened from now on take their record 0 from an encoded description. One that they would
/// pass over throws USAGE_ERROR.
void use_user_flash(const std::string& text);
