#include <iomanip>
#include <sstream>

#include "tools/sfdp_dumps.h"

// Dumps of what a flash says of itself as texts, as people copy them and as programs print them.

namespace {

using WORDS = std::vector<std::string>;

/// The bytes as programs print them that show offsets and characters.
std::string dump_text(const std::string& bytes, const std::string& behind_offset, const std::string& characters) {
    std::string text;
    for (std::size_t place = 0; place < bytes.size(); place += 16) {
        const std::string offset = digits_of({static_cast<char>(place >> 8), static_cast<char>(place)}, "");
        text.append("0000").append(offset).append(behind_offset);
        text.append(digits_of(bytes.substr(place, 16), " ")).append(characters).append("\n");
    }
    return text;
}

/// The bytes as `hexdump` prints them without options: numbers of a machine that begins with the lowest byte.
std::string words_text(const std::string& bytes, const std::string& before_word = " ") {
    const auto offset = [](std::size_t place) {
        return "000" + digits_of({static_cast<char>(place >> 8), static_cast<char>(place)}, "");
    };
    std::string text;
    for (std::size_t place = 0; place < bytes.size(); place += 2) {
        const char high = place + 1 < bytes.size() ? bytes[place + 1] : '\0';
        text += place % 16 == 0 ? (place == 0 ? "" : "\n") + offset(place) : "";
        text += before_word + digits_of({high, bytes[place]}, "");
    }
    return text + "\n" + offset(bytes.size()) + "\n";
}

}  // namespace

TEST(flash_sfdp, TakesFilesDigitsAndStandardInput) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    EXPECT_EQ(without_query(decoded(digits_of(bytes, ""))), expected);
    EXPECT_EQ(without_query(decoded("-", bytes)), expected);
    EXPECT_EQ(without_query(decoded("-", digits_of(bytes, "") + "\n")), expected);
    EXPECT_EQ(without_query(decoded("-", "0x" + digits_of(bytes, ", 0x"))), expected);
    EXPECT_EQ(without_query(decoded("-", digits_of(bytes, ":"))), expected);
    EXPECT_EQ(without_query(decoded("-", dump_text(bytes, ": ", "  .SFDP abc......."))), expected);
    EXPECT_EQ(without_query(decoded("-", dump_text(bytes, "  ", "  |.SFDP ab def....|"))), expected);
    EXPECT_EQ(without_query(decoded("-", dump_text(bytes, " ", "\r"))), expected);
    EXPECT_EQ(without_query(decoded("-", "\xEF\xBB\xBF" + dump_text(bytes, ": ", "  .SFDP abc......."))), expected);

    const SCRATCH scratch;
    EXPECT_EQ(without_query(decoded(scratch.write("dump.txt", digits_of(bytes, " ")))), expected);
}

// As `od -t x1` prints them, with its option -A, and as `od -x` does.
TEST(flash_sfdp, OffsetsMayBeOctalOrDecimal) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));  // FF from 10h to 80h
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    for (const int base : {8, 10, 16}) {
        const auto offset = [base](std::size_t place) {
            std::ostringstream text;
            text << std::setbase(base) << std::setw(7) << std::setfill('0') << place;
            return text.str();
        };
        std::string text;
        for (std::size_t place = 0; place < bytes.size(); place += 16) {
            if (place < 0x20 || place >= 0x80) {
                text += offset(place) + " " + digits_of(bytes.substr(place, 16), " ") + "\n";
            } else if (place == 0x20) {
                text += "*\n";
            }
        }
        EXPECT_EQ(without_query(decoded("-", text + offset(bytes.size()))), expected) << text;

        std::string words;
        for (const std::string& line : lines_of(words_text(bytes))) {
            words += offset(std::stoul(line.substr(0, 7), nullptr, 16)) + line.substr(7) + "\n";
        }
        EXPECT_EQ(without_query(decoded("-", words)), expected) << words;
    }
}

TEST(flash_sfdp, DumpsInWhichLinesAreMissingAreRefused) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    WORDS lines = lines_of(dump_text(bytes, ": ", ""));
    lines.erase(lines.begin() + 4);
    const auto expect_refusal = [](const WORDS& of) {
        std::string text;
        for (const std::string& line : of) {
            text += line + "\n";
        }
        expect_failure(run_command({"flash", "sfdp", "-"}, text), INTERNAL_ERROR,
                       {"the SFDP dump is refused: byte 00h, signature", "when no line of it is missing"});
    };
    expect_refusal(lines);
    lines.erase(lines.begin() + 2, lines.end() - 1);  // of few lines, too
    expect_refusal(lines);
    for (const char* behind_offset : {": ", "  "}) {
        lines = lines_of(dump_text(bytes, behind_offset, ""));
        lines.erase(lines.begin() + 1);  // the second one
        expect_refusal(lines);
    }
}

