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

/// When the program starts: the digest library ends it when it can open no file, or gets no memory, to make itself ready.
[[maybe_unused]] const bool ready_when_started = initialize_digests();

}  // namespace

SHA256_DIGEST sha256(std::string_view text) {
    SHA256_DIGEST digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), text.data(), text.size());
    return digest;
}
