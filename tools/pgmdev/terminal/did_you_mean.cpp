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

std::string nearest_or_all(const std::string& value, const std::vector<std::string>& known) {
    constexpr std::size_t FEW = 12;
    std::vector<std::string> near = nearest(value, known);
    if (near.empty()) {
        near = longer_or_shorter(value, known);
    }
    if (!near.empty() || known.empty() || known.size() > FEW) {
        return did_you_mean(near);
    }
    return is_quiet() ? "" : fmt::format("; there are {}", fmt::join(known, ", "));
}
