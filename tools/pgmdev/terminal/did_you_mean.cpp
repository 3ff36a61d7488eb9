#include "terminal/did_you_mean.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "gen.h"
#include "stl.h"
#include "terminal/quiet.h"

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

std::string in_upper_case(std::string text) {
    stl_toupper(text);
    return text;
}

}  // namespace

std::vector<std::string> nearest(const std::string& name, const std::vector<std::string>& candidates) {
    constexpr std::size_t MOST = 5;
    const std::string wanted = in_upper_case(name);
    const std::size_t limit = tolerance(wanted);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = edit_distance(wanted, in_upper_case(candidate), limit);
        if (distance > 0 && distance <= limit && !candidate.empty()) {
            near.emplace_back(distance, candidate);
        }
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    near.resize(std::min(near.size(), MOST));
    std::vector<std::string> names;
    std::transform(near.begin(), near.end(), std::back_inserter(names), [](const auto& found) { return found.second; });
    return names;
}

std::vector<std::string> longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates) {
    constexpr std::size_t MOST = 8;
    constexpr std::size_t LEAST_SHARED = 3;  // fewer characters begin names of all makers
    std::vector<std::string> names;
    for (const std::string& candidate : candidates) {
        const std::size_t shared = std::min(candidate.size(), name.size());
        if (names.size() < MOST && shared >= LEAST_SHARED &&
            gen_stricmp(candidate.substr(0, shared), name.substr(0, shared)) == 0) {
            names.push_back(candidate);
        }
    }
    return names;
}

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
