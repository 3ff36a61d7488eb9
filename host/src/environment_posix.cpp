#include "environment.h"

#include <cstdlib>

std::optional<std::string> environment_value(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}
