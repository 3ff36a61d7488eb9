#include "terminal/did_you_mean.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "gen.h"
#include "stl.h"

namespace {

/// How many changes may lie between what was typed and what was meant.
std::size_t tolerance(const std::string& name) {
    return std::clamp<std::size_t>(name.size() / 4, 1, 3);
}

/// The least number of characters to add, leave out, replace or swap with their neighbour; `limit + 1` when there are
/// more than `limit`.
std::size_t edit_distance(const std::string& left, const std::string& right, std::size_t limit) {
    const std::size_t difference = left.size() > right.size() ? left.size() - right.size() : right.size() - left.size();
    if (difference > limit) {
        return limit + 1;
    }
    std::vector<std::size_t> before_last(right.size() + 1);
    std::vector<std::size_t> last(right.size() + 1);
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= left.size(); ++i) {
        before_last.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
                row[j] = std::min(row[j], before_last[j - 2] + 1);
            }
        }
        if (*std::min_element(row.begin(), row.end()) > limit) {
            return limit + 1;
        }
    }
    return row.back();
}

/// The text for the first of the names, as many as may be of use.
std::string suggestion(const std::vector<std::string>& names, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), most); ++i) {
        text += (i == 0 ? "; did you mean " : ", ") + names[i];
    }
    return text;
}

}  // namespace

std::string did_you_mean(std::string name, std::vector<std::string> candidates) {
    constexpr std::size_t MOST = 5;
    stl_toupper(name);
    const std::size_t limit = tolerance(name);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (std::string& candidate : candidates) {
        const std::size_t distance = edit_distance(name, candidate, limit);
        if (distance > 0 && distance <= limit && !candidate.empty()) {
            near.emplace_back(distance, std::move(candidate));
        }
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    std::vector<std::string> names;
    std::transform(near.begin(), near.end(), std::back_inserter(names), [](const auto& found) { return found.second; });
    return suggestion(names, MOST);
}

std::string did_you_mean_longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates) {
    constexpr std::size_t MOST = 8;
    constexpr std::size_t LEAST_SHARED = 3;  // fewer characters begin names of all makers
    std::vector<std::string> names;
    for (const std::string& candidate : candidates) {
        const std::size_t shared = std::min(candidate.size(), name.size());
        if (shared >= LEAST_SHARED && gen_stricmp(candidate.substr(0, shared), name.substr(0, shared)) == 0) {
            names.push_back(candidate);
        }
    }
    return suggestion(names, MOST);
}
