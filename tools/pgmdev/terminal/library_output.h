#pragma once

/// \file
/// Standard output belongs to the answers. What the library prints there by its interface (traces, and messages about
/// the user's own description) goes to standard error instead, whatever switch is on.

#include <iosfwd>

/// To be constructed for each run. While it lives, std::cout, where the library prints, leads to standard error;
/// the answers of the command go to the C stream `stdout`.
class LIBRARY_OUTPUT {
public:
    LIBRARY_OUTPUT();
    ~LIBRARY_OUTPUT();
    LIBRARY_OUTPUT(const LIBRARY_OUTPUT&) = delete;
    LIBRARY_OUTPUT& operator=(const LIBRARY_OUTPUT&) = delete;

private:
    std::streambuf* m_former;
};

/// Standard output as a stream, for what the library writes as an answer.
std::ostream& answer_stream();
