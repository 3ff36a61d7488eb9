#pragma once

/// \file
/// The verbs of the noun `flash` that have a file of their own.

#include <string>

#include "terminal/command_line.h"

/// Maps one device position per response and shows what was found, how sure it is, and what a mistake would do. "-"
/// stands for one response per line of standard input.
void identify_flash(const ARGUMENTS& given, COMMAND& command);
JSON identify_schema();

/// Describes a user's own flash: from fields and a file, or, without any, in the dialogue, on standard input and output.
/// In JSON the prompts go to standard error.
void define_flash(const ARGUMENTS& given, COMMAND& command);
JSON define_schema();

/// Signs a description for this build: that of a file, of a text, or of the configuration.
void reseal_flash(const ARGUMENTS& given, COMMAND& command);

/// Shows what an encoded description holds, and why it would be refused. "-" stands for one text per line of standard
/// input.
void decode_flash(const ARGUMENTS& given, COMMAND& command);
JSON decode_schema();

/// Makes the databases that are opened from now on take their record 0 from an encoded description, or from the
/// file of "@FILE". One that they would pass over throws USAGE_ERROR, a file with faults COMMAND_FAILURE.
void use_user_flash(const std::string& argument);
