#include "program.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>

#include <windows.h>

#include <shellapi.h>

namespace {

std::string utf8(std::wstring_view text) {
    const auto convert = [text](char* to, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), to, room, nullptr, nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

/// The arguments that `main` is given are in the system's code page, in which most names cannot be written.
std::vector<std::string> wide_arguments() {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> all(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    if (!all) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CommandLineToArgvW");
    }
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(utf8(all.get()[i]));
    }
    return arguments;
}

}  // namespace

PROGRAM::PROGRAM(int, char**) : m_arguments(wide_arguments()), m_former_code_page(GetConsoleOutputCP()) {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (m_former_code_page != 0) {
        SetConsoleOutputCP(CP_UTF8);
    }
}

PROGRAM::~PROGRAM() {
    std::fflush(stdout);
    if (m_former_code_page != 0) {
        SetConsoleOutputCP(m_former_code_page);
    }
}
