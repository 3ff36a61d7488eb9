#pragma once

/// \file
/// Text of files and command lines, shown so that it commands nothing: no terminal and no spreadsheet.

#include <string>
#include <string_view>

/// The text with its control characters, those that change the direction of writing, and what is no UTF-8 shown as \xNN:
/// what comes from a file must not command the terminal.
std::string printable(const std::string& text);

/// JSON in which such characters are escaped as JSON has it: the same values to every reader of JSON.
std::string printable_json(std::string json);

/// A text as a cell of CSV: printable, and with an apostrophe before what a spreadsheet would take for a formula.
std::string printable_cell(const std::string& text);
