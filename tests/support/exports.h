#pragma once

/// \file
/// What a library exports.

#include <string>
#include <vector>

/// The names that the library defines for others, as they are written in C++.
std::vector<std::string> exported_names(const std::string& library);
