#pragma once

/// \file
/// The end of the interpreter, as threads meet it that still run then.

#include <cxxabi.h>
#include <unistd.h>

/// Does what wants the interpreter's lock. When the interpreter is at its end, it ends threads that want its lock, and
/// unwinds them; that they come through frames of C++ that do not bear it would end the process by a signal. So they wait
/// here until the process has ended, and nothing of Python's is given back without the lock.
template <class OPERATION>
void or_wait_for_the_end(OPERATION operation) {
    try {
        operation();
    } catch (const abi::__forced_unwind&) {
        for (;;) {
            ::pause();
        }
    }
}
