#pragma once

/// \file
/// The verb `schema`: what each verb answers in JSON, as JSON Schema.

#include "terminal/command_line.h"

VERB schema_verb();
