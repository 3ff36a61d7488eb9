#include "near_names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <string_view>
#include <utility>

#include "ascii.h"
#include "gen.h"

namespace {

/// How many changes may lie between what was typed and what was meant.
std::size_t tolerance(const std::string& name) {
    return std::clamp<std::size_t>(name.size() / 4, 1, 3);
}

/// A bit for each character, in any case, which some of them share.
constexpr std::array<std::uint64_t, 256> CHARACTER_BITS = [] {
    std::array<std::uint64_t, 256> bits{};
    for (std::size_t c = 0; c < bits.size(); ++c) {
        bits[c] = std::uint64_t{1} << (static_cast<unsigned char>(ascii_upper(static_cast<char>(c))) % 64U);
    }
    return bits;
}();

/// Which characters a text has.
std::uint64_t characters_of(std::string_view text) {
    std::uint64_t characters = 0;
    for (const char c : text) {
        characters |= CHARACTER_BITS[static_cast<unsigned char>(c)];
    }
    return characters;
}

bool has_more_bits_than(std::size_t limit, std::uint64_t bits) {
    for (std::size_t i = 0; i < limit; ++i) {
        bits &= bits - 1;  // takes the lowest one away
    }
    return bits != 0;
}

}  // namespace

NEAR_NAMES::NEAR_NAMES(std::string name) : m_name(std::move(name)), m_limit(tolerance(m_name)) {
    std::transform(m_name.begin(), m_name.end(), m_name.begin(), ascii_upper);
    m_characters = characters_of(m_name);
}

bool NEAR_NAMES::may_be_near(std::string_view candidate) const {
    if (candidate.size() > m_name.size() + m_limit || candidate.size() + m_limit < m_name.size()) {
        return false;
    }
    const std::uint64_t characters = characters_of(candidate);
    return !has_more_bits_than(m_limit, m_characters & ~characters) &&
           !has_more_bits_than(m_limit, characters & ~m_characters);
}

void NEAR_NAMES::consider(std::string_view candidate) {
    const std::size_t distance = may_be_near(candidate) ? distance_to(candidate) : 0;
    if (distance > 0 && distance <= m_limit && !candidate.empty()) {
        m_near.emplace_back(distance, candidate);
    }
}

std::vector<std::string> NEAR_NAMES::best(const std::function<bool(const std::string&)>& may_be_meant) {
    constexpr std::size_t MOST = 5;
    std::sort(m_near.begin(), m_near.end());
    m_near.erase(std::unique(m_near.begin(), m_near.end()), m_near.end());
    std::vector<std::string> names;
    for (auto found = m_near.begin(); found != m_near.end() && names.size() < MOST; ++found) {
        if (may_be_meant(found->second)) {
            names.push_back(found->second);
        }
    }
    return names;
}

std::size_t NEAR_NAMES::distance_to(std::string_view candidate) {
    const std::size_t width = m_name.size() + 1;
    m_before_last.assign(width, 0);
    m_last.assign(width, 0);
    m_row.resize(width);
    std::iota(m_row.begin(), m_row.end(), 0);
    for (std::size_t i = 1; i <= candidate.size(); ++i) {
        m_before_last.swap(m_last);
        m_last.swap(m_row);
        if (fill_row(candidate, i) > m_limit) {
            return m_limit + 1;
        }
    }
    return m_row.back();
}

std::size_t NEAR_NAMES::fill_row(std::string_view candidate, std::size_t i) {
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

std::vector<std::string> nearest(const std::string& name, const std::vector<std::string>& candidates) {
    NEAR_NAMES near(name);
    for (const std::string& candidate : candidates) {
        near.consider(candidate);
    }
    return near.best([](const std::string&) { return true; });
}

std::vector<std::string> longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates) {
    constexpr std::size_t MOST = 8;
    constexpr std::size_t LEAST_SHARED = 3;  // fewer characters begin names of all makers
    std::vector<std::string> names;
    for (const std::string& candidate : candidates) {
        const std::size_t shared = std::min(candidate.size(), name.size());
        if (names.size() < MOST && shared >= LEAST_SHARED &&
            gen_stricmp(std::string_view(candidate).substr(0, shared), std::string_view(name).substr(0, shared)) == 0) {
            names.push_back(candidate);
        }
    }
    return names;
}

std::vector<std::string> probably_meant(const std::string& name, const std::vector<std::string>& candidates) {
    constexpr std::size_t MOST = 8;
    std::vector<std::string> meant = longer_or_shorter(name, candidates);
    const auto is_longer = [&name](const std::string& candidate) { return candidate.size() > name.size(); };
    const auto shorter = std::stable_partition(meant.begin(), meant.end(), is_longer);
    std::vector<std::string> near = nearest(name, candidates);
    std::erase_if(
        near, [&meant](const std::string& each) { return std::find(meant.begin(), meant.end(), each) != meant.end(); });
    meant.insert(shorter, near.begin(), near.end());
    meant.resize(std::min(meant.size(), MOST));
    return meant;
}
