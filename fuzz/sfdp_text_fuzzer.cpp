#include <cstdint>

#include "flash/sfdp_dump.h"
#include "input.h"
#include "scratch_files.h"
#include "terminal/command.h"
#include "terminal/failure.h"

// Any text as the dump of what a flash says of itself, as programs print it.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string file = scratch_files().write("dump", text_of(data, size));
    try {
        sfdp_of(file);
    } catch (const COMMAND_FAILURE&) {
        // it is refused
    } catch (const USAGE_ERROR&) {
        // these are no bytes
    }
    return 0;
}
