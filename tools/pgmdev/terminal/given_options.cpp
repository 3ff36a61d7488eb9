#include "terminal/given_options.h"

#include <algorithm>

namespace {

std::vector<std::string>& remembered() {
    static std::vector<std::string> arguments;
    return arguments;
}

}  // namespace

void remember_arguments(const std::vector<std::string>& arguments) {
    remembered().assign(arguments.begin(), std::find(arguments.begin(), arguments.end(), "--"));  // behind it are none
}

std::vector<std::string> given_values(std::string_view option) {
    const std::string attached = std::string(option) + "=";
    const std::vector<std::string>& arguments = remembered();
    std::vector<std::string> values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].starts_with(attached)) {
            values.push_back(arguments[i].substr(attached.size()));
        } else if (arguments[i] == option && i + 1 < arguments.size()) {
            values.push_back(arguments[++i]);
        }
    }
    return values;
}

bool is_given(std::string_view option) {
    return std::find(remembered().begin(), remembered().end(), option) != remembered().end();
}
