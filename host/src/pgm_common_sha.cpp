#include <gcrypt.h>

#include <memory>

#include "library_path.h"
#include "msg.h"
#include "pgm_common.h"

namespace {

constexpr DWORD SHA256_SIZE = 32;

/// Makes the digest library ready, unless the program has done so for its own purposes. It has no way to release what
/// it then allocates: were it unloaded with this library, each time would leave something.
bool initialize_digests() {
    keep_library_loaded(gcry_check_version(nullptr));  // a text inside of it
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0) {
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);  // digests of names are no secrets
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    }
    return true;
}

/// Where this library is loaded: the digest library ends the process when it can open no file, or gets no memory, to make
/// itself ready, and at that time neither is short. Windows has no descriptors to run out of, and does not allow as much
/// while it loads a library.
#if !defined(_WIN32)
[[maybe_unused]] const bool ready_when_loaded = initialize_digests();
#endif

}  // namespace

BYTE* PGM_COMMON::get_block_sha(const void* data, QWORD length, DWORD digest_size) {
    if (digest_size != SHA256_SIZE) {
        MSG_INTERNAL_ERROR::report("digest_size == 32", "PGM_COMMON", "host/src/pgm_common", __LINE__);
        return nullptr;
    }
    [[maybe_unused]] static const bool ready = initialize_digests();
    auto digest = std::make_unique<BYTE[]>(SHA256_SIZE);
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.get(), data, length);
    return digest.release();
}
