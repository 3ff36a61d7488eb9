#include "terminal/way_to_verb.h"

#include <algorithm>

const GLOBAL_OPTION* option_with_value(const std::vector<GLOBAL_OPTION>& options, const std::string& argument) {
    const auto found = std::find_if(options.begin(), options.end(), [&argument](const GLOBAL_OPTION& option) {
        return option.names == argument && !option.value_name.empty();
    });
    return found != options.end() ? &*found : nullptr;
}

bool WAY_TO_VERB::enter(const std::string& word) {
    if (m_verb != nullptr) {
        return false;
    }
    const auto has_that_name = [&word](const auto& entry) { return entry.name == word; };
    const auto verb = std::find_if(m_noun->verbs().begin(), m_noun->verbs().end(), has_that_name);
    if (verb != m_noun->verbs().end()) {
        m_verb = &*verb;
        return true;
    }
    const auto group = std::find_if(m_noun->groups().begin(), m_noun->groups().end(), has_that_name);
    if (group == m_noun->groups().end()) {
        return false;
    }
    m_noun = &*group;
    return true;
}

bool WAY_TO_VERB::takes_value(const std::string& option) const {
    const auto is_it = [&option](const ARGUMENT& argument) {
        return argument.name == option && argument.kind != ARGUMENT::FLAG;
    };
    return option.starts_with("--") &&
           (option_with_value(m_table.options, option) != nullptr ||
            (m_verb != nullptr && std::any_of(m_verb->arguments.begin(), m_verb->arguments.end(), is_it)));
}
