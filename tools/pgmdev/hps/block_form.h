#pragma once

/// \file
/// The form of the blocks that hold the user's boot flash lists.

#include <span>
#include <string>
#include <string_view>

#include "pgmdev_flash_ini.h"

/// The stamp that the block begins with; "" for a block of free form.
std::string_view block_stamp(PGMDEV_FLASH_INI_ENUM which);

/// What keeps the bytes from being such a block: a clause for people, "" when nothing does.
std::string block_fault(PGMDEV_FLASH_INI_ENUM which, std::span<const BYTE> bytes);

/// Says on standard error when the user's list is missing or shorter because its block is none, is not whole, or could not
/// be read when the list was made.
void warn_of_list(PGMDEV_FLASH_INI_ENUM which, bool is_empty);
