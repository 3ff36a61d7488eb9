#pragma once

/// \file
/// A terminal that the command reads and writes, with the test at its other end.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>

class PSEUDO_TERMINAL {
public:
    explicit PSEUDO_TERMINAL(unsigned columns) : m_test_end(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (m_test_end < 0 || ::grantpt(m_test_end) != 0 || ::unlockpt(m_test_end) != 0) {
            throw std::runtime_error("there is no pseudo-terminal");
        }
        m_name = ::ptsname(m_test_end);
        m_kept_open = ::open(m_name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        const winsize size{25, static_cast<unsigned short>(columns), 0, 0};
        ::ioctl(m_kept_open, TIOCSWINSZ, &size);
        termios modes{};
        ::tcgetattr(m_kept_open, &modes);
        modes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(m_kept_open, TCSANOW, &modes);
    }
    ~PSEUDO_TERMINAL() {
        ::close(m_kept_open);
        ::close(m_test_end);
    }
    PSEUDO_TERMINAL(const PSEUDO_TERMINAL&) = delete;
    PSEUDO_TERMINAL& operator=(const PSEUDO_TERMINAL&) = delete;

    /// What a line of the shell shows there, with line feeds alone, when that is typed.
    std::string shown_by(const std::string& line, const std::string& typed = "", int exit_code = 0) const {
        if (::write(m_test_end, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size())) {
            throw std::runtime_error("the terminal takes no more");
        }
        const pid_t child = ::fork();
        if (child == 0) {
            const int terminal = ::open(m_name.c_str(), O_RDWR | O_NOCTTY);
            ::dup2(terminal, STDOUT_FILENO);
            if (!typed.empty()) {
                ::dup2(terminal, STDIN_FILENO);
            }
            ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            ::_exit(127);
        }
        std::string text;
        int status = 0;
        bool ended = false;
        while (!ended) {
            ended = ::waitpid(child, &status, WNOHANG) == child;
            text += waiting();
        }
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, exit_code) << line;
        std::erase(text, '\r');
        return text;
    }

private:
    /// What has arrived, after a short while.
    std::string waiting() const {
        std::string text;
        for (;;) {
            fd_set readable;
            FD_ZERO(&readable);
            FD_SET(m_test_end, &readable);
            timeval patience{0, 50'000};
            if (::select(m_test_end + 1, &readable, nullptr, nullptr, &patience) <= 0) {
                return text;
            }
            std::array<char, 4096> part{};
            const ssize_t count = ::read(m_test_end, part.data(), part.size());
            if (count <= 0) {
                return text;
            }
            text.append(part.data(), static_cast<std::size_t>(count));
        }
    }

    int m_test_end;
    int m_kept_open = -1;  // so that what was written stays readable when the command has ended
    std::string m_name;
};
