#pragma once

/// \file
/// A flash of the user's own: from what he writes to the encoded text.

#include <string>
#include <vector>

#include "flash/chip_file.h"
#include "pgmdev_sfl_flash_info.h"

/// A member that nobody has told, and why it is what it is.
struct ASSUMED_MEMBER {
    std::string member;
    std::string why;
};

struct USER_CHIP {
    PGMDEV_SFL_FLASH_INFO record;
    std::vector<ASSUMED_MEMBER> assumed;
};

/// Fields that are no members of the record.
inline constexpr const char* LIKE_FIELD = "like";  ///< a flash of the database, or another name of one
inline constexpr const char* SFDP_FIELD = "sfdp";  ///< what it says of itself
inline constexpr const char* ID_FIELD = "id";      ///< what it answers to the identification

/// The described flash devices. All that is wrong with them, and with what `faults` has already, is thrown as one
/// COMMAND_FAILURE.
std::vector<USER_CHIP> user_chips(const std::vector<CHIP_TEXT>& texts, std::vector<FIELD_FAULT> faults);

/// The text of "@FILE", or the argument itself.
std::string user_flash_text(const std::string& argument);

/// The text of the described flash devices.
std::string encoded_chips(const std::vector<USER_CHIP>& chips);
