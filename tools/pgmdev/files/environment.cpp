#include "files/environment.h"

std::string environment_text(const std::string& name) {
    const auto variables = environment_variables();
    const auto found = variables.find(name);
    return found != variables.end() ? found->second : "";
}
