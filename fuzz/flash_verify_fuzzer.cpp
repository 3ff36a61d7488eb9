#include "pgmdev_sfl_flash_info.h"
#include "verify_fuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    verify_payload("flash", "PGMIO_FM", PGMDEV_FLASH_INFO_CSV_MD5, data, size);
    return 0;
}
