#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gen.h"
#include "qtl.h"
#include "stl.h"
#include "support/reports.h"

// Texts: comparing, trimming, case, splitting.

namespace {

std::string all_bytes() {
    std::string text;
    for (int byte = 0; byte < 256; ++byte) {
        text += static_cast<char>(byte);
    }
    return text;
}

using CELLS = std::vector<std::string>;

CELLS cells(const std::string& separators, bool keep_empty, const std::string& line) {
    return QTL_TOKENIZER(separators, keep_empty, "", "", "", false).tokenize(line);
}

}  // namespace

TEST(gen_stricmp, IgnoresTheCaseOfAsciiLetters) {
    EXPECT_EQ(gen_stricmp("", ""), 0);
    EXPECT_EQ(gen_stricmp("W25Q64jv", "w25q64JV"), 0);
    EXPECT_EQ(gen_stricmp("ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"), 0);
    EXPECT_NE(gen_stricmp("\xC3\x84", "\xC3\xA4"), 0);  // only ASCII letters have a case
    EXPECT_NE(gen_stricmp("@", "`"), 0);
    EXPECT_NE(gen_stricmp("[", "{"), 0);
}

TEST(gen_stricmp, TellsTheOrder) {
    EXPECT_LT(gen_stricmp("a", "B"), 0);
    EXPECT_LT(gen_stricmp("A", "b"), 0);
    EXPECT_GT(gen_stricmp("b", "A"), 0);
    EXPECT_LT(gen_stricmp("", "a"), 0);
    EXPECT_GT(gen_stricmp("a", ""), 0);
    EXPECT_LT(gen_stricmp("abc", "ABCD"), 0);
    EXPECT_GT(gen_stricmp("ABCD", "abc"), 0);
    EXPECT_LT(gen_stricmp("9", "A"), 0);
}

TEST(gen_stricmp, BytesAreUnsigned) {
    EXPECT_GT(gen_stricmp("\x80", "z"), 0);
    EXPECT_LT(gen_stricmp("z", "\xFF"), 0);
    EXPECT_LT(gen_stricmp("\x80", "\xFF"), 0);
}

TEST(gen_stricmp, ComparesBehindNulBytes) {
    EXPECT_LT(gen_stricmp(std::string_view("a\0b", 3), std::string_view("a\0c", 3)), 0);
    EXPECT_GT(gen_stricmp(std::string_view("a\0", 2), "a"), 0);
}

TEST(gen_trim, RemovesWhiteSpaceAtBothEnds) {
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces("  a b  "), "a b");
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces(" \t\n\r\v\fx \t y\f\v\r\n\t "), "x \t y");
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces("x"), "x");
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces(""), "");
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces(" \t\n\r\v\f"), "");
}

TEST(gen_trim, RemovesNothingElse) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const bool white = byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\v' || byte == '\f';
        EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces(text), white ? "" : text) << byte;
    }
    EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces("\xC2\xA0x"), "\xC2\xA0x");  // a no-break space stays
}

TEST(stl, OnlyAsciiLettersHaveACase) {
    std::string upper = all_bytes();
    std::string lower = all_bytes();
    stl_toupper(upper);
    stl_tolower(lower);
    ASSERT_EQ(upper.size(), 256U);
    ASSERT_EQ(lower.size(), 256U);
    const std::string small = "abcdefghijklmnopqrstuvwxyz";
    const std::string capital = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const std::size_t as_small = small.find(c);
        const std::size_t as_capital = capital.find(c);
        EXPECT_EQ(upper[byte], as_small != std::string::npos ? capital[as_small] : c) << byte;
        EXPECT_EQ(lower[byte], as_capital != std::string::npos ? small[as_capital] : c) << byte;
    }
    std::string empty;
    stl_toupper(empty);
    stl_tolower(empty);
    EXPECT_EQ(empty, "");
}

TEST(qtl, DropsEmptyCells) {
    EXPECT_EQ(cells(" \t\n,", false, "a, b"), (CELLS{"a", "b"}));
    EXPECT_EQ(cells(" \t\n,", false, ",, a ,\t,b\n,"), (CELLS{"a", "b"}));
    EXPECT_EQ(cells(" \t\n,", false, "a"), (CELLS{"a"}));
    EXPECT_EQ(cells(" \t\n,", false, ""), CELLS{});
    EXPECT_EQ(cells(" \t\n,", false, " ,\t\n"), CELLS{});
}

TEST(qtl, KeepsEmptyCells) {
    EXPECT_EQ(cells(" ,", true, "a, b"), (CELLS{"a", "", "b"}));
    EXPECT_EQ(cells(",", true, "a,b"), (CELLS{"a", "b"}));
    EXPECT_EQ(cells(",", true, "a,b,"), (CELLS{"a", "b", ""}));
    EXPECT_EQ(cells(",", true, ","), (CELLS{"", ""}));
    EXPECT_EQ(cells(",", true, ",,a"), (CELLS{"", "", "a"}));
    EXPECT_EQ(cells(",", true, ""), (CELLS{""}));
    EXPECT_EQ(cells(",", true, " a "), (CELLS{" a "}));
}

TEST(qtl, SeparatorsAreSingleBytes) {
    EXPECT_EQ(cells("", false, "a, b"), (CELLS{"a, b"}));
    EXPECT_EQ(cells("", true, "a, b"), (CELLS{"a, b"}));
    EXPECT_EQ(cells(";:", true, "a;:b"), (CELLS{"a", "", "b"}));
    EXPECT_EQ(cells(std::string("\0", 1), true, std::string("a\0b", 3)), (CELLS{"a", "b"}));
    EXPECT_EQ(cells(",", false, std::string("a\0b,c", 5)), (CELLS{std::string("a\0b", 3), "c"}));
    EXPECT_EQ(cells(",", false, "\"a,b\" 'c\\,d'"), (CELLS{"\"a", "b\" 'c\\", "d'"}));
    EXPECT_EQ(cells(",", false, "Aa"), (CELLS{"Aa"}));
}

TEST(qtl, LongLines) {
    const std::string cell(100000, 'x');
    EXPECT_EQ(cells(",", true, cell + "," + cell), (CELLS{cell, cell}));
    EXPECT_EQ(cells(",", true, std::string(100000, ',')).size(), 100001U);
    EXPECT_EQ(cells(",", false, std::string(100000, ',')), CELLS{});
}

TEST(qtl, RefusesWhatItDoesNotOffer) {
    const char* condition = "quotes.empty() && escapes.empty() && comments.empty() && !fold_case";
    EXPECT_REPORT(QTL_TOKENIZER(",", false, "\"", "", "", false), condition);
    EXPECT_REPORT(QTL_TOKENIZER(",", false, "", "\\", "", false), condition);
    EXPECT_REPORT(QTL_TOKENIZER(",", false, "", "", "#", false), condition);
    EXPECT_REPORT(QTL_TOKENIZER(",", false, "", "", "", true), condition);
    EXPECT_REPORT(QTL_TOKENIZER(",", true, "\"", "\\", "#", true), condition);
}
