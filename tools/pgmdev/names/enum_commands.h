#pragma once

/// \file
/// The programmer's enumerations as they are called on the command line.

#include <string>
#include <vector>

std::vector<std::string> enumeration_names();

/// The names of the values of the enumeration called so; none when there is no such enumeration.
std::vector<std::string> enumerator_names(const std::string& enumeration);
