#include <cerrno>
#include <cstring>
#include <cwchar>
#include <stdexcept>

#include <windows.h>

#include <sys/stat.h>

// The C library of Windows finds no file whose name has a question mark, which it takes for a wildcard; so it is with all
// paths that are free of the length limit. That of Wine finds them. Programs that have this find as little as on Windows:
// the function that std::filesystem asks gives way to a strict one, wherever the C++ library calls it.

namespace {

using STAT = int (*)(const wchar_t*, struct _stat64*);

STAT g_lenient = nullptr;

int strict_stat(const wchar_t* name, struct _stat64* found) {
    if (std::wcspbrk(name, L"?*") != nullptr) {
        errno = ENOENT;
        return -1;
    }
    return g_lenient(name, found);
}

/// Where the module keeps the addresses of what it has from others, and calls them through.
IMAGE_THUNK_DATA64* addresses_from(BYTE* module, const char* other) {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS64*>(module + dos->e_lfanew);
    const DWORD place = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(module + place); from->Name != 0; ++from) {
        if (_stricmp(reinterpret_cast<const char*>(module + from->Name), other) == 0) {
            return reinterpret_cast<IMAGE_THUNK_DATA64*>(module + from->FirstThunk);
        }
    }
    throw std::runtime_error("the C++ library has nothing from the C library");
}

bool be_strict() {
    constexpr const char* C_LIBRARY = "msvcrt.dll";
    auto* const library = reinterpret_cast<BYTE*>(GetModuleHandleW(L"libstdc++-6.dll"));
    const auto lenient = reinterpret_cast<ULONGLONG>(GetProcAddress(GetModuleHandleA(C_LIBRARY), "_wstat64"));
    auto* address = addresses_from(library, C_LIBRARY);
    while (address->u1.Function != 0 && address->u1.Function != lenient) {
        ++address;
    }
    DWORD former = 0;
    if (address->u1.Function == 0 || VirtualProtect(address, sizeof *address, PAGE_READWRITE, &former) == 0) {
        throw std::runtime_error("std::filesystem asks another function");
    }
    std::memcpy(&g_lenient, &lenient, sizeof lenient);
    address->u1.Function = reinterpret_cast<ULONGLONG>(&strict_stat);
    return VirtualProtect(address, sizeof *address, former, &former) != 0;
}

[[maybe_unused]] const bool IS_STRICT = be_strict();

}  // namespace
