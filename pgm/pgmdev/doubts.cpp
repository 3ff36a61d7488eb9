#include "doubts.h"

#include <memory>

#include "file_info.h"
#include "fio.h"
#include "msg.h"
#include "pgm_common.h"
#include "report.h"

namespace {

constexpr int DOUBT_DEBUG_LEVEL = 1;

/// Asks the host, if it has that service, which hosts need not have: a template, so that its name may mean nothing.
template <class LEVEL>
bool is_heard(LEVEL level) {
    if constexpr (requires { msg_is_debug_on(PGMDEV_MODULE, level); }) {
        return msg_is_debug_on(PGMDEV_MODULE, level);
    } else {
        return false;
    }
}

}  // namespace

std::string digest_text(std::span<const BYTE> bytes) {
    constexpr DWORD DIGEST_SIZE = 32;
    constexpr std::string_view DIGITS = "0123456789abcdef";
    const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes.data(), bytes.size(), DIGEST_SIZE));
    std::string text;
    for (DWORD i = 0; i < DIGEST_SIZE; ++i) {
        text += DIGITS[digest[i] >> 4U];
        text += DIGITS[digest[i] & 0xFU];
    }
    return text;
}

void tell_doubts(const std::string& path, std::string_view digest_key) {
    if (!is_heard(DOUBT_DEBUG_LEVEL)) {
        return;
    }
    const INFO_STATE state = read_with_info(fio_get_unc_full_path(path), fio_get_unc_full_path(info_file_of(path)))
                                 .state(digest_key, digest_text);
    if (is_doubtful(state)) {
        msg_local_vdebug(PGMDEV_MODULE, DOUBT_DEBUG_LEVEL, "%s is doubtful: %s.info %s", path.c_str(), path.c_str(),
                         state == INFO_STATE::DIFFERS ? "tells of another file" : "is damaged, or cannot be read");
    }
}
