#pragma once

#include <string>

#include "profile/look_up.h"
#include "terminal/command.h"

/// Shows the profile that governs what is named, and which rule found it. "-" stands for one name per line of standard
/// input.
void show_profile(PROFILE_KEY key, const std::string& argument, COMMAND& command);
