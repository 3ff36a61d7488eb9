#pragma once

#include "terminal/command_line.h"

/// `page`: all that the databases hold as a page for browsers.
VERB page_verb();
