#include <sys/ioctl.h>
#include <unistd.h>

#include <system_error>

#include "terminal/screen.h"

bool output_is_terminal() {
    return isatty(STDOUT_FILENO) != 0;
}

std::string output_fault(int error_number) {
    return std::generic_category().message(error_number);
}

bool input_is_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

std::size_t terminal_columns() {
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
