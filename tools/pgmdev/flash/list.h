#pragma once

#include "terminal/command_line.h"

/// `flash list`: the records of the database, or those of them that are wanted.
VERB flash_list_verb();
