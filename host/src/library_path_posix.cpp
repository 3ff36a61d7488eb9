#include <dlfcn.h>

#include "library_path.h"
#include "unloading.h"

namespace fs = std::filesystem;

namespace {

/// As the system knows the library, perhaps by a path from the current directory.
fs::path directory_now() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&host_library_directory), &info) != 0 && info.dli_fname != nullptr) {
        std::error_code ignored;
        const fs::path library = fs::absolute(info.dli_fname, ignored);
        return library.parent_path();
    }
    std::error_code ignored;
    return fs::current_path(ignored);
}

struct LIBRARY_DIRECTORY {
    fs::path path = directory_now();
};

/// When the library is loaded, that path leads to it. Later the program may have another current directory.
__attribute__((constructor)) void find_library_directory() {
    try {
        lasting<LIBRARY_DIRECTORY>();
    } catch (...) {
        // Without memory, whoever asks first finds it.
    }
}

}  // namespace

fs::path host_library_directory() {
    return lasting<LIBRARY_DIRECTORY>().path;
}

bool is_in_host_library(const void* address) {
    Dl_info here{};
    Dl_info there{};
    return dladdr(reinterpret_cast<const void*>(&host_library_directory), &here) != 0 && dladdr(address, &there) != 0 &&
           here.dli_fbase == there.dli_fbase;
}
