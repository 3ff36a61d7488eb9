#include "sha256.h"

#include <gcrypt.h>

namespace {

/// Makes the digest library ready, unless the program has done so for its own purposes.
bool initialize_digests() {
    gcry_check_version(nullptr);
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0) {
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);  // digests of names are no secrets
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    }
    return true;
}

}  // namespace

SHA256_DIGEST sha256(std::string_view text) {
    [[maybe_unused]] static const bool ready = initialize_digests();
    SHA256_DIGEST digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), text.data(), text.size());
    return digest;
}
