#pragma once

/// \file
/// The configuration keys that the library, the host and the command know.

#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"

struct CONFIGURATION_KEY {
    enum KIND { TEXT, SWITCH, NUMBER };

    std::string name;
    KIND kind = TEXT;
    bool environment_only = false;  ///< looked up nowhere else
};

/// All keys, or all but the switches of the flash database's rows.
struct KNOWN_KEYS {
    std::vector<CONFIGURATION_KEY> keys;
    bool row_switches = false;  ///< whether the switches of rows are all known
};

/// Those of rows are among them when they are asked for and the database can be read.
KNOWN_KEYS known_keys(bool with_row_switches);

/// What the switches of rows begin with.
inline constexpr const char* ROW_SWITCH = "PGM_ALLOW_";

/// The key that switches a row of the flash database on; "": it always is.
std::string enabling_switch_of(const PGMDEV_SFL_FLASH_INFO& record);
