#include "shell/services.h"

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
};

}  // namespace

bool run_service(const std::vector<std::string>& arguments) {
    for (const SERVICE& service : SERVICES) {
        if (!arguments.empty() && arguments.front() == service.name) {
            service.run(whole_command(), WORDS(arguments.begin() + 1, arguments.end()));
            return true;
        }
    }
    return false;
}
