#include "name_pattern.h"

#include <algorithm>

#include "source_rows.h"

namespace {

/// Names are expanded up to this length, so that one that is a little too long is told of by itself.
constexpr std::size_t LONGEST_EXPANDED_NAME = 4 * MAX_NAME_LENGTH;

std::size_t longest_of(const std::vector<std::string>& texts) {
    std::size_t longest = 0;
    for (const std::string& text : texts) {
        longest = std::max(longest, text.size());
    }
    return longest;
}

/// Every name so far with every ending, the endings changing fastest.
std::vector<std::string> combine(const std::vector<std::string>& names, const std::vector<std::string>& endings) {
    std::vector<std::string> combined;
    combined.reserve(names.size() * endings.size());
    for (const std::string& name : names) {
        for (const std::string& ending : endings) {
            combined.push_back(name + ending);
        }
    }
    return combined;
}

/// Makes of every name so far the ones with each ending. False: they would be much too long.
bool append(std::vector<std::string>& names, const std::vector<std::string>& endings) {
    const std::size_t longest = longest_of(endings);
    if (longest == 0 && endings.size() == 1) {
        return true;  // braces around nothing
    }
    if (longest_of(names) + longest > LONGEST_EXPANDED_NAME) {
        return false;
    }
    names = combine(names, endings);
    return true;
}

}  // namespace

std::string expand_pattern(const std::string& pattern, std::vector<std::string>& names) {
    const auto too_long = [&pattern] {
        return "pattern \"" + pattern + "\" stands for a name of more than " + std::to_string(LONGEST_EXPANDED_NAME) +
               " characters";
    };
    std::vector<std::string> found{""};
    for (std::size_t position = 0; position < pattern.size();) {
        const std::size_t brace = pattern.find_first_of("{}", position);
        if (!append(found, {pattern.substr(position, brace - position)})) {
            return too_long();
        }
        if (brace == std::string::npos) {
            break;
        }
        const std::size_t close = pattern.find_first_of("{}", brace + 1);
        if (pattern[brace] != '{' || close == std::string::npos || pattern[close] != '}') {
            return "pattern \"" + pattern + "\" has a brace without its partner, or braces within braces";
        }
        const std::vector<std::string> alternatives = split_list(pattern.substr(brace + 1, close - brace - 1));
        if (found.size() * alternatives.size() > MAX_PATTERN_NAMES) {
            return "pattern \"" + pattern + "\" stands for more than " + std::to_string(MAX_PATTERN_NAMES) + " names";
        }
        if (!append(found, alternatives)) {
            return too_long();
        }
        position = close + 1;
    }
    names.insert(names.end(), found.begin(), found.end());
    return "";
}
