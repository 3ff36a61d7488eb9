#pragma once

/// \file
/// Sentences for people: on a terminal they are broken at blanks where its lines end.

#include <cstddef>
#include <string>
#include <string_view>

/// Prints "label     text" with its control characters shown as \xNN. The text begins in that column (from 0), and so do
/// the lines that it goes on in.
void print_labelled(std::string_view label, std::size_t column, const std::string& text);

/// Prints a line; those that it goes on in are indented.
void print_sentence(const std::string& text);
