#include "terminal/given_options.h"

#include <algorithm>
#include <functional>
#include <map>

namespace {

struct REMEMBERED {
    std::vector<std::string> arguments;
    /// By option, once it was asked for: each device of a chain asks anew, and there may be thousands.
    std::map<std::string, std::vector<std::string>, std::less<>> values;
};

REMEMBERED& remembered() {
    static REMEMBERED all;
    return all;
}

std::vector<std::string> found_values(std::string_view option) {
    const std::string attached = std::string(option) + "=";
    const std::vector<std::string>& arguments = remembered().arguments;
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

}  // namespace

void remember_arguments(const std::vector<std::string>& arguments) {
    remembered().values.clear();
    remembered().arguments.assign(arguments.begin(),
                                  std::find(arguments.begin(), arguments.end(), "--"));  // behind it are none
}

const std::vector<std::string>& given_values(std::string_view option) {
    auto& values = remembered().values;
    const auto known = values.find(option);
    return known != values.end() ? known->second : values.emplace(option, found_values(option)).first->second;
}

bool is_given(std::string_view option) {
    const std::vector<std::string>& arguments = remembered().arguments;
    return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}