// Such as a second copy of the whole, or numbers that count something else.
TEST(flash_sfdp, OffsetsThatCountNoBytesAreLeftAlone) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    const std::string text = dump_text(bytes, ": ", "");
    EXPECT_EQ(without_query(decoded("-", text + text)).at("record"), expected.at("record"));
    std::string numbered;
    std::size_t number = 100000;
    for (const std::string& line : lines_of(text)) {
        numbered += std::to_string(number++) + line.substr(8) + "\n";
    }
    EXPECT_EQ(without_query(decoded("-", numbered)), expected);
}

TEST(flash_sfdp, StarsOfDumpsRepeatTheLineBefore) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));  // FF from 10h to 80h
    WORDS lines = lines_of(dump_text(bytes, "  ", "  |................|"));
    lines.erase(lines.begin() + 2, lines.begin() + 8);
    lines.insert(lines.begin() + 2, "*");
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    EXPECT_EQ(without_query(decoded("-", text + "000000c0\n")), without_query(decoded(dump_file("W25Q128JV"))));
    const PROCESS_RESULT endless = run_command({"flash", "sfdp", "-"}, "00000000  53 46\n*\nfffffff0  00\n");
    expect_failure(endless, INTERNAL_ERROR, {"byte 00h, signature"});
}

TEST(flash_sfdp, TakesDumpsOfNumbersOfTwoBytes) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    EXPECT_EQ(without_query(decoded("-", words_text(bytes))), expected);
    EXPECT_EQ(without_query(decoded("-", words_text(bytes, "    "))), expected);
    const SCRATCH scratch;
    EXPECT_EQ(without_query(decoded(scratch.write("dump.txt", words_text(bytes)))), expected);

    WORDS lines = lines_of(words_text(bytes));  // FF from 10h to 80h
    lines.erase(lines.begin() + 2, lines.begin() + 8);
    lines.insert(lines.begin() + 2, "*");
    std::string shortened;
    for (const std::string& line : lines) {
        shortened += line + "\r\n";
    }
    EXPECT_EQ(without_query(decoded("-", shortened)), expected);
}

// The zero that completes the last number is no byte of the flash.
TEST(flash_sfdp, TheOffsetBehindNumbersTellsHowManyBytesThereAre) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const std::string cut = bytes.substr(0, bytes.size() - 1);
    const PROCESS_RESULT as_bytes = run_command({"--json", "flash", "sfdp", "-"}, cut);
    const PROCESS_RESULT as_numbers = run_command({"--json", "flash", "sfdp", "-"}, words_text(cut));
    EXPECT_EQ(as_numbers.output, as_bytes.output);
    EXPECT_NE(as_numbers.output, run_command({"--json", "flash", "sfdp", "-"}, words_text(cut + '\0')).output);
}

// Offsets in octal, as od -x prints them, or lines that are missing.
TEST(flash_sfdp, RefusesNumbersThatAreNotWhereTheirOffsetsSay) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    WORDS lines = lines_of(words_text(bytes));
    lines.erase(lines.begin() + 1);
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    expect_failure(run_command({"flash", "sfdp", "-"}, text), INTERNAL_ERROR, {"byte 00h, signature"});
}

// Eight digits may be bytes, or an offset before bytes, where numbers of four bytes might be as well.
TEST(flash_sfdp, PairsStayPairsBesideNumbers) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    std::string groups;  // of four bytes, and a last line of single ones
    for (std::size_t place = 0; place + 4 < bytes.size(); place += 4) {
        groups += digits_of(bytes.substr(place, 4), "") + (place % 16 == 12 ? "\n" : " ");
    }
    EXPECT_EQ(without_query(decoded("-", groups + "\n" + digits_of(bytes.substr(bytes.size() - 4), " "))), expected);

    std::string turned = dump_text(bytes, " ", "");
    turned.replace(0, 8, "50444653");  // an offset like any other, which the next one does not follow
    EXPECT_EQ(without_query(decoded("-", turned)), expected);
}
