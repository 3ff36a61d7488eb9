#pragma once

#include <dlfcn.h>

/// \file
/// Functions of a test program that come before those of the system with their names, for the program and all libraries.

#define INTERPOSED extern "C" __attribute__((visibility("default")))

/// The function of that name that this program's own stands before.
template <class FUNCTION>
FUNCTION* next(const char* name) {
    return reinterpret_cast<FUNCTION*>(::dlsym(RTLD_NEXT, name));
}
