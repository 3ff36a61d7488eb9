#pragma once

/// \file
/// The dialogue in which a user describes flash devices. Answers are lines; the end of input is an empty answer.

#include <iosfwd>
#include <string>

/// Asks for one flash. On success `body` is its description.
bool ask_user_flash(std::istream& answers, std::ostream& prompts, std::string& body);

/// Asks for up to three flash devices; the encoded text, or "" when the dialogue ended without one.
std::string define_user_flash(std::istream& answers, std::ostream& prompts);
