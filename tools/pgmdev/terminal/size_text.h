#pragma once

/// \file
/// Sizes of memories for people.

#include <string>

#include "pgmdev_types.h"

/// A size in the largest of Mbit, Kbit and bit that leaves no fraction: "128 Mbit".
std::string size_text(QWORD bits);
