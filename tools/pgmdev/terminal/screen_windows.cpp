#include "terminal/screen.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <windows.h>

#include <io.h>

bool output_is_terminal() {
    // Consoles of old systems show escape sequences as they are: they count as no terminal.
    static const bool understands = [] {
        HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
        DWORD mode = 0;
        return GetConsoleMode(output, &mode) != 0 &&
               SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    }();
    return understands;
}

std::string output_fault(int error_number) {
    // The C library has no number of its own for a pipe that nobody reads any more, as behind `| more` that was left.
    const auto output = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdout)));  // NOLINT(performance-no-int-to-ptr)
    const bool is_unread = error_number == EINVAL && GetFileType(output) == FILE_TYPE_PIPE;
    return std::generic_category().message(is_unread ? EPIPE : error_number);
}

bool input_is_terminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

std::size_t terminal_columns() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
        return 0;
    }
    const int columns = info.srWindow.Right - info.srWindow.Left + 1;
    return static_cast<std::size_t>(columns);
}
