#include "names/grammar_trace.h"

#include <initializer_list>
#include <iostream>

#include "cfg.h"

namespace {

/// Prints where all of the library prints: a program may lead std::cout elsewhere. Whatever width the program has set
/// there is for its own next output.
void print(std::initializer_list<const char*> texts) {
    std::string all;
    for (const char* text : texts) {
        all += text;
    }
    std::cout.write(all.data(), static_cast<std::streamsize>(all.size())).flush();
}

}  // namespace

bool grammar_is_traced() {
    return cfg_is_on("PGMDEV_ENABLE_GRAMMAR_DEBUG", false) != 0;
}

void trace_package_name(const std::string& name, const std::string& out) {
    if (grammar_is_traced()) {
        print({"Map Flow   : Strip Speedgrade\n    Input  : ", name.c_str(), "\n    Output : ", out.c_str(), "\n"});
    }
}

void trace_pgm_name(const std::string& name, bool skip_package_conversion, const std::string& package_name,
                    const std::string& out) {
    if (grammar_is_traced()) {
        print({"Map Flow   : Strip Package (skip package conversion: ", skip_package_conversion ? "1" : "0",
               ")\n    Input0 : ", name.c_str(), "\n    Input1 : ", package_name.c_str(),
               "\n    Output : ", out.c_str(), "\n"});
    }
}
