#include "shell/services.h"

#include <algorithm>
#include <array>

#include "nouns.h"
#include "shell/completion.h"
#include "shell/man_page.h"

namespace {

using WORDS = std::vector<std::string>;

/// The first argument, and what carries it out with the others.
struct SERVICE {
    const char* name;
    void (*run)(const COMMAND_TABLE& table, const WORDS& words);
};

constexpr std::array SERVICES{
    SERVICE{"__complete", print_completions},
    SERVICE{"__man", print_man_page},
    SERVICE{"__man_pages", write_man_pages},
};

}  // namespace

bool run_service(const std::vector<std::string>& arguments) {
    const auto service = std::find_if(SERVICES.begin(), SERVICES.end(), [&arguments](const SERVICE& each) {
        return !arguments.empty() && arguments.front() == each.name;
    });
    if (service == SERVICES.end()) {
        return false;
    }
    service->run(whole_command(), WORDS(arguments.begin() + 1, arguments.end()));
    return true;
}
