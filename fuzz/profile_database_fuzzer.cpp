#include "database_fuzzer.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_dev_info_manager.h"

namespace {

class PROFILE_LOADER : public PGMDEV_DEV_INFO_MANAGER {
public:
    PROFILE_LOADER() : PGMDEV_DEV_INFO_MANAGER(true) {}

    void load(const FIO_PATH& file) { initialize_device_database(file); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    load_payload<PROFILE_LOADER>("PGMIO_DM", PGMDEV_DEV_INFO_CSV_MD5, data, size);
    return 0;
}
