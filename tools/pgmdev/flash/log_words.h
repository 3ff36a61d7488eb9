#pragma once

/// \file
/// The words of a line of a log, and the bytes that they spell.

#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

inline constexpr std::size_t MOST_LOG_BYTES = 32;  ///< that are taken from a line

/// Maker, type and capacity: an identification has no fewer bytes.
inline constexpr std::size_t LEAST_IDENTIFICATION = 3;

/// In lower case, as far as it is ASCII.
std::string lower_line(std::string text);

/// What stands between blanks, commas, brackets and the like.
std::vector<std::string> tokens_of(std::string_view text);

/// The bytes that a word spells, in lower case: "ef", "0xef4018", "efh", "0". None when it spells none.
std::vector<BYTE> bytes_of(std::string word);

/// Without what stands before an identification: the command's own byte and, where anything may stand (`raw`), what is
/// read while that is sent.
std::vector<BYTE> without_command(std::vector<BYTE> bytes, bool raw);

/// The line without what it says to have been expected only: "expected EF4018, got C22018" tells C22018. What is "as
/// expected" stays.
std::string without_what_was_expected(const std::string& line);

/// The end of the line, from the word on with which it says that something was expected; "" when it does not, and when it
/// says behind that what was seen.
std::string expectation_in(const std::string& line);
