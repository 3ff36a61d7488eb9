#pragma once

/// \file
/// What is running: the versions of the command and the library, the catalog, and the formats.

#include "terminal/command_line.h"
#include "terminal/json.h"

GLOBAL_OPTION version_option();

/// {"command","library","catalog","formats":{...}}
JSON version_json();
JSON version_schema();

void print_version();
