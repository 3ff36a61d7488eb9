#include "terminal/unknown_word.h"

#include <fmt/core.h>

#include <algorithm>

#include "gen.h"
#include "terminal/did_you_mean.h"

namespace {

/// The words among the arguments: neither options nor their values. Options of verbs stand behind all nouns and verbs.
std::vector<std::string> words_of(const std::vector<GLOBAL_OPTION>& options,
                                  const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool has_value = std::any_of(options.begin(), options.end(), [&](const GLOBAL_OPTION& option) {
            return option.names == arguments[i] && !option.value_name.empty();
        });
        if (has_value) {
            ++i;
        } else if (!arguments[i].starts_with('-')) {
            words.push_back(arguments[i]);
        }
    }
    return words;
}

/// What may have been meant: the same word in other letters, or similar ones.
std::vector<std::string> meant(const std::string& word, const std::vector<std::string>& candidates) {
    for (const std::string& candidate : candidates) {
        if (gen_stricmp(word, candidate) == 0) {
            return {candidate};
        }
    }
    return nearest(word, candidates);
}

std::string sentence(const std::string& word, const std::string& before, const std::vector<std::string>& candidates) {
    std::string all;
    for (const std::string& candidate : candidates) {
        all += (all.empty() ? "" : ", ") + candidate;
    }
    const std::string known = before.empty() ? "the nouns are" : fmt::format("behind \"{}\" may stand", before);
    return fmt::format("there is no {} \"{}\"{}; {} {}", before.empty() ? "noun" : "verb", word,
                       did_you_mean(meant(word, candidates)), known, all);
}

/// How far the words lead through the nouns.
struct WAY {
    const VERB* verb = nullptr;  ///< null: none is reached
    std::string unknown;         ///< a sentence about the word that leads nowhere; "": none
};

WAY way_of(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    const NOUN* noun = &table.all;
    std::string before;
    for (const std::string& word : words_of(table.options, arguments)) {
        const auto has_that_name = [&word](const auto& entry) { return entry.name == word; };
        const auto verb = std::find_if(noun->verbs.begin(), noun->verbs.end(), has_that_name);
        if (verb != noun->verbs.end()) {
            return {&*verb, ""};
        }
        const auto group = std::find_if(noun->groups.begin(), noun->groups.end(), has_that_name);
        if (group == noun->groups.end()) {
            std::vector<std::string> candidates;
            for (const VERB& other : noun->verbs) {
                candidates.push_back(other.name);
            }
            for (const NOUN& other : noun->groups) {
                candidates.push_back(other.name);
            }
            return {nullptr, sentence(word, before, candidates)};
        }
        noun = &*group;
        before += (before.empty() ? "" : " ") + word;
    }
    return {};
}

}  // namespace

std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    return way_of(table, arguments).unknown;
}

std::string unknown_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    std::vector<std::string> known{"--help"};
    for (const GLOBAL_OPTION& option : table.options) {
        known.push_back(option.names.substr(option.names.find("--")));
    }
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
        if (name.starts_with("--") && std::find(known.begin(), known.end(), name) == known.end()) {
            return fmt::format("there is no option \"{}\"{}", name, did_you_mean(nearest(name, known)));
        }
    }
    return "";
}
