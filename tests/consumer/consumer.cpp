// Uses the installed library for each kind of data it has: a database, the data compiled in, and an internal error.

#include <cstdio>

#include "msg.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_manager.h"

int main() {
    PGMDEV_FLASH_MANAGER flash(false, 1, false, false);
    BYTE response[256] = {0xEF, 0x40, 0x17};
    if (!flash.flash_id_database_mapping(false, 0, response)) {
        std::puts("unknown flash");
        return 1;
    }
    std::puts(flash.sfl_get_device_name(0).c_str());
    std::puts(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name("AVOR25B256C1", false, true).c_str());
    try {
        flash.sfl_get_device_name(1);
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
        std::printf("refused by %s\n", error.report().module.c_str());
        return 0;
    }
    std::puts("a position outside of the chain was accepted");
    return 1;
}
