#pragma once

/// \file
/// The environment as a whole, in UTF-8 on every system.

#include <map>
#include <string>

/// All variables by name.
std::map<std::string, std::string> environment_variables();

/// A variable; "" when it is not set.
std::string environment_text(const std::string& name);
