#include "sha256.h"

#include <gcrypt.h>

#include <windows.h>

// mingw-w64 has no Nettle. Libgcrypt ends the process when it gets no memory to make itself ready.

namespace {

/// Makes the digest library ready, unless the program has done so for its own purposes. It has no way to release what
/// it then allocates: were it unloaded with the library that uses it, each time would leave something.
bool initialize_digests() {
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(gcry_check_version(nullptr)), &library);  // a text inside of it
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0) {
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);  // digests of names are no secrets
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    }
    return true;
}

}  // namespace

SHA256_DIGEST sha256(std::string_view bytes) {
    [[maybe_unused]] static const bool ready = initialize_digests();
    SHA256_DIGEST digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), bytes.data(), bytes.size());
    return digest;
}
