#pragma once

/// \file
/// Operations of the library that take their time, and the interpreter's lock meanwhile.

#include <pybind11/pybind11.h>

#include <type_traits>
#include <utility>

/// Forgets what was reported in this thread.
void forget_report();

/// Throws what was reported in this thread since then: after some reports the library goes on with an empty answer.
void throw_report();

/// Without the interpreter's lock as long as it lives.
class LOCK_RELEASED {
public:
    LOCK_RELEASED() : m_state(PyEval_SaveThread()) {}
    ~LOCK_RELEASED();
    LOCK_RELEASED(const LOCK_RELEASED&) = delete;
    LOCK_RELEASED& operator=(const LOCK_RELEASED&) = delete;

private:
    PyThreadState* m_state;
};

/// Does what may take long, or may wait for somebody, without the interpreter's lock. It must not touch what is Python's.
template <class OPERATION>
auto unlocked(OPERATION operation) {
    const LOCK_RELEASED released;
    forget_report();
    if constexpr (std::is_void_v<decltype(operation())>) {
        operation();
        throw_report();
    } else {
        auto answer = operation();
        throw_report();
        return answer;
    }
}
