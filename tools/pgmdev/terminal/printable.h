#pragma once

/// \file
/// Text of files and command lines, shown so that it commands nothing: no terminal and no spreadsheet.

#include <string>
#include <string_view>

#include "printable_text.h"

/// JSON in which characters that command a terminal are escaped as JSON has it, in small letters: the same values to every
/// reader of JSON. What is no UTF-8 becomes the replacement character, U+FFFD.
std::string printable_json(std::string_view json);

/// A text as a cell of CSV: printable, and with an apostrophe before what a spreadsheet would take for a formula.
std::string printable_cell(const std::string& text);
