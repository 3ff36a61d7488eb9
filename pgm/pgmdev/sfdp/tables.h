#pragma once

/// \file
/// The tables of the standard that are understood, each from its double words. What is odd goes to `warnings`, with how it
/// is taken.

#include <optional>
#include <string>
#include <vector>

#include "sfdp/area.h"

using SFDP_WARNINGS = std::vector<std::string>;

/// As few double words as the first edition of the standard gives the basic table.
inline constexpr std::size_t SFDP_BASIC_WORDS = 9;

/// `table` has at least SFDP_BASIC_WORDS.
PGMDEV_FLASH_SFDP::BASIC_TABLE read_basic_table(const SFDP_TABLE& table, SFDP_WARNINGS& warnings);

/// None: the table is too short.
std::optional<PGMDEV_FLASH_SFDP::FOUR_BYTE_TABLE> read_four_byte_table(const SFDP_TABLE& table,
                                                                       SFDP_WARNINGS& warnings);

struct SFDP_SECTOR_MAPS {
    std::vector<PGMDEV_FLASH_SFDP::MAP_COMMAND> commands;
    std::vector<PGMDEV_FLASH_SFDP::SECTOR_MAP> maps;
};

/// Maps of a flash as the basic table has it. A damaged table gives none, and one that is no map of the flash is left out.
SFDP_SECTOR_MAPS read_sector_maps(const SFDP_TABLE& table, const PGMDEV_FLASH_SFDP::BASIC_TABLE& basic,
                                  SFDP_WARNINGS& warnings);
