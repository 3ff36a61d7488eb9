#include <openssl/sha.h>

#include "sha256.h"

std::array<unsigned char, 32> independent_sha256(const std::string& data) {
    std::array<unsigned char, 32> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(data.data()), data.size(), digest.data());
    return digest;
}
