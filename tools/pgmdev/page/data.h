#pragma once

/// \file
/// What the page knows: the answers of other verbs, from the same code.

#include "terminal/json.h"

/// The records of serial flash and what is known besides: members with units, rows, evidence, further names, notes.
JSON page_flash_data();

/// Boot flash, programming profiles, and the versions of all that it was made from.
JSON page_tables_data();

/// Every name of the device catalog in all its spellings.
JSON page_names_data();
