#pragma once

#include <string>

#include "host_types.h"

/// What ends an operation whose reporter returns: just a few values.
struct OWN_HOST_THROWN MSG_INTERNAL_ERROR_EXCEPTION {
    std::string condition;
    std::string module;
    std::string file;
    int line;
};

struct MSG_INTERNAL_ERROR {
    static void report(const char* condition, const char* module, const char* file, int line);
    static void report_varg(const char* module, const char* file, int line, const char* format, ...);
};

void msg_local_vdebug(const char* logger, int level, const char* format, ...);
