#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "program.h"

namespace {

/// A standard stream that is closed leaves its number to the next file that is opened, into which the answers would then
/// go. What takes the number here can neither be read, as input, nor written, as output: that shows as a failure.
void occupy_closed_streams() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        while (::fcntl(number, F_GETFD) < 0) {
            if (::open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) {
                return;
            }
        }
    }
}

}  // namespace

PROGRAM::PROGRAM(int argc, char** argv) : m_arguments(argv + (argc > 0 ? 1 : 0), argv + argc) {
    occupy_closed_streams();
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not become as large is a failure that can be told
}

PROGRAM::~PROGRAM() = default;
