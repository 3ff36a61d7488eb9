#pragma once

/// \file
/// Standard input and output of this process, as texts.

#include <iostream>
#include <sstream>
#include <string>

/// While it lives, standard input holds `input`, and what goes to standard output is collected.
class CONSOLE {
public:
    explicit CONSOLE(const std::string& input = "")
        : m_input(input),
          m_old_input(std::cin.rdbuf(m_input.rdbuf())),
          m_old_output(std::cout.rdbuf(m_output.rdbuf())) {
        std::cin.clear();
    }
    ~CONSOLE() {
        std::cin.rdbuf(m_old_input);
        std::cin.clear();
        std::cout.rdbuf(m_old_output);
    }
    CONSOLE(const CONSOLE&) = delete;
    CONSOLE& operator=(const CONSOLE&) = delete;

    std::string output() const { return m_output.str(); }

private:
    std::istringstream m_input;
    std::ostringstream m_output;
    std::streambuf* m_old_input;
    std::streambuf* m_old_output;
};
