#pragma once

/// \file
/// The nouns of the command, each with its verbs.

#include "terminal/command_line.h"

NOUN flash_noun();
NOUN hps_noun();
NOUN params_noun();
NOUN profile_noun();
NOUN name_noun();
NOUN part_noun();
NOUN opn_noun();
NOUN device_noun();
NOUN family_noun();
NOUN enum_noun();
