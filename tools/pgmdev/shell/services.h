#pragma once

/// \file
/// What shells and builds ask of the command, not people: help does not list it.

#include <string>
#include <vector>

/// Carries it out when that is what the arguments ask for.
bool run_service(const std::vector<std::string>& arguments);
