// Uses the device data with this host.

#include <cstdio>

#include "msg.h"
#include "pgmdev_flash_manager.h"

#if !defined(HOST_IS_OWN)
#error "these are not this host's headers"
#endif

int main() {
    PGMDEV_FLASH_MANAGER flash(false, 1, false, false);
    BYTE response[256] = {0xEF, 0x40, 0x17};
    flash.flash_id_database_mapping(false, 0, response);
    std::puts(flash.sfl_get_device_name(0).c_str());
    try {
        const PGMDEV_FLASH_MANAGER nobody(false, 0, false, false);
        std::puts("the operation went on");
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        std::puts("the operation ended");
    }
    return 0;
}
