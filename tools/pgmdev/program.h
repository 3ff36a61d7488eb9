#pragma once

/// \file
/// A program as the system starts it: its arguments and standard streams, alike on every system.

#include <string>
#include <vector>

/// To be constructed once, in `main`. While it lives, standard output and standard error take bytes as they are, and a
/// console shows them as UTF-8.
class PROGRAM {
public:
    PROGRAM(int argc, char** argv);
    ~PROGRAM();
    PROGRAM(const PROGRAM&) = delete;
    PROGRAM& operator=(const PROGRAM&) = delete;

    /// The arguments behind the program's name, in UTF-8 (where arguments are plain bytes, those bytes).
    const std::vector<std::string>& arguments() const { return m_arguments; }

private:
    std::vector<std::string> m_arguments;
};
