#include "terminal/did_you_mean.h"

#include <fmt/format.h>

#include "terminal/quiet.h"

std::string did_you_mean(const std::vector<std::string>& names) {
    std::string text;
    if (is_quiet()) {
        return text;
    }
    for (const std::string& name : names) {
        text += (text.empty() ? "; did you mean " : ", ") + name;
    }
    return text;
}

std::string nearest_hint(const std::string& value, const std::vector<std::string>& known) {
    const std::vector<std::string> near = nearest(value, known);
    return did_you_mean(near.empty() ? longer_or_shorter(value, known) : near);
}

std::string nearest_advice(const std::string& value, const std::vector<std::string>& known) {
    const std::string hint = nearest_hint(value, known);
    return hint.substr(hint.empty() ? 0 : 2);
}

std::string nearest_or_all(const std::string& value, const std::vector<std::string>& known) {
    constexpr std::size_t FEW = 12;
    const std::string hint = nearest_hint(value, known);
    const bool tells_all = hint.empty() && !known.empty() && known.size() <= FEW && !is_quiet();
    return tells_all ? fmt::format("; there are {}", fmt::join(known, ", ")) : hint;
}
