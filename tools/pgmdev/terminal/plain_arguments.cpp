#include "terminal/plain_arguments.h"

#include <algorithm>

namespace {

/// What the arguments have led to so far.
class WAY_TO_A_VERB {
public:
    explicit WAY_TO_A_VERB(const COMMAND_TABLE& table) : m_table(table), m_noun(&table.all) {}

    bool takes_value(const std::string& option) const {
        const auto is_global = [&option](const GLOBAL_OPTION& each) {
            return each.names == option && !each.value_name.empty();
        };
        const auto is_own = [&option](const ARGUMENT& each) {
            return each.name == option && each.kind != ARGUMENT::FLAG;
        };
        return option.starts_with("--") &&
               (std::any_of(m_table.options.begin(), m_table.options.end(), is_global) ||
                (m_verb != nullptr && std::any_of(m_verb->arguments.begin(), m_verb->arguments.end(), is_own)));
    }

    /// Whether the verb is reached: words are its own then.
    bool ends() const { return m_verb != nullptr; }

    void go_on(const std::string& word) {
        const auto has_that_name = [&word](const auto& entry) { return entry.name == word; };
        const auto verb = std::find_if(m_noun->verbs().begin(), m_noun->verbs().end(), has_that_name);
        const auto group = std::find_if(m_noun->groups().begin(), m_noun->groups().end(), has_that_name);
        if (verb != m_noun->verbs().end()) {
            m_verb = &*verb;
        } else if (group != m_noun->groups().end()) {
            m_noun = &*group;
        }
    }

private:
    const COMMAND_TABLE& m_table;
    const NOUN* m_noun;
    const VERB* m_verb = nullptr;
};

/// A minus alone is standard input, and before a digit a sign.
bool is_option(const std::string& argument) {
    return argument.size() > 1 && argument.front() == '-' && (argument[1] < '0' || argument[1] > '9');
}

}  // namespace

std::vector<std::string> plain_arguments(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    const auto mark = std::find(arguments.begin(), arguments.end(), "--");
    std::vector<std::string> plain;
    std::vector<std::string> texts;  // of the verb, which go behind the mark
    WAY_TO_A_VERB way(table);
    for (auto argument = arguments.begin(); argument != mark; ++argument) {
        if (!is_option(*argument)) {
            const bool goes_behind = way.ends() && mark != arguments.end();
            (goes_behind ? texts : plain).push_back(*argument);
            if (!way.ends()) {
                way.go_on(*argument);
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
