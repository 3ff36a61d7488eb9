#pragma once

#include "terminal/command_line.h"

/// `profile tables`: the index tables of the database, which tell the record that governs each family, device and part.
VERB profile_tables_verb();
