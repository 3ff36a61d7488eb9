#pragma once

/// \file
/// The part list of the installation: which part is which device, and under which name programmer files know it.

#include <vector>

#include "pgmdev_dev_info_manager.h"

/// Reads "h/pgm_parts.txt" of the installation. The result is null, or the condition that stopped the reading.
const char* read_part_list(std::vector<PGMDEV_PGM_PART>& parts);
