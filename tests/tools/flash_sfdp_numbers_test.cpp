#include <iomanip>
#include <sstream>

#include "tools/sfdp_dumps.h"

// Dumps of what a flash says of itself as numbers of several bytes, as programs print them.

namespace {

using WORDS = std::vector<std::string>;

/// How a program prints numbers.
struct NUMBERS {
    std::size_t size;  // in bytes
    bool lowest_first;
    std::string offset;  // of the first of them, as the digits that it has; "": none
    int base;            // of offsets
    std::string behind_offset;
    std::string characters;
    bool has_last_offset;
};

std::string numbers_text(const std::string& bytes, const NUMBERS& form) {
    constexpr std::size_t IN_A_LINE = 16;
    const auto offset = [&form](std::size_t place) {
        if (form.offset.empty()) {
            return std::string();
        }
        std::ostringstream text;
        text << std::setbase(form.base) << std::setw(static_cast<int>(form.offset.size())) << std::setfill('0')
             << std::stoul(form.offset, nullptr, form.base) + place;
        return text.str();
    };
    std::string text;
    for (std::size_t place = 0; place < bytes.size(); place += IN_A_LINE) {
        std::string line;
        for (std::size_t at = place; at < std::min(place + IN_A_LINE, bytes.size()); at += form.size) {
            std::string number = bytes.substr(at, form.size);
            number.resize(form.size);
            line += (line.empty() ? "" : " ") +
                    digits_of(form.lowest_first ? std::string(number.rbegin(), number.rend()) : number, "");
        }
        text += offset(place) + (form.offset.empty() ? "" : form.behind_offset) + line + form.characters + "\n";
    }
    return text + (form.has_last_offset ? offset(bytes.size()) + "\n" : "");
}

const std::vector<NUMBERS> NUMBERS_OF_TOOLS{
    // of a boot loader, behind addresses of memory
    {4, true, "80000000", 16, ": ", "    SFDP............", false},
    {4, false, "80000000", 16, ": ", "    SFDP............", false},
    {2, true, "80000000", 16, ": ", "    SFDP............", false},
    {8, true, "82000000", 16, ": ", "    SFDP............", false},
    // of `od`, with its options -A x, -A d, none, -A n
    {4, true, "000000", 16, " ", "", true},
    {4, false, "000000", 16, " ", "", true},
    {4, true, "0000000", 10, " ", "  >SFDP............<", true},
    {4, true, "0000000", 8, " ", "", true},
    {4, true, "", 16, "", "", false},
    {4, false, "", 16, "", "  >SFDP............<", false},
    {2, false, "0000000", 8, " ", "", true},
    {8, true, "0000000", 8, " ", "", true},
    {8, false, "000000", 16, " ", "", true},
    {2, true, "", 16, "", "", false},
    // of others
    {4, true, "00000000", 16, ": ", "  SFDP............", false},
    {4, true, "0", 16, "\t", "", false},
};

}  // namespace

TEST(flash_sfdp, TheSignatureTellsHowNumbersAreToBeRead) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    for (const NUMBERS& form : NUMBERS_OF_TOOLS) {
        const std::string text = numbers_text(bytes, form);
        EXPECT_EQ(without_query(decoded("-", text)), expected) << text;
    }
}

// Characters of digits are none of the numbers beside them.
TEST(flash_sfdp, TakesNumbersAsOdPrintsThem) {
    const std::string text =
        "000000 50444653 ff000105 10010500 ff000080\r\n"
        "000010 ffffffff ffffffff ffffffff ffffffff\r\n"
        "*\r\n"
        "000080 fff920e5 07ffffff 6b08eb44 bb423b08  abcdef\r\n"
        "000090 fffffffe 0000ffff eb40ffff 520f200c\r\n"
        "0000a0 0000d810 00a60236 c914ea82 337663e9\r\n"
        "0000b0 757a757a 5cd5a2f7 ff4df719 80f830e9\r\n"
        "0000c0\r\n";
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    EXPECT_EQ(without_query(decoded("-", text)), expected);
    const SCRATCH scratch;
    EXPECT_EQ(without_query(decoded(scratch.write("dump.txt", text))), expected);
}

// The zeros that complete the last number are no bytes of the flash.
TEST(flash_sfdp, TheOffsetBehindLongNumbersTellsHowManyBytesThereAre) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    for (std::size_t missing = 0; missing < 4; ++missing) {
        const std::string cut = bytes.substr(0, bytes.size() - missing);
        const std::string text = numbers_text(cut, {4, true, "000000", 16, " ", "", true});
        EXPECT_EQ(run_command({"--json", "flash", "sfdp", "-"}, text).output,
                  run_command({"--json", "flash", "sfdp", "-"}, cut).output)
            << missing;
    }
}

TEST(flash_sfdp, RefusesNumbersThatTellNoOrderOrOfWhichSomeAreMissing) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const NUMBERS form{4, true, "80000000", 16, ": ", "    SFDP............", false};
    const WORDS lines = lines_of(numbers_text(bytes, form));
    const auto with = [&lines](std::size_t place, const std::string& line) {
        WORDS all = lines;
        all.at(place) = line;
        return all;
    };
    WORDS without_second = lines;
    without_second.erase(without_second.begin() + 1);
    for (const WORDS& of : {
             with(0, "80000000: 46535044 ff000105 10010500 ff000080"),     // halves turned round
             with(0, "80000000: 50444654 ff000105 10010500 ff000080"),     // one bit is wrong
             without_second,                                               // a line is missing
             with(0, "80000000: 50444653 ff000105 10010500"),              // a number is missing
             with(1, "ffffffff ffffffff ffffffff ffffffff"),               // an offset is missing
             with(2, "80000020: ffff ffff ffff ffff ffff ffff ffff ffff")  // other numbers
         }) {
        std::string text;
        for (const std::string& line : of) {
            text += line + "\n";
        }
        expect_failure(run_command({"flash", "sfdp", "-"}, text), INTERNAL_ERROR,
                       {"the SFDP dump is refused: byte 00h, signature"});
    }
}
