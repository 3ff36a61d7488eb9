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

}  // namespace

std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments) {
    const std::vector<NOUN>* groups = &table.all.groups;
    const std::vector<VERB>* verbs = &table.all.verbs;
    std::string before;
    for (const std::string& word : words_of(table.options, arguments)) {
        const auto has_that_name = [&word](const auto& entry) { return entry.name == word; };
        if (std::any_of(verbs->begin(), verbs->end(), has_that_name)) {
            return "";
        }
        const auto group = std::find_if(groups->begin(), groups->end(), has_that_name);
        if (group == groups->end()) {
            std::vector<std::string> candidates;
            for (const VERB& verb : *verbs) {
                candidates.push_back(verb.name);
            }
            for (const NOUN& other : *groups) {
                candidates.push_back(other.name);
            }
            return sentence(word, before, candidates);
        }
        verbs = &group->verbs;
        groups = &group->groups;
        before += (before.empty() ? "" : " ") + word;
    }
    return "";
}
