#pragma once

/// \file
/// The terminal that standard output goes to, if it goes to one.

#include <cstddef>
#include <optional>
#include <string>

/// How many characters fit into a line of tables; nothing when no terminal reads them, or when all columns are wanted.
std::optional<std::size_t> table_width();

/// From now on, tables show all columns, or those that fit.
void show_all_columns(bool all = true);

/// The text in bold, where a terminal reads it and the user has nothing against colours (NO_COLOR).
std::string in_bold(const std::string& text);

/// Whether standard output is a terminal that understands escape sequences.
bool output_is_terminal();

/// What the number of a failed write to standard output means, for people.
std::string output_fault(int error_number);

/// Whether standard input is a terminal: a person answers.
bool input_is_terminal();

/// The columns of that terminal; 0 when the system does not tell.
std::size_t terminal_columns();
