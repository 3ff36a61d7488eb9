#include "support/replaced_import_windows.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace {

/// The addresses through which the module calls what it has from the other one; 0 behind the last.
ULONGLONG* addresses_from(BYTE* module, const char* other) {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS64*>(module + dos->e_lfanew);
    const DWORD place = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(module + place); from->Name != 0; ++from) {
        if (_stricmp(reinterpret_cast<const char*>(module + from->Name), other) == 0) {
            return &reinterpret_cast<IMAGE_THUNK_DATA64*>(module + from->FirstThunk)->u1.Function;
        }
    }
    throw std::runtime_error(std::string("the module calls nothing of ") + other);
}

}  // namespace

REPLACED_IMPORT::REPLACED_IMPORT(HMODULE module, const char* other, const char* function, FARPROC replacement)
    : m_address(addresses_from(reinterpret_cast<BYTE*>(module), other)),
      m_function(GetProcAddress(GetModuleHandleA(other), function)) {
    ULONGLONG address = 0;
    std::memcpy(&address, &m_function, sizeof address);
    while (*m_address != 0 && *m_address != address) {
        ++m_address;
    }
    if (*m_address == 0) {
        throw std::runtime_error(std::string("the module does not call ") + function);
    }
    call(replacement);
}

REPLACED_IMPORT::~REPLACED_IMPORT() {
    call(m_function);
}

void REPLACED_IMPORT::call(FARPROC function) {
    DWORD former = 0;
    VirtualProtect(m_address, sizeof *m_address, PAGE_READWRITE, &former);
    std::memcpy(m_address, &function, sizeof *m_address);
    VirtualProtect(m_address, sizeof *m_address, former, &former);
}
