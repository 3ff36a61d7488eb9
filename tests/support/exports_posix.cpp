#include "exports.h"

#include <array>
#include <cstdio>
#include <memory>

std::vector<std::string> exported_names(const std::string& library) {
    const std::string command = "nm --dynamic --defined-only --demangle '" + library + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> listing(popen(command.c_str(), "r"), pclose);
    std::vector<std::string> names;
    std::array<char, 4096> line{};
    while (listing && std::fgets(line.data(), line.size(), listing.get()) != nullptr) {
        const std::string text(line.data());  // "0000000000012345 T name"
        names.push_back(text.substr(text.find(' ', text.find(' ') + 1) + 1));
        names.back().pop_back();
    }
    return names;
}
