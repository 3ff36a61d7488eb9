#include "terminal/screen.h"

#include <windows.h>

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
