#include "flash/database.h"

#include <stdexcept>

PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count) {
    PGMDEV_FLASH_MANAGER manager(false, device_count, false, false);
    if (manager.get_flash_database() == nullptr) {
        throw std::runtime_error("the flash database was not loaded");
    }
    return manager;
}
