#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "pgmdev_flash_table.h"

// Any text as a flash source table: faults are collected, nothing is reported.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FIO_REPLACEMENT scratch((std::filesystem::temp_directory_path() / "pgmdev-fuzz.csv").string());
    if (scratch.write({data, size})) {
        const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(scratch.temporary());
        for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
            static_cast<void>(PGMDEV_FLASH_TABLE::describe(fault, "table"));
        }
    }
    return 0;
}
