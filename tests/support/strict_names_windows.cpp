#include <cerrno>
#include <cwchar>

#include <sys/stat.h>

#include "support/replaced_import_windows.h"

// The C library of Windows finds no file whose name has a question mark, which it takes for a wildcard; so it is with all
// paths that are free of the length limit. That of Wine finds them. Programs that have this find as little as on Windows:
// the function that std::filesystem asks gives way to a strict one, wherever the C++ library calls it.

namespace {

int strict_stat(const wchar_t* name, struct _stat64* found);

const REPLACED_IMPORT g_lenient{GetModuleHandleW(L"libstdc++-6.dll"), "msvcrt.dll", "_wstat64",
                                reinterpret_cast<FARPROC>(strict_stat)};

int strict_stat(const wchar_t* name, struct _stat64* found) {
    if (std::wcspbrk(name, L"?*") != nullptr) {
        errno = ENOENT;
        return -1;
    }
    return g_lenient.replaced<decltype(_wstat64)>()(name, found);
}

}  // namespace
