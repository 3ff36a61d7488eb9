#pragma once

#include <string>

#include "pgmdev_flash_manager.h"

/// Loads the flash database for that many device positions. One that cannot be read throws COMMAND_FAILURE.
PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count);

/// The file that goes with the database: pgm_flash.NAME, in its directory.
std::string beside_flash_database(const std::string& name);
