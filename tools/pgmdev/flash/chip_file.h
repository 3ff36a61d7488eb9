#pragma once

/// \file
/// What a user writes of his own flash: FIELD=VALUE behind the verb, or a file of lines `field = value`.

#include <string>
#include <vector>

#include "terminal/failure.h"

/// One field as it is written.
struct CHIP_ENTRY {
    std::string place;  ///< argument, or file and line, for people
    std::string name;
    std::string value;
    std::size_t line = 0;  ///< of the file; 0: an argument
};

struct CHIP_TEXT {
    std::string directory;  ///< in which files that it names are looked for, with a separator; "": the current one
    std::vector<CHIP_ENTRY> entries;
};

/// "FIELD=VALUE" of the command line as one chip. What is none goes to `faults`.
CHIP_TEXT chip_of_arguments(const std::vector<std::string>& assignments, std::vector<FIELD_FAULT>& faults);

/// The chips of a file, in their order; "-" is standard input. '#' begins a comment. A line [NAME] begins a chip, and so
/// does a field behind a blank line that the chip before it has already. A file that cannot be read throws
/// COMMAND_FAILURE; lines that are none go to `faults`.
std::vector<CHIP_TEXT> chips_of_file(const std::string& file, std::vector<FIELD_FAULT>& faults);

/// Whether an argument names such a file: "@FILE".
bool names_chip_file(const std::string& argument);

/// The argument for a description on standard input, which is read once: nothing else is there then.
inline constexpr const char* CHIP_ON_INPUT = "@-";
inline constexpr const char* INPUT_HAS_A_CHIP = "standard input has the description: name a file for one of both";
