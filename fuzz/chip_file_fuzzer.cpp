#include <cstdint>

#include "flash/chip.h"
#include "gen.h"
#include "input.h"
#include "reports.h"
#include "scratch_files.h"
#include "terminal/command.h"
#include "terminal/failure.h"

// Any text as a file of flash chips, as `flash define @chip.txt` takes it.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    gen_set_device_db_fullpath(FUZZ_DEVICES_DIR);
    const std::string file = scratch_files().write("chip.txt", text_of(data, size));
    up_to_a_report([&] {
        try {
            user_flash_text("@" + file);
        } catch (const COMMAND_FAILURE&) {
            // what is wrong with it
        } catch (const USAGE_ERROR&) {
            // a file that it names is none
        }
    });
    return 0;
}
