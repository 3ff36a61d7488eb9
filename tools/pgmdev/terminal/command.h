#pragma once

/// \file
/// What one run of the command is asked for, and what comes of it.

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

enum EXIT_CODE { EXIT_DONE = 0, EXIT_NOT_FOUND = 1, EXIT_USAGE = 2, EXIT_INTERNAL_ERROR = 3 };

/// The state of one run of the command.
struct COMMAND {
    bool json = false;                      ///< answer in JSON instead of text for people
    EXIT_CODE result = EXIT_DONE;           ///< becomes the exit code
    std::function<void()> prepare = [] {};  ///< called before the verb, after the options that go with every verb
};

/// Thrown for arguments that make no sense; the message is for the user.
class USAGE_ERROR : public std::runtime_error {
public:
    explicit USAGE_ERROR(std::string message) : std::runtime_error(message), m_message(std::move(message)) {}

    /// All of it: what() ends at a zero byte, which lines of a batch may have.
    const std::string& message() const noexcept { return m_message; }

private:
    std::string m_message;
};
