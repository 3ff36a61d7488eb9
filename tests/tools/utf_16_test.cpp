#include "command_fixture.h"
#include "flash_source.h"
#include "sfdp_dumps.h"
#include "utf_8_input.h"

// Texts in UTF-16 behind a byte-order mark, as PowerShell writes what it redirects.

namespace {

enum ORDER { LITTLE, BIG };

std::string in_utf_16(const std::u16string& text, ORDER order) {
    std::string bytes = order == LITTLE ? "\xFF\xFE" : "\xFE\xFF";
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        (bytes += order == LITTLE ? low : high) += order == LITTLE ? high : low;
    }
    return bytes;
}

/// A text of ASCII.
std::string in_utf_16(const std::string& text, ORDER order) {
    return in_utf_16(std::u16string(text.begin(), text.end()), order);
}

const std::string HALF_MISSING = "it begins as UTF-16, and half a character of it is missing";

/// The first half of a character, without the second.
const std::u16string MALFORMED = u"KES50C6\n\xD83D\n";

}  // namespace

TEST(utf_16, EveryLengthOfACharacter) {
    for (const ORDER order : {LITTLE, BIG}) {
        EXPECT_EQ(as_utf_8(in_utf_16(u"", order)), "");
        EXPECT_EQ(as_utf_8(in_utf_16(u"a\x7F\x80\x7FF\x800\xD7FF\xE000\xFFFF", order)),
                  "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF");
        EXPECT_EQ(as_utf_8(in_utf_16(u"\xD800\xDC00\xDBFF\xDFFFz", order)), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBFz");
    }
}

TEST(utf_16, HalvesOfCharactersAreMalformed) {
    for (const ORDER order : {LITTLE, BIG}) {
        EXPECT_EQ(as_utf_8(in_utf_16(u"a\xD800", order)), std::nullopt) << "the end behind a first half";
        EXPECT_EQ(as_utf_8(in_utf_16(u"\xD800\x0061", order)), std::nullopt);
        EXPECT_EQ(as_utf_8(in_utf_16(u"\xD800\xD800\xDC00", order)), std::nullopt);
        EXPECT_EQ(as_utf_8(in_utf_16(u"\xDC00\xD800", order)), std::nullopt);
        EXPECT_EQ(as_utf_8(in_utf_16(u"a", order) + "b"), std::nullopt) << "an odd byte";
    }
}

TEST(utf_16, WithoutItsMarkATextIsLeftAsItIs) {
    for (const std::string text : {"", "a", "\xFF", "\xFE", "\xFF\xFFz", "\xFE\xFEz", "\xC3\xA4", "\xEF\xBB\xBFz"}) {
        EXPECT_EQ(as_utf_8(text), text);
    }
}

TEST(utf_16, BatchesAreAnswered) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> batches{
        {{"--json", "part", "info", "-"}, "KES50C6\r\n\r\nKES50C7"},
        {{"--json", "name", "show", "-"}, "KES50C6\nnone\n"},
        {{"--json", "flash", "identify", "-"}, "EF4017\r\nC22019\r\n"},
    };
    for (const auto& [arguments, input] : batches) {
        const PROCESS_RESULT plain = run_command(arguments, input);
        for (const ORDER order : {LITTLE, BIG}) {
            const PROCESS_RESULT wide = run_command(arguments, in_utf_16(input, order));
            EXPECT_EQ(wide.exit_code, plain.exit_code);
            EXPECT_EQ(wide.output, plain.output);
            EXPECT_EQ(wide.errors, plain.errors);
        }
    }
    const PROCESS_RESULT foreign = run_command({"--json", "name", "show", "-"}, in_utf_16(u"K\xE4\x65E5\n", LITTLE));
    EXPECT_EQ(json_of(foreign.output).at("query"), "K\xC3\xA4\xE6\x97\xA5");
}

