#pragma once

#include <string>

#include "pgmdev_types.h"

/// The number of bits that a size spells: "128 Mbit", in any case and without the blank if need be; Mbit when it has no
/// unit. What is no size throws USAGE_ERROR.
QWORD parse_size(const std::string& text);
