#pragma once

/// \file
/// The built-in HPS kinds.

#include <array>

#include "pgmdev_hps_mgr.h"

extern const std::array<PGMDEV_HPS_STRUCTURE, 2> HPS_KINDS;
