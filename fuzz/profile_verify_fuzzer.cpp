#include "packed/format.h"
#include "pgmdev_dev_info_manager.h"
#include "verify_fuzzer.h"

namespace {

class PACKER : public PGMDEV_DEV_INFO_MANAGER {
public:
    PACKER() : PGMDEV_DEV_INFO_MANAGER(true) {}

    using PGMDEV_DEV_INFO_MANAGER::compress_data;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    verify_payload<PACKER>("profile", "PGMIO_DM", PGMDEV_DEV_INFO_CSV_MD5, data, size);
    return 0;
}
