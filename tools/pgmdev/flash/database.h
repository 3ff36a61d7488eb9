#pragma once

#include "pgmdev_flash_manager.h"

/// Loads the flash database for that many device positions. A file of another kind, which loads nothing, throws
/// std::runtime_error.
PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count);
