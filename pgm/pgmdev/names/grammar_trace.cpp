#include "names/grammar_trace.h"

#include <cstdio>

#include "cfg.h"

bool grammar_is_traced() {
    static const std::string KEY = "PGMDEV_ENABLE_GRAMMAR_DEBUG";
    return cfg_is_on(KEY, false) != 0;
}

void trace_package_name(const std::string& name, const std::string& out) {
    if (grammar_is_traced()) {
        std::printf("Map Flow   : Strip Speedgrade\n");
        std::printf("    Input  : %s\n", name.c_str());
        std::printf("    Output : %s\n", out.c_str());
    }
}

void trace_pgm_name(const std::string& name, bool skip_package_conversion, std::string_view package_name,
                    const std::string& out) {
    if (grammar_is_traced()) {
        std::printf("Map Flow   : Strip Package (skip package conversion: %d)\n", skip_package_conversion ? 1 : 0);
        std::printf("    Input0 : %s\n", name.c_str());
        std::printf("    Input1 : %s\n", std::string(package_name).c_str());
        std::printf("    Output : %s\n", out.c_str());
    }
}
