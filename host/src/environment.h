#pragma once

/// \file
/// Environment variables, in UTF-8 on every system.

#include <optional>
#include <string>

/// The variable's value; nothing when it is not set.
std::optional<std::string> environment_value(const std::string& name);
