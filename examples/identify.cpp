// Which flash answered an identification read, and how long may erasing it take?

#include <cstdio>

#include "msg.h"
#include "pgmdev_flash_manager.h"

int main() {
    try {
        PGMDEV_FLASH_MANAGER flash(false, 1, false, false);  // one device in the chain
        BYTE response[256] = {0xEF, 0x40, 0x17};             // what the flash behind device 0 answered to RDID
        if (!flash.flash_id_database_mapping(false, 0, response)) {
            std::puts("unknown flash");
            return 1;
        }
        std::printf("%s: %u bits, erased within %u s\n", flash.sfl_get_device_name(0).c_str(),
                    static_cast<unsigned>(flash.sfl_get_device_bit_size(0)),
                    static_cast<unsigned>(flash.sfl_get_bulk_erase_time(0)));
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        return 3;  // the host has already said what was wrong
    }
}
