#include "exports.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

std::vector<EXPORT> exports_of(const std::string& library) {
    constexpr std::string_view WEAK_TYPES = "WwVvu";
    const std::string command = "nm --dynamic --defined-only --demangle '" + library + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> listing(popen(command.c_str(), "r"), pclose);
    std::vector<EXPORT> exports;
    std::array<char, 4096> line{};
    while (listing && std::fgets(line.data(), line.size(), listing.get()) != nullptr) {
        std::string text(line.data());  // "0000000000012345 T name@@version"
        text.pop_back();
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
