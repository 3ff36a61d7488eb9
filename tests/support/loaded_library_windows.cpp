#include <stdexcept>

#include <windows.h>

#include <psapi.h>

#include "loaded_library.h"

namespace fs = std::filesystem;

LOADED_LIBRARY::LOADED_LIBRARY(const fs::path& path) : m_handle(LoadLibraryW(path.c_str())) {
    if (m_handle == nullptr) {
        throw std::runtime_error("a library cannot be loaded: error " + std::to_string(GetLastError()));
    }
}

LOADED_LIBRARY::~LOADED_LIBRARY() {
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

LOADED_LIBRARY::FUNCTION LOADED_LIBRARY::function(const char* name) const {
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name)));
}

bool is_loaded(const fs::path& path) {
    return GetModuleHandleW(path.filename().c_str()) != nullptr;
}

std::size_t open_handles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

std::size_t memory_in_use() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof(counters);
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof(counters));
    return counters.PrivateUsage;
}
