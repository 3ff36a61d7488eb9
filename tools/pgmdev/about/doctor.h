#pragma once

/// \file
/// Everything that decides what the command answers, and what is wrong with it.

#include "terminal/command_line.h"

VERB doctor_verb();
