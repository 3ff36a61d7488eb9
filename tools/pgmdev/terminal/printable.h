#pragma once

/// \file
/// Text of files and command lines, shown so that it commands nothing: no terminal and no spreadsheet.

#include <string>

#include "printable_text.h"

/// JSON in which characters that command a terminal are escaped as JSON has it: the same values to every reader of JSON.
std::string printable_json(std::string json);

/// A text as a cell of CSV: printable, and with an apostrophe before what a spreadsheet would take for a formula.
std::string printable_cell(const std::string& text);
