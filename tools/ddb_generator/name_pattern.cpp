#include "name_pattern.h"

#include "source_rows.h"

namespace {

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

}  // namespace

std::string expand_pattern(const std::string& pattern, std::vector<std::string>& names) {
    std::vector<std::string> found{""};
    for (std::size_t position = 0; position < pattern.size();) {
        const std::size_t brace = pattern.find_first_of("{}", position);
        found = combine(found, {pattern.substr(position, brace - position)});
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
        found = combine(found, alternatives);
        position = close + 1;
    }
    names.insert(names.end(), found.begin(), found.end());
    return "";
}
