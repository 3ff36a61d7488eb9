#include <cstddef>
#include <cstdint>

#include "pgmdev_flash_sfdp.h"

// Any bytes as what a flash says of itself (samples: tests/data/sfdp), and the record that follows.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PGMDEV_FLASH_SFDP sfdp = PGMDEV_FLASH_SFDP::from_bytes({data, size});
    if (sfdp.refusal()) {
        static_cast<void>(PGMDEV_FLASH_SFDP::describe(*sfdp.refusal()));
    }
    static_cast<void>(sfdp.record({data, size}));
    return 0;
}
