#pragma once

/// \file
/// Which names of parts and devices may have been meant (names_of_kinds.h), with what a run of the command keeps of the names
/// for the next question.

#include <string>
#include <vector>

#include "names_of_kinds.h"

NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds);
std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds);

std::vector<std::string> nearest_parts(const std::string& name);
std::vector<std::string> nearest_devices(const std::string& name);
std::vector<std::string> nearest_families(const std::string& name);
