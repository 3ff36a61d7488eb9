#pragma once

/// \file
/// The environment as a whole, in UTF-8 on every system.

#include <map>
#include <string>

/// All variables by name. On Windows, where upper and lower case do not count in names, these are in upper case, as our keys
/// are.
std::map<std::string, std::string> environment_variables();

/// A variable; "" when it is not set.
std::string environment_text(const std::string& name);
