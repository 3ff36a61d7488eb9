#include "database_fuzzer.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_sfl_flash_info.h"

namespace {

class FLASH_LOADER : public PGMDEV_FLASH_MANAGER {
public:
    FLASH_LOADER() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

    void load(const FIO_PATH& file) { initialize_flash_database(file); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    load_payload<FLASH_LOADER>("PGMIO_FM", PGMDEV_FLASH_INFO_CSV_MD5, data, size);
    return 0;
}
