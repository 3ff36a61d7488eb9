#include "pgmdev_dev_info_table.h"
#include "table_fuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    examine_table<PGMDEV_DEV_INFO_TABLE>(data, size);
    return 0;
}
