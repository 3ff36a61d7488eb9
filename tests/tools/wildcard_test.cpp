#include "wildcard.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

// Patterns, against trying everything.

namespace {

using CHARACTERS = std::vector<std::string>;

/// By the words of the header, for texts taken apart into characters.
bool fits_by_trying(const CHARACTERS& text, std::size_t at, const CHARACTERS& pattern, std::size_t in_pattern) {
    if (in_pattern == pattern.size()) {
        return at == text.size();
    }
    if (pattern[in_pattern] == "*") {
        return fits_by_trying(text, at, pattern, in_pattern + 1) ||
               (at < text.size() && fits_by_trying(text, at + 1, pattern, in_pattern));
    }
    return at < text.size() && (pattern[in_pattern] == "?" || pattern[in_pattern] == text[at]) &&
           fits_by_trying(text, at + 1, pattern, in_pattern + 1);
}

/// A byte, with all bytes 80 to BF that follow it.
CHARACTERS characters_of(const std::string& text) {
    CHARACTERS characters;
    for (const char byte : text) {
        if (characters.empty() || static_cast<signed char>(byte) >= -0x40) {
            characters.emplace_back();
        }
        characters.back() += byte;
    }
    return characters;
}

/// All rows of up to that many of these characters.
std::vector<CHARACTERS> rows_of_characters(const CHARACTERS& characters, std::size_t most) {
    std::vector<CHARACTERS> rows{{}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (const std::string& each : characters) {
            if (rows[i].size() < most) {
                CHARACTERS longer = rows[i];
                longer.push_back(each);
                rows.push_back(std::move(longer));
            }
        }
    }
    return rows;
}

std::string joined(const CHARACTERS& characters) {
    std::string text;
    for (const std::string& each : characters) {
        text += each;
    }
    return text;
}

}  // namespace

TEST(Wildcard, FitsWhatTryingFinds) {
    const CHARACTERS letters{"a", "b", "é", "漢"};
    std::size_t fitting = 0;
    for (const CHARACTERS& text : rows_of_characters(letters, 3)) {
        for (const CHARACTERS& pattern : rows_of_characters({"a", "é", "?", "*"}, 4)) {
            const bool expected = fits_by_trying(text, 0, pattern, 0);
            ASSERT_EQ(fits_pattern(joined(text), joined(pattern)), expected) << joined(text) << ' ' << joined(pattern);
            fitting += expected ? 1U : 0U;
        }
    }
    EXPECT_GT(fitting, 1000U);
}

TEST(Wildcard, TakesNoMoreTimeForManyStars) {
    const std::string text(2000, 'a');
    std::string pattern;
    for (int i = 0; i < 200; ++i) {
        pattern += "*a";
    }
    EXPECT_TRUE(fits_pattern(text, pattern));
    EXPECT_FALSE(fits_pattern(text, pattern + "b"));
}

TEST(Wildcard, BytesThatAreNoUtf8AreCharactersToo) {
    EXPECT_TRUE(fits_pattern("\xE9", "?"));
    EXPECT_TRUE(fits_pattern("caf\xE9", "CAF?"));
    EXPECT_TRUE(fits_pattern("\x80\x80", "*"));
    EXPECT_FALSE(fits_pattern("\xE9z", "?"));
}

// Pieces of characters may make one where they stand side by side.
TEST(Wildcard, PiecesOfCharactersFitWhatTryingFinds) {
    std::size_t fitting = 0;
    for (const CHARACTERS& pieces : rows_of_characters({"a", "\xC3", "\xA9"}, 4)) {
        const std::string text = joined(pieces);
        for (const CHARACTERS& in_pattern : rows_of_characters({"a", "\xC3", "\xA9", "?", "*"}, 4)) {
            const std::string pattern = joined(in_pattern);
            const bool expected = fits_by_trying(characters_of(text), 0, characters_of(pattern), 0);
            ASSERT_EQ(fits_pattern(text, pattern), expected) << text << ' ' << pattern;
            fitting += expected ? 1U : 0U;
        }
    }
    EXPECT_GT(fitting, 1000U);
    EXPECT_FALSE(fits_pattern("caf\xC3\xA9", "caf\xC3?"));
    EXPECT_FALSE(fits_pattern("caf\xC3\xA9", "caf\xC3*"));
    EXPECT_FALSE(fits_pattern("caf\xC3\xA9", "*\xA9"));
}
