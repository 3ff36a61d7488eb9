#include "terminal/did_you_mean.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

#include "ascii.h"
#include "gen.h"
#include "terminal/quiet.h"

namespace {

/// How many changes may lie between what was typed and what was meant.
std::size_t tolerance(const std::string& name) {
    return std::clamp<std::size_t>(name.size() / 4, 1, 3);
}

/// Which characters a text has, in any case: a bit each, which some of them share.
std::uint64_t characters_of(const std::string& text) {
    std::uint64_t characters = 0;
    for (const char c : text) {
        characters |= std::uint64_t{1} << (static_cast<unsigned char>(ascii_upper(c)) % 64U);
    }
    return characters;
}

/// Measures how much candidates differ from one name. There are many of them, and batches ask for many names: the rows
/// are made once, and most candidates are left out before they are compared, by their length and their characters.
class EDIT_DISTANCE {
public:
    explicit EDIT_DISTANCE(std::string name) : m_name(std::move(name)) {
        std::transform(m_name.begin(), m_name.end(), m_name.begin(), ascii_upper);
        m_characters = characters_of(m_name);
    }

    /// The least number of characters to add, leave out, replace or swap with their neighbour, in any case;
    /// `limit + 1` when there are more than `limit`.
    std::size_t to(const std::string& candidate, std::size_t limit) {
        const std::size_t width = m_name.size() + 1;
        const std::size_t difference =
            candidate.size() < width ? width - 1 - candidate.size() : candidate.size() + 1 - width;
        if (difference > limit || lacks_more_than(limit, characters_of(candidate))) {
            return limit + 1;
        }
        m_before_last.assign(width, 0);
        m_last.assign(width, 0);
        m_row.resize(width);
        std::iota(m_row.begin(), m_row.end(), 0);
        for (std::size_t i = 1; i <= candidate.size(); ++i) {
            m_before_last.swap(m_last);
            m_last.swap(m_row);
            if (fill_row(candidate, i) > limit) {
                return limit + 1;
            }
        }
        return m_row.back();
    }

private:
    /// Whether one of the two has more characters that the other has not than changes could bring about.
    bool lacks_more_than(std::size_t limit, std::uint64_t characters) const {
        return static_cast<std::size_t>(std::max(std::popcount(m_characters & ~characters),
                                                 std::popcount(characters & ~m_characters))) > limit;
    }

    /// The row of the candidate's first `i` characters; gives its least value.
    std::size_t fill_row(const std::string& candidate, std::size_t i) {
        const char here = ascii_upper(candidate[i - 1]);
        const char before = i > 1 ? ascii_upper(candidate[i - 2]) : '\0';
        std::size_t least = m_row[0] = i;
        for (std::size_t j = 1; j < m_row.size(); ++j) {
            const std::size_t replaced = m_last[j - 1] + (here == m_name[j - 1] ? 0 : 1);
            std::size_t value = std::min({m_last[j] + 1, m_row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && here == m_name[j - 2] && before == m_name[j - 1]) {
                value = std::min(value, m_before_last[j - 2] + 1);
            }
            m_row[j] = value;
            least = std::min(least, value);
        }
        return least;
    }

    std::string m_name;
    std::uint64_t m_characters = 0;
    std::vector<std::size_t> m_before_last;
    std::vector<std::size_t> m_last;
    std::vector<std::size_t> m_row;
};

}  // namespace

std::vector<std::string> nearest(const std::string& name, const std::vector<std::string>& candidates,
                                 const std::function<bool(const std::string&)>& may_be_meant) {
    constexpr std::size_t MOST = 5;
    EDIT_DISTANCE distance_from_name(name);
    const std::size_t limit = tolerance(name);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = distance_from_name.to(candidate, limit);
        if (distance > 0 && distance <= limit && !candidate.empty()) {
            near.emplace_back(distance, candidate);
        }
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    std::vector<std::string> names;
    for (auto found = near.begin(); found != near.end() && names.size() < MOST; ++found) {
        if (!may_be_meant || may_be_meant(found->second)) {
            names.push_back(std::move(found->second));
        }
    }
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
