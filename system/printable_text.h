#pragma once

/// \file
/// Text of files and command lines, shown so that it commands no terminal.

#include <string>
#include <string_view>

/// The text with its control characters, those that change the direction of writing, and what is no UTF-8 shown as \xNN:
/// what comes from a file must not command the terminal.
std::string printable(std::string_view text);

/// The same of several lines: line feeds and tabs stay.
std::string printable_lines(std::string_view text);

/// Whether the character does something to a terminal instead of being shown: the control characters, and those that
/// change the direction of what stands around them.
bool commands_terminal(std::string_view character);

/// The next character, from `place` on, which moves behind it. Of what is no UTF-8, `valid` being false, the beginning of a
/// character or one byte: what Unicode advises to replace at once.
std::string_view next_character(std::string_view text, std::size_t& place, bool& valid);
