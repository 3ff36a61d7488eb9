#include "terminal/plain_arguments.h"

#include <algorithm>

#include "terminal/way_to_verb.h"

namespace {

/// A minus alone is standard input, and before a digit a sign.
bool is_option(const std::string& argument) {
    return argument.size() > 1 && argument.front() == '-' && (argument[1] < '0' || argument[1] > '9');
}

}  // namespace

std::vector<std::string> plain_arguments(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    const auto mark = std::find(arguments.begin(), arguments.end(), "--");
    std::vector<std::string> plain;
    std::vector<std::string> texts;  // of the verb, which go behind the mark
    WAY_TO_VERB way(table);
    for (auto argument = arguments.begin(); argument != mark; ++argument) {
        if (!is_option(*argument)) {
            const bool is_text = way.verb() != nullptr;
            (is_text && mark != arguments.end() ? texts : plain).push_back(*argument);
            if (!is_text) {
                way.enter(*argument);
            }
            continue;
        }
        const std::string name = argument->substr(0, argument->find('='));
        if (*argument == name + '=' && way.takes_value(name)) {
            plain.insert(plain.end(), {name, ""});
            continue;
        }
        plain.push_back(*argument);
        if (way.takes_value(*argument) && argument + 1 != mark) {
            plain.push_back(*++argument);
        }
    }
    if (mark != arguments.end()) {
        plain.push_back(*mark);
        plain.insert(plain.end(), texts.begin(), texts.end());
        plain.insert(plain.end(), mark + 1, arguments.end());
    }
    return plain;
}
