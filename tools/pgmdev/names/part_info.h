#pragma once

#include "terminal/command_line.h"

/// `part info`: everything about a part, or about whatever else a name stands for.
VERB part_info_verb();
