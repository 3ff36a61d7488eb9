#include "exports.h"

#include <cxxabi.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include <windows.h>

namespace {

std::string demangled(const char* name) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status), std::free);
    return text ? text.get() : name;
}

}  // namespace

// The library is loaded: its export table lies in memory as the system uses it.
std::vector<EXPORT> exports_of(const std::string& library) {
    const auto* image =
        reinterpret_cast<const BYTE*>(GetModuleHandleW(std::filesystem::path(library).filename().c_str()));
    if (image == nullptr) {
        return {};
    }
    const auto* head = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(image + head->e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* directory = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + place.VirtualAddress);
    const auto* offsets = reinterpret_cast<const DWORD*>(image + directory->AddressOfNames);
    std::vector<EXPORT> exports;
    for (DWORD i = 0; i < directory->NumberOfNames; ++i) {
        exports.push_back({demangled(reinterpret_cast<const char*>(image + offsets[i])), "", false});
    }
    // What has only a number has no name to be checked by.
    if (directory->NumberOfFunctions > exports.size()) {
        exports.resize(directory->NumberOfFunctions, {"(no name)", "", false});
    }
    return exports;
}
