#include "flash/database.h"

#include "files/database.h"

PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count) {
    return read_database(FLASH_DATABASE_KIND, flash_database_place(),
                         [device_count] { return PGMDEV_FLASH_MANAGER(false, device_count, false, false); });
}

std::string beside_flash_database(const std::string& name) {
    const std::string database = flash_database_place().path;
    return database.substr(0, database.rfind('.') + 1) + name;
}
