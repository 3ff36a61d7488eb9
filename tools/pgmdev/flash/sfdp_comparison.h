#pragma once

/// \file
/// A record beside what the flash says of itself.

#include <string>
#include <vector>

#include "pgmdev_flash_sfdp.h"
#include "pgmdev_sfl_flash_info.h"
#include "terminal/json.h"

/// One member, as both tell it.
struct COMPARED_MEMBER {
    std::string member;
    std::string unit;    ///< of `record`; "": none
    std::string record;  ///< as a cell of the source table
    std::string chip;    ///< with units
    bool agrees = true;
};

/// The members of which the flash says something. Longest times of SFDP are one coarse factor above the typical ones: a
/// time of the record disagrees when it is below the typical one, and one that is 0, not known, is taken from the flash.
std::vector<COMPARED_MEMBER> compare_with_sfdp(const PGMDEV_SFL_FLASH_INFO& record, const PGMDEV_FLASH_SFDP& sfdp);

JSON comparison_json(const std::vector<COMPARED_MEMBER>& members);
JSON comparison_schema();
void print_comparison(const std::vector<COMPARED_MEMBER>& members);
