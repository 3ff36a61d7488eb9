#pragma once

#include <string>

#include "host_types.h"

/// Nothing: this tool has no version.
std::string ver_get_version();
DWORD ver_get_current_version_index_number();
