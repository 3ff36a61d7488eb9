#pragma once

/// \file
/// Further names of flash chips: those that share the record of a row, from the list beside the database.

#include <optional>
#include <string>
#include <vector>

struct FLASH_ALIAS {
    std::string name;
    std::string device_name;  ///< of the row that answers for it
    std::string reason;
};

/// All of them, read once; none where the database has no such list.
const std::vector<FLASH_ALIAS>& flash_aliases();

/// The one of this name, in any case.
std::optional<FLASH_ALIAS> find_flash_alias(const std::string& name);
