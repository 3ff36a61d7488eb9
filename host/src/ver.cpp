#include "ver.h"

#include "unloading.h"

// The build defines PGMHOST_VERSION and PGMHOST_BUILD_NUMBER.

namespace {

constexpr unsigned BUILD_NUMBER_SHIFT = 8;

static_assert(PGMHOST_BUILD_NUMBER >= 0 && PGMHOST_BUILD_NUMBER <= 0xFFFF);

struct VERSION {
    std::string text = PGMHOST_VERSION;
    DWORD index_number = DWORD{PGMHOST_BUILD_NUMBER} << BUILD_NUMBER_SHIFT;
};

VERSION& version() {
    return lasting<VERSION>();
}

}  // namespace

std::string ver_get_version() {
    return version().text;
}

DWORD ver_get_current_version_index_number() {
    return version().index_number;
}

void ver_set_version(const std::string& text, DWORD index_number) {
    version() = text.empty() ? VERSION() : VERSION{text, index_number};
}
