#pragma once

/// \file
/// Settings that are kept in a configuration file.

#include <string>

#include "files/origins.h"

struct SAVED_SETTING {
    PLACE place;
    std::string passed_over;  ///< a file that should have it and cannot be written, and why; "": there is none
};

/// Writes the setting into the configuration file in use, which is replaced as a whole: the line that sets the key, or a
/// new last one; other lines stay as they are. In use is the file that has the key, or else the nearest one that exists,
/// or else the user's own. The user's own is also taken where the nearest one cannot be written and does not outweigh it.
/// What cannot be done throws COMMAND_FAILURE.
SAVED_SETTING save_setting(const std::string& key, const std::string& value);

/// What outweighs the configuration file for that key: an option or a variable of the environment. "": nothing.
std::string outweighed_by(const std::string& key);
