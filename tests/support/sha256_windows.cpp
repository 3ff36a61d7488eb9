#include <gcrypt.h>

#include "sha256.h"

namespace {

bool make_ready() {
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    return true;
}

}  // namespace

std::array<unsigned char, 32> independent_sha256(const std::string& data) {
    [[maybe_unused]] static const bool ready = make_ready();
    std::array<unsigned char, 32> digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), data.data(), data.size());
    return digest;
}
