#pragma once

/// \file
/// The value of a member as people write it, with units, held against the question of the member table.

#include <optional>
#include <string>

#include "pgmdev_sfl_flash_info.h"
#include "terminal/failure.h"

/// Takes the member from `text`: what is wrong with it, or nothing. Numbers are in the base and unit in which the command
/// shows them, "0x" and units may stand with them.
std::optional<FIELD_FAULT> take_chip_value(PGMDEV_SFL_FLASH_INFO& record, const PGMDEV_SFL_FLASH_MEMBER& member,
                                           const std::string& text);

/// What is accepted for the member, for people.
std::string accepted_chip_values(const PGMDEV_SFL_FLASH_MEMBER& member);

/// Raises a time that stands below what can be described to the least that can be; whether it did.
bool raise_chip_time(PGMDEV_SFL_FLASH_INFO& record, const PGMDEV_SFL_FLASH_MEMBER& member);

/// The member of that name; null: there is none.
const PGMDEV_SFL_FLASH_MEMBER* find_flash_member(const std::string& name);
