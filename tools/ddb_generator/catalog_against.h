#pragma once

/// \file
/// Comparing a catalog with an older one. Numbers are stored in programming files and databases, so that one that has
/// been given stands for the same name for ever.

#include "catalog.h"

/// A name that has changed its number, and a number that has changed its name, are faults: of families, devices, parts,
/// also by further names, and ordering codes. What is new is none, nor what is gone.
void compare_numbers(const CATALOG& catalog, const CATALOG& old, FAULTS& faults);
