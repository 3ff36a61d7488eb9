#pragma once

/// \file
/// A block as a run of typed values: shown as text, and made of texts.

#include "terminal/command_line.h"

VERB show_values_verb(const ARGUMENT& block);
VERB set_values_verb(const ARGUMENT& block);
