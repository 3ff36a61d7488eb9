#include "flash/log.h"

#include <sstream>

#include "input.h"

// Any text as what another program printed of a flash.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream log(text_of(data, size));
    for (const LOG_FINDING& finding : find_in_log(log).value_or(std::vector<LOG_FINDING>())) {
        static_cast<void>(finding.response());
    }
    return 0;
}
