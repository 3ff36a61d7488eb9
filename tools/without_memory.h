#pragma once

/// \file
/// How a program ends for which there is no memory where nobody can catch that: before `main`, while what is static in it
/// and in its libraries is made ready, and in destructors and other functions that do not throw.
///
/// Everything else that makes std::terminate be called is a fault of the program and aborts it, so that it shows.

#include <string_view>

struct END_WITHOUT_MEMORY {
    std::string_view message;  ///< goes to standard error
    int exit_code;
};

/// Each program says how it ends: a constant, since it may be needed before anything is made ready.
extern const END_WITHOUT_MEMORY END_OF_THIS_PROGRAM;

/// Ends the program so, at once and without the need of memory.
[[noreturn]] void end_without_memory() noexcept;

/// To be called first in `main`: from then on, what gets no memory throws std::bad_alloc, and may go on without it.
void let_no_memory_be_caught() noexcept;
