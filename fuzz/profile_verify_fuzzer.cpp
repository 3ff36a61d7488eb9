#include "pgmdev_dev_info.h"
#include "verify_fuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    verify_payload("profile", "PGMIO_DM", PGMDEV_DEV_INFO_CSV_MD5, data, size);
    return 0;
}
