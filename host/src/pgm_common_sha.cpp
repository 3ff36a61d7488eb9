#include <algorithm>
#include <memory>

#include "msg.h"
#include "pgm_common.h"
#include "sha256.h"

BYTE* PGM_COMMON::get_block_sha(const void* data, QWORD length, DWORD digest_size) {
    if (digest_size != std::tuple_size_v<SHA256_DIGEST>) {
        MSG_INTERNAL_ERROR::report("digest_size == 32", "PGM_COMMON", "host/src/pgm_common", __LINE__);
        return nullptr;
    }
    auto result = std::make_unique<BYTE[]>(digest_size);
    const SHA256_DIGEST digest = sha256({static_cast<const char*>(data), length});
    std::copy(digest.begin(), digest.end(), result.get());
    return result.release();
}
