#pragma once

/// \file
/// What a person who typed an unknown name may have meant.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Names that differ from `name` by few characters added, left out, replaced or swapped, in any case, the most similar
/// first.
std::vector<std::string> nearest(const std::string& name, const std::vector<std::string>& candidates);

/// The same, of candidates from here and there. There may be many, and batches ask for many names: most candidates are left
/// out before they are compared, by their length and their characters.
class NEAR_NAMES {
public:
    explicit NEAR_NAMES(std::string name);

    /// False for most candidates that are not near.
    bool may_be_near(std::string_view candidate) const;

    void consider(std::string_view candidate);

    /// Of those considered only what `may_be_meant` accepts: it is asked of the most similar ones.
    std::vector<std::string> best(const std::function<bool(const std::string& candidate)>& may_be_meant);

private:
    /// The least number of characters to add, leave out, replace or swap with their neighbour, in any case; `m_limit + 1`
    /// when there are more than `m_limit`.
    std::size_t distance_to(std::string_view candidate);

    /// The row of the candidate's first `i` characters; gives its least value.
    std::size_t fill_row(std::string_view candidate, std::size_t i);

    std::string m_name;
    std::size_t m_limit;
    std::uint64_t m_characters = 0;
    std::vector<std::pair<std::size_t, std::string>> m_near;  ///< with their distances
    std::vector<std::size_t> m_before_last;                   ///< rows, made once
    std::vector<std::size_t> m_last;
    std::vector<std::size_t> m_row;
};

/// Names that begin with `name`, or are the beginning of it, in their order: for names that people cut short.
std::vector<std::string> longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates);

/// Names that begin with `name`, in their order; behind them the nearest ones, and last what `name` begins with: for names
/// that people cut short and mistype.
std::vector<std::string> probably_meant(const std::string& name, const std::vector<std::string>& candidates);
