#pragma once

/// \file
/// Which of the records that a response admits are those of a flash that describes itself.

#include <string>
#include <vector>

#include "flash/identification.h"
#include "pgmdev_flash_sfdp.h"

struct RANKED_RECORD {
    DWORD index = 0;
    std::vector<std::string> contradicting;  ///< members that say another geometry than the flash
};

/// All that it may be, each device once: first those that say what the flash says, then the others.
std::vector<RANKED_RECORD> rank_by_sfdp(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier,
                                        const PGMDEV_FLASH_SFDP& sfdp);

/// An array: "index", names, "contradicting".
JSON ranking_json(const std::vector<RANKED_RECORD>& ranking, const FLASH_IDENTIFIER& identifier);
JSON ranking_schema();

/// Whether the record that it is mapped to is not that of the flash.
bool contradicts_mapping(const FLASH_IDENTIFICATION& device, const std::vector<RANKED_RECORD>& ranking);

/// A sentence, where there is something to choose.
void print_ranking(DWORD position, const FLASH_IDENTIFICATION& device, const std::vector<RANKED_RECORD>& ranking,
                   const FLASH_IDENTIFIER& identifier);
