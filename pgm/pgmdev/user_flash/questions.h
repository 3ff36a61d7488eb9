#pragma once

/// \file
/// The questions of the member table: what an answer stands for, and what would be accepted.

#include <optional>
#include <string>
#include <string_view>

#include "pgmdev_sfl_flash_info.h"

/// The value that an answer, in upper case, to a question that is asked stands for; nothing when it is not accepted.
std::optional<std::string> user_flash_value(const PGMDEV_SFL_FLASH_QUESTION& question, const std::string& answer);

/// Whether the answer is one that stands in a description as it is, and would tear it apart.
bool tears_user_flash(const PGMDEV_SFL_FLASH_QUESTION& question, std::string_view answer);

/// What is accepted, for people.
std::string accepted_user_flash_answers(const PGMDEV_SFL_FLASH_QUESTION& question);
