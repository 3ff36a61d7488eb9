#pragma once

/// \file
/// The nouns of the command, each with its verbs, and the whole command.

#include "terminal/command_line.h"

NOUN flash_noun();
NOUN hps_noun();
NOUN params_noun();
NOUN profile_noun();
NOUN name_noun();
NOUN part_noun();
NOUN opn_noun();
NOUN enum_noun();

/// All of them, the verbs that need no noun, and the options that go with every verb.
const COMMAND_TABLE& whole_command();
