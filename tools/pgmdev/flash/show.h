#pragma once

#include "terminal/command_line.h"

/// `flash show`: one record, by name or index.
VERB flash_show_verb();
