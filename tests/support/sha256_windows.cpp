#include <stdexcept>

#include <windows.h>

#include <bcrypt.h>

#include "sha256.h"

std::array<unsigned char, 32> independent_sha256(const std::string& data) {
    std::string input = data;
    std::array<unsigned char, 32> digest{};
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) != 0) {
        throw std::runtime_error("the system has no SHA-256");
    }
    const NTSTATUS status =
        BCryptHash(algorithm, nullptr, 0, reinterpret_cast<PUCHAR>(input.data()), static_cast<ULONG>(input.size()),
                   digest.data(), static_cast<ULONG>(digest.size()));
    BCryptCloseAlgorithmProvider(algorithm, 0);
    if (status != 0) {
        throw std::runtime_error("the system's SHA-256 failed");
    }
    return digest;
}
