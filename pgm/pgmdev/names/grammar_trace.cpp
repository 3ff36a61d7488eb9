#include "names/grammar_trace.h"

#include <iostream>

#include "cfg.h"
#include "printing.h"

bool grammar_is_traced() {
    return cfg_is_on("PGMDEV_ENABLE_GRAMMAR_DEBUG", false) != 0;
}

// Names are shown up to a NUL that they may have, as all texts of traces are.

void trace_package_name(const std::string& name, const std::string& out) {
    if (grammar_is_traced()) {
        print(std::cout,
              {"Map Flow   : Strip Speedgrade\n    Input  : ", name.c_str(), "\n    Output : ", out.c_str(), "\n"});
    }
}

void trace_pgm_name(const std::string& name, bool skip_package_conversion, const std::string& package_name,
                    const std::string& out) {
    if (grammar_is_traced()) {
        print(std::cout, {"Map Flow   : Strip Package (skip package conversion: ", skip_package_conversion ? "1" : "0",
                          ")\n    Input0 : ", name.c_str(), "\n    Input1 : ", package_name.c_str(),
                          "\n    Output : ", out.c_str(), "\n"});
    }
}
