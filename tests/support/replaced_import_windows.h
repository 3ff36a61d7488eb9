#pragma once

/// \file
/// What the system does, done otherwise: where the system at hand is not as others are.

#include <windows.h>

/// As long as this lives, a module calls something else where it would call a function of another one.
class REPLACED_IMPORT {
public:
    /// Throws where the module calls no such function.
    REPLACED_IMPORT(HMODULE module, const char* other, const char* function, FARPROC replacement);
    ~REPLACED_IMPORT();
    REPLACED_IMPORT(const REPLACED_IMPORT&) = delete;
    REPLACED_IMPORT& operator=(const REPLACED_IMPORT&) = delete;

    /// The function itself.
    template <class FUNCTION>
    FUNCTION* replaced() const {
        return reinterpret_cast<FUNCTION*>(reinterpret_cast<void*>(m_function));
    }

private:
    void call(FARPROC function);

    ULONGLONG* m_address;  ///< where the module keeps the address through which it calls
    FARPROC m_function;
};
