#include "pgmdev_version.h"

#include "names/container.h"
#include "packed/format.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_sfl_flash_info.h"

// The build defines PGMDEV_VERSION_TEXT.

namespace {

std::string hexadecimal(DWORD number) {
    constexpr const char* DIGITS = "0123456789abcdef";
    constexpr int DIGIT_BITS = 4;
    std::string text;
    for (int shift = 32 - DIGIT_BITS; shift >= 0; shift -= DIGIT_BITS) {
        text += DIGITS[number >> shift & 0xF];
    }
    return text;
}

}  // namespace

std::string PGMDEV_VERSION::library() {
    return PGMDEV_VERSION_TEXT;
}

std::string PGMDEV_VERSION::catalog() {
    return hexadecimal(crc_of(grammar_data_set())) + "-" + hexadecimal(crc_of(opn_data_set()));
}

std::string PGMDEV_VERSION::flash_stamp() {
    return std::string(PGMDEV_FLASH_INFO_CSV_MD5);
}

std::string PGMDEV_VERSION::dev_info_stamp() {
    return std::string(PGMDEV_DEV_INFO_CSV_MD5);
}

DWORD PGMDEV_VERSION::body_version() {
    return PACKED_BODY_VERSION;
}
