#pragma once

/// \file
/// Case conversion of strings in place. Only ASCII letters have a case; all other bytes stay as they are.

#include <string>

#include "host_export.h"

HOST_EXPORT void stl_toupper(std::string& text);
HOST_EXPORT void stl_tolower(std::string& text);
