#pragma once

/// \file
/// What a person who typed an unknown name may have meant: as a hint behind what is wrong.

#include <string>
#include <vector>

#include "near_names.h"

/// nearest_hint, or where there is none, and only few values at all, "; there are A, B".
std::string nearest_or_all(const std::string& value, const std::vector<std::string>& known);

/// did_you_mean of the nearest values, or else of those that begin with it or that it begins with.
std::string nearest_hint(const std::string& value, const std::vector<std::string>& known);

/// The same by itself, without "; ".
std::string nearest_advice(const std::string& value, const std::vector<std::string>& known);

/// "; did you mean A, B", or "" when there are no names, and when the user wants no hints.
std::string did_you_mean(const std::vector<std::string>& names);
