#pragma once

/// \file
/// What may stand behind each noun, and the whole command.

#include "terminal/command_line.h"

NOUN_CONTENTS flash_contents();
NOUN_CONTENTS hps_contents();
NOUN_CONTENTS params_contents();
NOUN_CONTENTS profile_contents();
NOUN_CONTENTS name_contents();
NOUN_CONTENTS part_contents();
NOUN_CONTENTS opn_contents();
NOUN_CONTENTS device_contents();
NOUN_CONTENTS family_contents();
NOUN_CONTENTS enum_contents();

/// All of them, the verbs that need no noun, and the options that go with every verb.
const COMMAND_TABLE& whole_command();
