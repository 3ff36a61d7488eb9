#pragma once

/// \file
/// The dump that a user names: a file, hexadecimal digits, or standard input.

#include <span>
#include <string>
#include <vector>

#include "pgmdev_flash_sfdp.h"
#include "pgmdev_types.h"

/// The bytes that `argument` stands for. Files and standard input hold bytes, or a text of hexadecimal digits as dump
/// programs print them, with offsets and characters. What is neither a file nor such digits throws USAGE_ERROR, a file that
/// cannot be read COMMAND_FAILURE.
std::vector<BYTE> sfdp_bytes(const std::string& argument);

/// The dump, read. One that is refused throws COMMAND_FAILURE, which names byte, field and what was expected; `path` is
/// where it comes from.
PGMDEV_FLASH_SFDP read_sfdp(std::span<const BYTE> bytes, const std::string& path);

/// Both.
PGMDEV_FLASH_SFDP sfdp_of(const std::string& argument);
