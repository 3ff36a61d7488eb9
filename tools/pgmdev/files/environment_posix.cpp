#include <unistd.h>

#include <cstdlib>

#include "files/environment.h"

std::map<std::string, std::string> environment_variables() {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) {
            variables.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    return variables;
}

std::string environment_text(const std::string& name) {
    const char* text = std::getenv(name.c_str());
    return text != nullptr ? text : "";
}
