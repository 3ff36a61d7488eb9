#include <sys/ioctl.h>
#include <unistd.h>

#include "terminal/screen.h"

bool output_is_terminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool input_is_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

std::size_t terminal_columns() {
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
