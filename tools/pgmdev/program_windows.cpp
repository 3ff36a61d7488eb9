#include "program.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <memory>
#include <system_error>

#include <windows.h>

#include <shellapi.h>

#include "wide_text.h"

namespace {

UINT g_former_code_page = 0;  // of the console, to be given back; 0: there is none to give back

void give_back_code_page() {
    if (g_former_code_page != 0) {
        SetConsoleOutputCP(g_former_code_page);
    }
}

/// A person ends the program.
BOOL WINAPI when_interrupted(DWORD /*by*/) {
    give_back_code_page();
    return FALSE;  // what is usual follows
}

/// A console that shows UTF-8 already stays as it is: the command before this one in a pipeline may have made it so, and
/// gives back what was before.
void show_utf_8() {
    const UINT code_page = GetConsoleOutputCP();
    if (code_page != 0 && code_page != CP_UTF8) {
        g_former_code_page = code_page;
        SetConsoleCtrlHandler(when_interrupted, TRUE);
        SetConsoleOutputCP(CP_UTF8);
    }
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
        arguments.push_back(utf8_from_wide(all.get()[i]));
    }
    return arguments;
}

}  // namespace

PROGRAM::PROGRAM(int, char**) : m_arguments(wide_arguments()) {
    _setmode(_fileno(stdin), _O_BINARY);  // the bytes as they are: a byte 1A ends no text
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    show_utf_8();
}

PROGRAM::~PROGRAM() {
    std::fflush(stdout);
    give_back_code_page();
}
