#include "sha256.h"

#include <nettle/sha2.h>

// Nettle takes no memory, opens no file and need not be made ready: there is nothing that could fail, or end the process.

static_assert(std::tuple_size_v<SHA256_DIGEST> == SHA256_DIGEST_SIZE);

SHA256_DIGEST sha256(std::string_view bytes) {
    sha256_ctx state{};
    sha256_init(&state);
    sha256_update(&state, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    SHA256_DIGEST digest{};
    sha256_digest(&state, digest.size(), digest.data());
    return digest;
}
