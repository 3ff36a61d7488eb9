#include "sha256.h"

#include <windows.h>

#include <bcrypt.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

namespace {

// The algorithm as Windows 10 and later have it: nothing need be opened before and closed afterwards. The headers of
// mingw-w64 do not name it yet.
const auto SHA256_ALGORITHM = reinterpret_cast<BCRYPT_ALG_HANDLE>(0x41);

void confirm(NTSTATUS status) {
    constexpr auto NO_MEMORY = static_cast<NTSTATUS>(0xC0000017);
    if (status == NO_MEMORY) {
        throw std::bad_alloc();
    }
    if (status < 0) {
        throw std::runtime_error("Windows has no SHA-256 for this process");
    }
}

}  // namespace

SHA256_DIGEST sha256(std::string_view bytes) {
    BCRYPT_HASH_HANDLE handle = nullptr;
    confirm(BCryptCreateHash(SHA256_ALGORITHM, &handle, nullptr, 0, nullptr, 0, 0));
    const std::unique_ptr<void, NTSTATUS(WINAPI*)(BCRYPT_HASH_HANDLE)> hash(handle, BCryptDestroyHash);

    // It changes nothing of what it reads, and takes it in pieces of less than 4 GiB.
    auto* data = reinterpret_cast<PUCHAR>(const_cast<char*>(bytes.data()));
    for (std::size_t left = bytes.size(); left != 0;) {
        const auto size = static_cast<ULONG>(std::min<std::size_t>(left, std::numeric_limits<ULONG>::max()));
        confirm(BCryptHashData(handle, data, size, 0));
        data += size;
        left -= size;
    }
    SHA256_DIGEST digest{};
    confirm(BCryptFinishHash(handle, digest.data(), static_cast<ULONG>(digest.size()), 0));
    return digest;
}
