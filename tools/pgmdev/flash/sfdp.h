#pragma once

#include "terminal/command_line.h"

/// `flash sfdp`: what a flash says of itself, and the record that follows.
VERB flash_sfdp_verb();
