#include <iomanip>
#include <sstream>

#include "tools/sfdp_dumps.h"

// Dumps of what a flash says of itself as debuggers print them, and as sources of programs have them.

namespace {

std::string number_text(std::size_t number, int digits, bool large = false) {
    std::ostringstream text;
    text << std::hex << (large ? std::uppercase : std::nouppercase) << std::setfill('0') << std::setw(digits) << number;
    return text.str();
}

/// How a debugger prints memory.
struct MEMORY {
    std::size_t in_a_line;  // bytes
    std::size_t size;       // of a number
    std::size_t address;    // of the first line
    std::string before_address;
    int digits_of_address;
    std::string behind_address;
    std::string before_number;
    std::string between;
    std::string characters;
};

std::string memory_text(const std::string& bytes, const MEMORY& form) {
    std::string text;
    for (std::size_t place = 0; place < bytes.size(); place += form.in_a_line) {
        text += form.before_address + number_text(form.address + place, form.digits_of_address) + form.behind_address;
        for (std::size_t at = place; at < place + form.in_a_line && at < bytes.size(); at += form.size) {
            std::string number = bytes.substr(at, form.size);
            number.resize(form.size);
            text += (at == place ? "" : form.between) + form.before_number +
                    digits_of(std::string(number.rbegin(), number.rend()), "");
        }
        text += form.characters + "\n";
    }
    return text;
}

const std::vector<MEMORY> DEBUGGERS{
    // mdb and mdw of OpenOCD
    {32, 1, 0x20000000, "0x", 8, ": ", "", " ", " "},
    {32, 1, 0, "0x", 8, ": ", "", " ", " \r"},
    {32, 4, 0x20000000, "0x", 8, ": ", "", " ", " "},
    {32, 4, 0, "0x", 8, ": ", "", " ", " "},
    // x/64xb and x/16xw of GDB, with and without a symbol
    {8, 1, 0x20000000, "0x", 1, ":\t", "0x", "\t", ""},
    {8, 1, 0, "0x", 1, ":\t", "0x", "\t", ""},
    {8, 1, 0x7FFFFFFFE430, "0x", 1, ":\t", "0x", "\t", ""},
    {16, 4, 0xFFFF888012345670, "0x", 1, ":\t", "0x", "\t", ""},
    {8, 1, 0x20000000, "0x", 1, " <area>:\t", "0x", "\t", ""},
    {8, 1, 0x20000000, "0x", 1, " <main()::area+16>:\t", "0x", "\t", ""},
    {16, 4, 0x20000000, "0x", 1, ":\t", "0x", "\t", ""},
    {16, 4, 0, "0x", 1, " <area>:\t", "0x", "\t", ""},
    {16, 2, 0x20000000, "0x", 1, ":\t", "0x", "\t", ""},
    {16, 8, 0x20000000, "0x", 1, ":\t", "0x", "\t", ""},
    // mem and mem32 of J-Link
    {16, 1, 0x20000000, "", 8, " = ", "", " ", "  SFDP............"},
    {16, 4, 0x20000000, "", 8, " = ", "", " ", ""},
};

/// The bytes as an array of C, behind what declares it: numbers of so many bytes, the lowest first.
std::string array_text(const std::string& bytes, std::size_t size, const std::string& comment) {
    std::string text = "#include <stdint.h>\n\nstatic const uint8_t area[256] = {\n";
    for (std::size_t place = 0; place < bytes.size(); place += 12) {
        text += "    " + comment;
        for (std::size_t at = place; at < place + 12 && at < bytes.size(); at += size) {
            std::string number = bytes.substr(at, size);
            number.resize(size);
            text += (at == place ? "0x" : ", 0x") + digits_of(std::string(number.rbegin(), number.rend()), "");
        }
        text += place + 12 < bytes.size() ? ",  // 12 more\n" : "\n";
    }
    return text + "};\n\nint other[] = {1, 2};\n";
}

void expect_refused(const std::string& text) {
    expect_failure(run_command({"flash", "sfdp", "-"}, text), INTERNAL_ERROR,
                   {"the SFDP dump is refused: byte 00h, signature"});
}

}  // namespace

TEST(flash_sfdp, TakesWhatDebuggersPrint) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    for (const MEMORY& form : DEBUGGERS) {
        const std::string text = memory_text(bytes, form);
        EXPECT_EQ(without_query(decoded("-", text)), expected) << text;
    }
    const SCRATCH scratch;
    EXPECT_EQ(without_query(decoded(scratch.write("dump.txt", memory_text(bytes, DEBUGGERS.front())))), expected);
}

TEST(flash_sfdp, RefusesWhatDebuggersPrintWithoutALine) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    for (const MEMORY& form : DEBUGGERS) {
        const std::string text = memory_text(bytes, form);
        const std::size_t second = text.find('\n') + 1;
        expect_refused(std::string(text).erase(second, text.find('\n', second) + 1 - second));
        expect_refused(std::string(text).insert(second, "Continuing.\n"));
    }
}

TEST(flash_sfdp, TakesArraysOfSources) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    for (const char* comment : {"", "/* 12 of them */ ", "/**/", "/*/ 0x12 /*/"}) {
        for (const std::size_t size : {1U, 4U}) {
            const std::string text = array_text(bytes, size, comment);
            EXPECT_EQ(without_query(decoded("-", text)), expected) << text;
        }
    }
}

TEST(flash_sfdp, TakesSingleDigitsBehindTheirPrefix) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    std::string blanks;
    std::string lines;
    for (const char byte : bytes) {
        const std::string number = number_text(static_cast<unsigned char>(byte), 1, true);
        blanks += "0x" + number + " ";
        lines += "0X" + number + ",\r\n";
    }
    const JSON expected = without_query(decoded(dump_file("W25Q128JV")));
    EXPECT_EQ(without_query(decoded("-", blanks)), expected);
    EXPECT_EQ(without_query(decoded("-", lines)), expected);
}

// Only the signature tells that a text is to be read like this.
TEST(flash_sfdp, RefusesSuchTextsWithoutTheSignature) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    for (const MEMORY& form : DEBUGGERS) {
        expect_refused(memory_text("S" + bytes, form));
    }
    expect_refused(array_text("S" + bytes, 1, ""));
    expect_refused("uint8_t area[] = {");
    expect_refused("uint8_t area[] = {0x53, 0x46, 0x44, AREA};");
    expect_refused("0x20000000 <area: 53 46 44 50");
    expect_refused("<area>: 0x53 0x46 0x44 0x50");
}
