#include "pgmdev_version.h"

#include "names/container.h"
#include "packed/format.h"

// The build defines PGMDEV_VERSION_TEXT.

namespace {

/// The check sum at the end of a data set, least significant byte first, in hexadecimal.
std::string check_sum(const COMPILED_DATA_SET& set) {
    constexpr const char* DIGITS = "0123456789abcdef";
    const DATA_CONTAINER container = open_container(set);
    std::string text;
    for (DWORD i = container.size; i-- > container.body_end();) {
        text += DIGITS[container.data[i] >> 4];
        text += DIGITS[container.data[i] & 0xF];
    }
    return text;
}

}  // namespace

std::string PGMDEV_VERSION::library() {
    return PGMDEV_VERSION_TEXT;
}

std::string PGMDEV_VERSION::catalog() {
    return check_sum(grammar_data_set()) + "-" + check_sum(opn_data_set());
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
