#include "exports.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

#include "process.h"

std::vector<EXPORT> exports_of(const std::string& library) {
    constexpr std::string_view WEAK_TYPES = "WwVvu";
    const PROCESS_RESULT run =
        run_process({{"/usr/bin/env", "nm", "--dynamic", "--defined-only", "--demangle", library}, "", {}, {}});
    if (run.exit_code != 0) {
        throw std::runtime_error(run.errors);
    }
    std::istringstream listing(run.output);
    std::vector<EXPORT> exports;
    for (std::string text; std::getline(listing, text);) {  // "0000000000012345 T name@@version"
        const std::size_t type = text.find(' ') + 1;
        const std::size_t version = text.rfind("@@");
        if (text[type] == 'A') {
            continue;  // the name of a version
        }
        exports.push_back({text.substr(type + 2, version - (type + 2)),
                           version != std::string::npos ? text.substr(version + 2) : "",
                           WEAK_TYPES.find(text[type]) != std::string_view::npos});
    }
    return exports;
}