TEST(utf_16, ABatchEndsAtHalfACharacter) {
    const PROCESS_RESULT result = run_command({"--json", "name", "show", "-"}, in_utf_16(MALFORMED, LITTLE));
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    const std::vector<JSON> answers = json_lines_of(result.output);
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].at("query"), "KES50C6");
    EXPECT_EQ(answers[1].at("error").at("code"), "file_unreadable");
    EXPECT_TRUE(contains(result.errors, HALF_MISSING)) << result.errors;
}

TEST(utf_16, DescriptionsAreRead) {
    const SCRATCH scratch;
    const std::string text = "like = W25Q64JV\r\ndevice_name = OWN # \r\n";
    const std::string plain = scratch.write("plain.txt", text);
    const PROCESS_RESULT expected = run_command({"flash", "define", "@" + plain});
    ASSERT_EQ(expected.exit_code, DONE) << expected.errors;
    for (const ORDER order : {LITTLE, BIG}) {
        const std::string wide = scratch.write("wide.txt", in_utf_16(text, order));
        EXPECT_EQ(run_command({"flash", "define", "@" + wide}).output, expected.output);
        EXPECT_EQ(run_command({"flash", "define", "@-"}, in_utf_16(text, order)).output, expected.output);
    }
    expect_failure(run_command({"flash", "define", "@" + scratch.write("half.txt", in_utf_16(MALFORMED, BIG))}),
                   INTERNAL_ERROR, {"the description cannot be read: " + HALF_MISSING, "half.txt"});
}

TEST(utf_16, DumpsAreRead) {
    const std::string dump = read_file(dump_file("W25Q512JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q512JV")));
    const SCRATCH scratch;
    for (const ORDER order : {LITTLE, BIG}) {
        const std::string digits = in_utf_16(digits_of(dump, " ") + "\r\n", order);
        EXPECT_EQ(without_query(decoded(scratch.write("dump.txt", digits))), expected);
        EXPECT_EQ(without_query(decoded("-", digits)), expected);
    }
}

TEST(utf_16, LogsHaveAllTheirCharacters) {
    // U+0A0D has the bytes of two line ends.
    const std::u16string text = u"starting\r\nJEDEC ID: EF4018 \xA0D\xFC\xD83D\xDE00\r\n";
    for (const ORDER order : {LITTLE, BIG}) {
        const PROCESS_RESULT result =
            run_command({"--json", "flash", "identify", "--log", "-"}, in_utf_16(text, order));
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
        const JSON told = json_of(result.output).at("log");
        EXPECT_EQ(told.at("line"), 2);
        EXPECT_EQ(told.at("text"), "JEDEC ID: EF4018 \xE0\xA8\x8D\xC3\xBC\xF0\x9F\x98\x80");
    }
    const SCRATCH scratch;
    const std::string half = scratch.write("half.txt", in_utf_16(MALFORMED, LITTLE));
    for (const std::string& log : {half, std::string("-")}) {
        expect_failure(run_command({"flash", "identify", "--log", log}, in_utf_16(MALFORMED, LITTLE)), INTERNAL_ERROR,
                       {"the log cannot be read: " + HALF_MISSING + ": " + log});
    }
}

TEST(utf_16, AcceptedWarningsAreRead) {
    const SCRATCH scratch;
    const std::string table = scratch.write("t.csv", FLASH_SOURCE().row({{"die_count", "0"}}).text());
    for (const ORDER order : {LITTLE, BIG}) {
        scratch.write("t.csv.accepted", in_utf_16("CHIP die_count * # a module\r\n", order));
        const PROCESS_RESULT result = run_command({"flash", "check", "--strict", table});
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
    }
    const std::string half = scratch.write("t.csv.accepted", in_utf_16(MALFORMED, BIG));
    expect_failure(run_command({"flash", "check", table}), INTERNAL_ERROR,
                   {"the file cannot be read, since " + HALF_MISSING + ": " + half});
}
