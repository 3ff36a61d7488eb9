#include "shell/completion.h"

#include <fmt/core.h>

#include <algorithm>
#include <stdexcept>

#include "gen.h"
#include "msg.h"
#include "shell/candidates.h"
#include "terminal/schema.h"
#include "terminal/way_to_verb.h"

namespace {

using WORDS = std::vector<std::string>;

/// A word that may stand there, and what it means.
struct COMPLETION {
    std::string word;
    std::string meaning;
};

using COMPLETIONS = std::vector<COMPLETION>;

bool is_option(const std::string& word) {
    return word.size() > 1 && word.front() == '-';
}

bool takes_many(const ARGUMENT& argument) {
    return argument.kind == ARGUMENT::TEXTS || argument.kind == ARGUMENT::OPTIONAL_TEXTS;
}

/// Follows the words before the one to complete through the tables.
class WORDS_BEFORE {
public:
    explicit WORDS_BEFORE(const COMMAND_TABLE& table) : m_table(table), m_way(table) {}

    void pass(const std::string& word) {
        if (!m_value_of.empty()) {
            apply(m_value_of, word);
            m_value_of.clear();
        } else if (is_option(word)) {
            m_value_of = m_way.takes_value(word) ? word : "";
            m_passed.push_back(word);
        } else if (m_way.verb() != nullptr) {
            m_given.push_back(word);
        } else {
            enter(word);
        }
    }

    COMPLETIONS completions(const std::string& beginning) const {
        if (!m_value_of.empty()) {
            return values_of(m_value_of, beginning);
        }
        if (is_option(beginning) || beginning == "-") {
            return options();
        }
        return m_way.verb() != nullptr ? values(beginning) : subcommands();
    }

private:
    void enter(const std::string& word) {
        if (m_way.enter(word)) {
            m_path.push_back(word);
        }
    }

    /// Options that name directories, for instance, decide what names there are.
    void apply(const std::string& name, const std::string& value) const {
        for (const GLOBAL_OPTION& option : m_table.options) {
            if (option.names == name) {
                COMMAND ignored;
                option.apply(value, ignored);
            }
        }
    }

    bool is_passed(const std::string& option) const {
        return std::find(m_passed.begin(), m_passed.end(), option) != m_passed.end();
    }

    COMPLETIONS options() const {
        COMPLETIONS found;
        if (m_way.verb() != nullptr) {
            for (const ARGUMENT& argument : m_way.verb()->arguments) {
                if (is_option(argument.name) && (takes_many(argument) || !is_passed(argument.name))) {
                    found.push_back({argument.name, argument.description});
                }
            }
        }
        for (const GLOBAL_OPTION& option : m_table.options) {
            for (const std::string& name : names_of(option)) {
                if (option.repeats || !is_passed(name)) {
                    found.push_back({name, option.description});
                }
            }
        }
        found.push_back({"--help", "Show help"});
        return found;
    }

    COMPLETIONS subcommands(bool only_in_json = false) const {
        COMPLETIONS found;
        for (const VERB& verb : m_way.noun().verbs()) {
            if (verb.schema || !only_in_json) {
                found.push_back({verb.name, verb.description});
            }
        }
        for (const NOUN& group : m_way.noun().groups()) {
            found.push_back({group.name, group.description});
        }
        return found;
    }

    /// What may follow the words that are given, where these lead to a verb that answers in JSON.
    COMPLETIONS words_of_the_command() const {
        WORDS_BEFORE named(m_table);
        for (const std::string& word : m_given) {
            named.enter(word);
        }
        const bool is_end = named.m_way.verb() != nullptr || named.m_path.size() != m_given.size();
        return is_end ? COMPLETIONS() : named.subcommands(true);
    }

    COMPLETIONS values(const std::string& beginning) const {
        std::size_t position = 0;
        for (const ARGUMENT& argument : m_way.verb()->arguments) {
            if (!is_option(argument.name)) {
                if (position == m_given.size() || takes_many(argument)) {
                    return argument.name == "WORD" ? words_of_the_command() : values_of(argument.name, beginning);
                }
                ++position;
            }
        }
        return {};
    }

    COMPLETIONS values_of(const std::string& argument, const std::string& beginning) const {
        ARGUMENT_PLACE place{m_path.empty() ? "" : m_path.front(), "", argument, m_given, beginning};
        for (std::size_t i = 1; i < m_path.size(); ++i) {
            place.verb += (i == 1 ? "" : " ") + m_path[i];
        }
        const std::size_t comma = is_list_of_candidates(argument) ? beginning.rfind(',') : std::string::npos;
        const std::string before = comma == std::string::npos ? "" : beginning.substr(0, comma + 1);
        COMPLETIONS found;
        const bool is_list = m_way.verb() != nullptr && m_way.verb()->row != nullptr && argument == "--fields";
        for (const std::string& name : is_list ? member_names(m_way.verb()->row()) : argument_candidates(place)) {
            if (!name.empty()) {
                found.push_back({before + name, ""});
            }
        }
        return found;
    }

    const COMMAND_TABLE& m_table;
    WAY_TO_VERB m_way;
    WORDS m_path;            ///< the noun, the group if there is one, the verb
    WORDS m_given;           ///< the arguments without a name that stand behind the verb
    WORDS m_passed;          ///< the options
    std::string m_value_of;  ///< the option whose value comes next; "": none
};

bool begins_with(const std::string& word, const std::string& beginning) {
    return word.size() >= beginning.size() && gen_stricmp(word.substr(0, beginning.size()), beginning) == 0;
}

}  // namespace

void print_completions(const COMMAND_TABLE& table, const std::vector<std::string>& words) {
    // Nobody can act on a failure now; the verb itself will tell it.
    MSG_INTERNAL_ERROR::set_handler(
        [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); });
    const std::string beginning = words.empty() ? "" : words.back();
    std::string lines;
    try {
        WORDS_BEFORE place(table);
        for (std::size_t i = 0; i + 1 < words.size(); ++i) {
            place.pass(words[i]);
        }
        for (const COMPLETION& each : place.completions(beginning)) {
            if (begins_with(each.word, beginning)) {
                lines += each.word + (each.meaning.empty() ? "" : "\t" + each.meaning) + "\n";
            }
        }
    } catch (const std::runtime_error&) {
        return;
    }
    fmt::print("{}", lines);
}
