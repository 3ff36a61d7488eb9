#pragma once

#include <string>

using ORVANE_BOOL = bool;

/// Only "yes" is on.
ORVANE_BOOL cfg_is_on(const std::string& key, bool default_value);
std::string cfg_get_value(const std::string& key);
