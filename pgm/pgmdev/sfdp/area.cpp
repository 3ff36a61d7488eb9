#include "sfdp/area.h"

std::string sfdp_hex(QWORD value) {
    std::string digits;
    for (QWORD rest = value; rest != 0 || digits.size() < 2; rest >>= 4) {
        digits.insert(digits.begin(), "0123456789ABCDEF"[rest & 0xF]);
    }
    return digits;
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
