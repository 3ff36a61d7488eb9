#include <dlfcn.h>

#include "library_path.h"

namespace fs = std::filesystem;

fs::path host_library_directory() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&host_library_directory), &info) != 0 && info.dli_fname != nullptr) {
        std::error_code ignored;
        const fs::path library = fs::absolute(info.dli_fname, ignored);
        return library.parent_path();
    }
    std::error_code ignored;
    return fs::current_path(ignored);
}

bool is_in_host_library(const void* address) {
    Dl_info here{};
    Dl_info there{};
    return dladdr(reinterpret_cast<const void*>(&host_library_directory), &here) != 0 && dladdr(address, &there) != 0 &&
           here.dli_fbase == there.dli_fbase;
}
