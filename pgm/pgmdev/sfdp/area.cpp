#include "sfdp/area.h"

#include "pgmdev_cell.h"

std::string sfdp_hex(DWORD value) {
    return pgmdev_cell(value, PGMDEV_NUMBER_BASE::BASE_16).substr(2);
}

std::string SFDP_TABLE::name() const {
    return PGMDEV_FLASH_SFDP::table_name(header.id) + " table at " + sfdp_hex(header.offset) + "h";
}

DWORD sfdp_word(std::span<const BYTE> bytes, std::size_t offset) {
    DWORD word = 0;
    for (std::size_t i = 4; i-- > 0;) {
        word = word << 8 | bytes[offset + i];
    }
    return word;
}
