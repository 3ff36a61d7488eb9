#pragma once

/// \file
/// The built-in lists of boot flash.

#include <filesystem>

#include "data_set.h"
#include "faults.h"

/// The records of a list, encoded as in a block of the parameter container, without its stamp.
struct BOOT_FLASH_LIST {
    std::size_t count = 0;
    BYTES records;
};

struct BOOT_FLASH {
    BOOT_FLASH_LIST nand;
    BOOT_FLASH_LIST spi;
};

/// Reads and checks the tables of a directory. The lists are usable only when no fault was added.
BOOT_FLASH read_boot_flash(const std::filesystem::path& directory, FAULTS& faults);
