#pragma once

/// \file
/// The lists of parts and ordering codes, as verbs for their nouns.

#include "terminal/command_line.h"

VERB part_list_verb();
VERB opn_list_verb();
