#include <algorithm>
#include <stdexcept>
#include <vector>

#include <windows.h>

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
    // Block by block: the process's counters tell of pages, which the heaps keep for later.
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr) + 8);
    heaps.resize(std::min<std::size_t>(heaps.size(), GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data())));
    std::size_t bytes = 0;
    for (HANDLE heap : heaps) {
        HeapLock(heap);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry) != 0) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
        HeapUnlock(heap);
    }
    return bytes;
}
