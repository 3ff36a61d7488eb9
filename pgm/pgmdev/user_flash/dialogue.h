#pragma once

/// \file
/// The dialogue in which a user describes flash devices. Answers are lines; the end of input is an empty answer.

#include <functional>
#include <iosfwd>
#include <string>

#include "pgmdev_user_flash.h"

/// Hears of every refused answer, and says whether to put the question again.
using USER_FLASH_ASK_AGAIN = std::function<bool(const PGMDEV_USER_FLASH::REFUSED_ANSWER&)>;

/// Asks for one flash. On success `body` is its description.
bool ask_user_flash(std::istream& answers, std::ostream& prompts, std::string& body);

/// Asks for up to three flash devices; the encoded text, or "" when the dialogue ended without one. With `ask_again`,
/// answers that would tear a description apart are refused, too, a byte-order mark before the first one is passed over,
/// and lines may end in CR LF.
std::string define_user_flash(std::istream& answers, std::ostream& prompts, const USER_FLASH_ASK_AGAIN& ask_again = {});
