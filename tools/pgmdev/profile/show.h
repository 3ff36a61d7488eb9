#pragma once

#include "terminal/command_line.h"

/// `profile show`: the profile that governs what is named, and which rule found it.
VERB profile_show_verb();
