#pragma once

/// \file
/// The names of the programmer's enumerations, by value. The value 0 has the empty name: it means none.

#include <span>
#include <string_view>

#include "pgmdev_mgr.h"

/// The names of `type`, which must be one of the four.
std::span<const std::string_view> enum_names(PGM_ENUM_TYPE type);
