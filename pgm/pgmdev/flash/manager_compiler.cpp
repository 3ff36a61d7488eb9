#include <iostream>
#include <string>
#include <type_traits>

#include "flash/source.h"
#include "pgmdev_flash_manager.h"
#include "printing.h"
#include "report.h"

// Compiling the source table, and the debug listing.

DWORD PGMDEV_FLASH_MANAGER::check_flash_file(FIO_PATH csv_file, DWORD& device_count) {
    return check_source_file<FLASH_SOURCE>(csv_file, device_count);
}

void PGMDEV_FLASH_MANAGER::generate_flash_database(FIO_PATH csv_file, FIO_PATH pcf_file) {
    write_packed_image(pcf_file, compile_source_file<FLASH_SOURCE>(csv_file, 0), FLASH_FORMAT);
}

void PGMDEV_FLASH_MANAGER::dump_to_database(BYTE** buffer, DWORD& index, std::vector<std::string> cells) {
    PACKED_WRITER writer(*buffer, PACKED_TRUSTED_SIZE, index, FLASH_FORMAT);
    FLASH_CODEC::write_cells(writer, cells);
}

void PGMDEV_FLASH_MANAGER::print_database(DWORD index) {
    PGMDEV_REQUIRE(m_flash_database != nullptr, "m_flash_database != NULL", FLASH_MANAGER_FILE);
    std::string line = "Flash Manager Debug " + std::to_string(index) + "\n\t";
    const char* separator = "";
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        line += separator;
        separator = " ";
        std::visit(
            [&](auto field) {
                const auto& value = m_flash_database[index].*field;
                if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, std::string>) {
                    line += value;
                } else {
                    line += std::to_string(static_cast<DWORD>(value));
                }
            },
            member.field);
    }
    print(std::cout, {line, "\n"});
}
