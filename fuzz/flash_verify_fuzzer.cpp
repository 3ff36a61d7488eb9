#include "packed/format.h"
#include "pgmdev_flash_manager.h"
#include "verify_fuzzer.h"

namespace {

class PACKER : public PGMDEV_FLASH_MANAGER {
public:
    PACKER() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

    using PGMDEV_FLASH_MANAGER::compress_data;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    verify_payload<PACKER>("flash", "PGMIO_FM", PGMDEV_FLASH_INFO_CSV_MD5, data, size);
    return 0;
}
