#include "terminal/unknown_word.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/way_to_verb.h"

namespace {

constexpr const char* HELP = "--help";

/// The words among the arguments: neither options nor their values. Options of verbs stand behind all nouns and verbs.
std::vector<std::string> words_of(const std::vector<GLOBAL_OPTION>& options,
                                  const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (option_with_value(options, arguments[i]) != nullptr) {
            ++i;
        } else if (!arguments[i].starts_with('-')) {
            words.push_back(arguments[i]);
        }
    }
    return words;
}

std::string known_words(const std::string& before, const std::vector<std::string>& candidates) {
    return fmt::format("{} {}", before.empty() ? "the nouns are" : fmt::format("behind \"{}\" may stand", before),
                       fmt::join(candidates, ", "));
}

/// The verbs and groups of a noun.
std::vector<std::string> contents_of(const NOUN& noun) {
    std::vector<std::string> names;
    for (const VERB& verb : noun.verbs()) {
        names.push_back(verb.name);
    }
    for (const NOUN& group : noun.groups()) {
        names.push_back(group.name);
    }
    return names;
}

/// The verbs of that name behind the groups of a noun: of two words each.
std::vector<std::string> verbs_behind(const NOUN& noun, const std::string& word) {
    std::vector<std::string> found;
    for (const NOUN& group : noun.groups()) {
        for (const VERB& verb : group.verbs()) {
            if (gen_stricmp(word, verb.name) == 0) {
                found.push_back(group.name + ' ' + verb.name);
            }
        }
    }
    return found;
}

/// The options that may stand everywhere.
std::vector<std::string> options_everywhere(const COMMAND_TABLE& table) {
    std::vector<std::string> known{"-h", HELP};
    for (const GLOBAL_OPTION& option : table.options) {
        const std::vector<std::string> names = names_of(option);
        known.insert(known.end(), names.begin(), names.end());
    }
    return known;
}

/// Whether it asks for help as commands of Windows are asked, here on every system.
bool asks_as_on_windows(const std::string& argument) {
    constexpr std::array QUESTIONS{"/?", "-?", "/h", "/help"};
    return std::any_of(QUESTIONS.begin(), QUESTIONS.end(),
                       [&](const char* question) { return gen_stricmp(argument, question) == 0; });
}

/// What may have been meant: the same word in other letters, an option, a verb before which a noun is missing, or similar
/// words.
std::vector<std::string> meant(const std::string& word, const COMMAND_TABLE& table, const NOUN& noun) {
    const std::vector<std::string> candidates = contents_of(noun);
    for (const std::string& candidate : candidates) {
        if (gen_stricmp(word, candidate) == 0) {
            return {candidate};
        }
    }
    if (asks_as_on_windows(word)) {
        return {HELP};
    }
    for (const std::string& option : options_everywhere(table)) {
        if (option == "--" + word) {
            return {option};
        }
    }
    const std::vector<std::string> verbs = verbs_behind(noun, word);
    return verbs.empty() ? nearest(word, candidates) : verbs;
}

/// What to say of a word that does not stand behind the noun.
std::string sentence(const std::string& word, const std::string& before, const COMMAND_TABLE& table, const NOUN& noun) {
    return fmt::format("there is no {} \"{}\"{}; {}", before.empty() ? "noun" : "verb", word,
                       did_you_mean(meant(word, table, noun)), known_words(before, contents_of(noun)));
}

/// How far the words lead through the nouns.
struct WAY {
    const VERB* verb = nullptr;  ///< null: none is reached
    std::string unknown;         ///< a sentence about the word that leads nowhere; "": none
    std::string missing;         ///< a sentence about the word that is still to come; "": none is
};

WAY way_of(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    WAY_TO_VERB way(table);
    std::string before;
    for (const std::string& word : words_of(table.options, arguments)) {
        if (!way.enter(word)) {
            return {nullptr, sentence(word, before, table, way.noun()), ""};
        }
        if (way.verb() != nullptr) {
            return {way.verb(), "", ""};
        }
        before += (before.empty() ? "" : " ") + word;
    }
    return {nullptr, "",
            fmt::format("a {} is missing; {}", before.empty() ? "noun" : "verb",
                        known_words(before, contents_of(way.noun())))};
}

/// Whether it looks like the name of one option: neither a negative number nor several letters in one word.
bool is_option_name(const std::string& name) {
    return name.starts_with("--") || (name.size() == 2 && name.front() == '-' && (name[1] < '0' || name[1] > '9'));
}

}  // namespace

std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    return way_of(table, arguments).unknown;
}

std::string unknown_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    std::vector<std::string> known = options_everywhere(table);
    if (const VERB* verb = way_of(table, arguments).verb) {
        for (const ARGUMENT& argument : verb->arguments) {
            known.push_back(argument.name);
        }
    }
    for (const std::string& argument : arguments) {
        const std::string name = argument.substr(0, argument.find('='));
        if (name == "--") {
            break;  // behind it are no options
        }
        if (is_option_name(name) && std::find(known.begin(), known.end(), name) == known.end()) {
            const bool is_word = name.starts_with("--");  // all letters are alike
            const std::vector<std::string> near = is_word ? nearest(name, known) : std::vector<std::string>();
            return fmt::format("there is no option \"{}\"{}", name,
                               did_you_mean(asks_as_on_windows(name) ? std::vector<std::string>{HELP} : near));
        }
    }
    return "";
}

std::string repeated_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    std::vector<std::string> single;
    for (const GLOBAL_OPTION& option : table.options) {
        if (!option.repeats && !option.value_name.empty()) {
            single.push_back(option.names);
        }
    }
    if (const VERB* verb = way_of(table, arguments).verb) {
        for (const ARGUMENT& argument : verb->arguments) {
            const bool repeats = argument.kind == ARGUMENT::OPTIONAL_TEXTS || argument.kind == ARGUMENT::FLAG;
            if (argument.name.starts_with("--") && !repeats) {
                single.push_back(argument.name);
            }
        }
    }
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    for (const std::string& option : single) {
        const auto gives_it = [&option](const std::string& argument) {
            return argument.substr(0, argument.find('=')) == option;
        };
        if (std::count_if(arguments.begin(), end, gives_it) > 1) {
            return fmt::format("{} is given more than once", option);
        }
    }
    return "";
}

std::string missing_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (const GLOBAL_OPTION* option = option_with_value(table.options, arguments[i]); option != nullptr) {
            if (++i == arguments.size()) {
                return fmt::format("{}: 1 required {} missing", option->names, option->value_name);
            }
        }
    }
    return way_of(table, arguments).missing;
}
