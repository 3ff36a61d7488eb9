#pragma once

/// \file
/// The flash database of 1,000 rows, and what its flash devices answer.

#include <array>
#include <vector>

#include "pgmdev_flash_manager.h"

constexpr DWORD RESPONSE_SIZE = 256;
using RESPONSE = std::array<BYTE, RESPONSE_SIZE>;

/// Loaded once.
PGMDEV_FLASH_MANAGER& flash_1000();

/// What records of it answer, in no order.
const std::vector<RESPONSE>& responses();
