#pragma once

#include "terminal/command_line.h"

/// `part from-pcf`: the first part of a programmer-file part name, as the library answers, or all of them.
VERB part_from_pcf_verb();
