#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "command_fixture.h"
#include "pgmdev/user_flash/reference.h"

namespace {

namespace text_ref = user_flash_reference;
using testing::EndsWith;
using testing::HasSubstr;

/// A chip that the table does not have, and the answers of its datasheet.
const std::string DIALOGUE_ANSWERS =
    "1\nNumonyx\nM25PX80\n14\n2\n71\n1\n20\n0\nN\nN\nN\nN\nN\nN\n1\n8\n64\n80\n3\n5000\n1C\n1C\n0\n7\n5\nN\n3.3V\n";

std::string defined() {
    const PROCESS_RESULT run = run_command({"--json", "flash", "define"}, DIALOGUE_ANSWERS);
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    return json_of(run.output).at("encoded");
}

TEST(flash_define, PrintsTheDialogueAndTheText) {
    const PROCESS_RESULT run = run_command({"flash", "define"}, DIALOGUE_ANSWERS);
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.output, testing::StartsWith("Number of 3rd party flash to define (max 3) : Manufacture Name : "));
    EXPECT_THAT(run.output, EndsWith("\nINI : " + defined() + "\n"));
}

TEST(flash_define, LeavesStandardOutputToTheDocumentInJson) {
    const PROCESS_RESULT run = run_command({"--json", "flash", "define"}, DIALOGUE_ANSWERS);
    EXPECT_EQ(json_of(run.output).size(), 1U);
    EXPECT_THAT(run.errors, HasSubstr("Device Name : "));
}

TEST(flash_define, EndsCleanlyWhenTheInputDoes) {
    const PROCESS_RESULT run = run_command({"flash", "define"}, DIALOGUE_ANSWERS.substr(0, 20));
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, EndsWith("Invalid input\nInvalid input or too many flash to define\n"));
    EXPECT_EQ(run.errors, "pgmdev: the input ended before the last question was answered\n");
    EXPECT_EQ(run_command({"flash", "define"}).exit_code, 2);
}

TEST(flash_define, FailsWithoutAFlash) {
    for (const std::string input : {"4\n", "x\n", "1\nNAME\n\nREST\n"}) {
        const PROCESS_RESULT run = run_command({"flash", "define"}, input);
        EXPECT_EQ(run.exit_code, 2);
        EXPECT_EQ(run.errors, "pgmdev: no flash was defined\n");
    }
}

TEST(flash_define, WarnsOfWhatTheLoaderWillRefuse) {
    std::string answers = DIALOGUE_ANSWERS;
    answers.replace(answers.find("\n7\n"), 3, "\n20\n");  // accepted by the dialogue, not by the loader
    const PROCESS_RESULT run = run_command({"flash", "define"}, answers);
    EXPECT_EQ(run.exit_code, 3);
    EXPECT_THAT(run.output, HasSubstr("INI : "));
    EXPECT_THAT(run.errors, HasSubstr("protection_division is 32"));
}

TEST(flash_decode, ShowsWhatATextHolds) {
    const PROCESS_RESULT run = run_command({"--json", "flash", "decode", defined()});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    const JSON document = json_of(run.output);
    EXPECT_EQ(
        document.at("body"),
        "@NUMONYX@M25PX80@0@20@2@113@1@32@0@32@1@NONE@0@0@0@0@0@0@1@8388608@65536@0@0@80@3@5000@28@28@0@7@5@0@3.3V@");
    EXPECT_EQ(document.at("password").get<std::string>().size(), 16U);
    EXPECT_EQ(document.at("password_valid"), true);
    EXPECT_EQ(document.at("plausible"), true);
    EXPECT_EQ(document.at("record").size(), 33U);
    EXPECT_EQ(document.at("record").at("device_name"), "M25PX80");
    EXPECT_EQ(document.at("record").at("program_utime"), 5000);
    EXPECT_TRUE(document.at("faults").empty());
}

TEST(flash_decode, ExplainsARefusal) {
    const std::string text = text_ref::encoded(text_ref::body({{"die_count", "0"}}) + "#ABCDEFGHIJKLMNOP;");
    const PROCESS_RESULT run = run_command({"flash", "decode", text});
    EXPECT_EQ(run.exit_code, 3);
    EXPECT_THAT(run.output, HasSubstr("ABCDEFGHIJKLMNOP, does not fit this build"));
    EXPECT_THAT(run.errors, HasSubstr("die_count is 0, expected 1 or more"));
    EXPECT_THAT(run.errors, HasSubstr("the password does not fit"));
    const JSON nothing = json_of(run_command({"--json", "flash", "decode", "nothing"}).output);
    EXPECT_TRUE(nothing.at("record").is_null());
    EXPECT_EQ(nothing.at("plausible"), false);
}

TEST(flash_decode, ReadsOneTextPerLine) {
    const PROCESS_RESULT run = run_command({"--json", "flash", "decode", "-"}, defined() + "\n\nwrong\n");
    EXPECT_EQ(run.exit_code, 3);
    std::istringstream lines(run.output);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(json_of(line).at("found"), true);
    EXPECT_EQ(json_of(line).at("plausible"), true);
    std::getline(lines, line);
    EXPECT_EQ(json_of(line).at("error").at("message"), "a line without a question");
    std::getline(lines, line);
    EXPECT_EQ(json_of(line).at("query"), "wrong");
    EXPECT_EQ(json_of(line).at("found"), false);
    EXPECT_EQ(json_of(line).at("plausible"), false);
    EXPECT_FALSE(std::getline(lines, line));
}

TEST(flash_identify_user, TriesADescription) {
    EXPECT_THAT(run_command({"flash", "identify", "207114"}).output, HasSubstr("Micron M25PX80, record "))
        << "the table has the chip under its later maker";
    const PROCESS_RESULT run = run_command({"--json", "flash", "identify", "--user", defined(), "207114", "20BA18"});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    const JSON devices = json_of(run.output).at("devices");
    EXPECT_EQ(devices.at(0).at("index"), 0);
    EXPECT_EQ(devices.at(0).at("device_name"), "M25PX80");
    EXPECT_EQ(devices.at(1).at("device_name"), "N25Q128A13");
}

TEST(flash_identify_user, KnowsADescriptionOfTheConfiguration) {
    const PROCESS_RESULT run =
        run_command({"--set", "PGM_USER_SFL_FLASH_INFO=" + defined(), "flash", "identify", "207114"});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("NUMONYX M25PX80, record 0\n"));
}

TEST(flash_identify_user, RefusesADescriptionThatWouldNotBeTaken) {
    for (const std::string text : {"wrong", ""}) {
        const PROCESS_RESULT run = run_command({"flash", "identify", "--user", text, "207114"});
        EXPECT_EQ(run.exit_code, 2);
        EXPECT_THAT(run.errors, HasSubstr("the description is refused: "));
        EXPECT_EQ(run.output, "");
    }
}

/// The chip of the answers, as fields.
const std::vector<std::string> CHIP_LINES{"id = 207114",
                                          "manufacturer_name = Numonyx",
                                          "device_name = M25PX80",
                                          "device_bit_size = 8 Mbit",
                                          "device_sector_byte = 64 KiB",
                                          "bulk_erase_time = 80",
                                          "sec_erase_time = 3 s",
                                          "program_utime = 5 ms",
                                          "protection_mask = 1C",
                                          "protection_value = 0x1c",
                                          "unprotect_value = 0",
                                          "protection_division = 7",
                                          "bottom_value = 5",
                                          "asc_voltage = 3.3v # its supply"};

std::string chip_text(const std::vector<std::string>& lines, const std::string& end = "\n") {
    std::string text = "# a chip" + end;
    for (const std::string& line : lines) {
        text += line + end;
    }
    return text;
}

std::vector<std::string> with_line(std::vector<std::string> lines, std::size_t number, const std::string& line) {
    lines.at(number) = line;
    return lines;
}

TEST(flash_define_fields, GiveTheTextOfTheDialogue) {
    const SCRATCH scratch;
    for (const std::string end : {"\n", "\r\n"}) {
        const std::string file = scratch.write("chip.txt", chip_text(CHIP_LINES, end));
        const PROCESS_RESULT run = run_command({"flash", "define", "@" + file});
        EXPECT_EQ(run.exit_code, DONE) << run.errors;
        EXPECT_EQ(run.output, defined() + "\n");
        EXPECT_THAT(run.errors, HasSubstr("pgmdev: M25PX80: die_count is assumed, 1: as most flash\n"));
    }
    std::vector<std::string> arguments{"-q", "flash", "define"};
    for (const std::string& line : CHIP_LINES) {
        arguments.push_back(line.substr(0, line.find(" #")));
    }
    const PROCESS_RESULT run = run_command(arguments);
    EXPECT_EQ(run.output, defined() + "\n");
    EXPECT_EQ(run.errors, "");
}

TEST(flash_define_fields, NameEveryFaultAtOnce) {
    const PROCESS_RESULT run = run_command({"--json", "flash", "define", "program_utime=700us", "device_bit_size=8",
                                            "memory_id=FFF", "device_nam=X", "nonsense", "die_count=2"});
    const JSON error = json_failure(run, WRONG_USAGE, "description_refused");
    const JSON& faults = error.at("faults");
    ASSERT_EQ(faults.size(), 13U) << faults;
    EXPECT_EQ(faults.at(0).at("given"), "nonsense");
    EXPECT_EQ(faults.at(1).at("advice"), "did you mean device_name");
    EXPECT_EQ(faults.at(2), (JSON{{"place", nullptr},
                                  {"field", "program_utime"},
                                  {"given", "700us"},
                                  {"accepted", "1000 to 1000000 us"},
                                  {"advice",
                                   "write program_utime=1000us: it is the longest time that is waited for, so a longer "
                                   "one does no harm"}}));
    EXPECT_EQ(faults.at(3).at("accepted"), "a power of two, 1 to 2048 Mbit");
    EXPECT_EQ(faults.at(3).at("advice"), "without a unit it counts bits: write device_bit_size=8Mbit");
    EXPECT_EQ(faults.at(4).at("accepted"), "1 to FE in hexadecimal");
    EXPECT_EQ(faults.at(5).at("field"), "manufacturer_name");
    EXPECT_TRUE(faults.at(5).at("given").is_null());
    EXPECT_THAT(run.errors, HasSubstr("pgmdev: memory_id is \"FFF\", accepted: 1 to FE in hexadecimal\n"));
    EXPECT_THAT(run.errors, EndsWith("pgmdev: the description is refused: 13 faults\n"));
}

TEST(flash_define_fields, NameFileAndLine) {
    const SCRATCH scratch;
    const std::string file = scratch.write("chip.txt", chip_text(with_line(CHIP_LINES, 12, "bottom_value = 8")));
    expect_failure(run_command({"flash", "define", "@" + file}), WRONG_USAGE,
                   {file + ":14: bottom_value is \"8\", accepted: 0 to 7, or none\n"});
}

TEST(flash_define_fields, TellWhyAFileIsNotRead) {
    const SCRATCH scratch;
    const auto told = [](const std::string& file) { return run_command({"flash", "define", "@" + file}); };
    const std::string none = (scratch.directory() / "none.txt").string();
    expect_failure(told(none), INTERNAL_ERROR,
                   {"the description cannot be read: there is no such file: " + none + "; name a text file"});
    expect_failure(told(scratch.directory().string()), INTERNAL_ERROR,
                   {"the description cannot be read: it is a directory"});
    expect_failure(told(scratch.write("long.txt", std::string((1 << 20) + 1, '#'))), INTERNAL_ERROR,
                   {"the description cannot be read: it has more than 1 MiB"});
    std::string wide;  // UTF-16 without a byte-order mark
    for (const char character : chip_text(CHIP_LINES)) {
        wide += character;
        wide += '\0';
    }
    expect_failure(told(scratch.write("wide.txt", wide)), INTERNAL_ERROR,
                   {"the description cannot be read: it is UTF-16, or no text: save it as UTF-8"});
}

TEST(flash_define_fields, SayHowAFileIsNamed) {
    const SCRATCH scratch;
    const std::string file = scratch.write("chip.txt", chip_text(CHIP_LINES));
    expect_failure(run_command({"flash", "define", file}), WRONG_USAGE,
                   {"\"" + file + "\", accepted: FIELD=VALUE; a file is written @" + file + "\n"});
    expect_failure(run_command({"flash", "define", file + ".none"}), WRONG_USAGE, {".none\", accepted: FIELD=VALUE\n"});
    expect_failure(run_command({"flash", "define", scratch.directory().string()}), WRONG_USAGE,
                   {"\", accepted: FIELD=VALUE\n"});
}

TEST(flash_define_fields, TakeUpToThreeChips) {
    const SCRATCH scratch;
    const std::string one = chip_text(CHIP_LINES);
    const std::string two = one + "\n" + chip_text(with_line(CHIP_LINES, 2, "device_name = SECOND"));
    const std::string text =
        json_of(run_command({"--json", "flash", "define", "@" + scratch.write("two.txt", two)}).output).at("encoded");
    const JSON decoded = json_of(run_command({"--json", "flash", "decode", text}).output);
    EXPECT_EQ(decoded.at("record").at("device_name"), "M25PX80");
    ASSERT_EQ(decoded.at("descriptions").size(), 2U);
    EXPECT_EQ(decoded.at("descriptions").at(0).at("taken"), true);
    EXPECT_EQ(decoded.at("descriptions").at(1).at("taken"), false);
    EXPECT_EQ(decoded.at("descriptions").at(1).at("record").at("device_name"), "SECOND");
    EXPECT_THAT(run_command({"flash", "decode", text}).output,
                HasSubstr("description           2 of 2, which is passed over: only the first one counts\n"));
    std::string four;
    for (int i = 0; i < 4; ++i) {
        four += "[chip]\n" + one;
    }
    expect_failure(run_command({"flash", "define", "@" + scratch.write("four.txt", four)}), WRONG_USAGE,
                   {"\"4 flash devices\", accepted: 1 to 3"});
}

TEST(flash_define_save, ReplacesTheLineAndKeepsTheOthers) {
    const SCRATCH scratch;
    const std::string chip = scratch.write("chip.txt", chip_text(CHIP_LINES));
    const std::string file =
        scratch.write("own.conf", "# mine\r\nPGM_USER_SFL_FLASH_INFO = old\r\nOTHER=1\r\nlast = 2");
    const PROCESS_RESULT run = run_process(
        {{TEST_COMMAND, "--json", "flash", "define", "@" + chip, "--save"}, "", {{"TESSARY_CONFIG_FILE", file}}, {}});
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    EXPECT_EQ(json_of(run.output).at("saved"), file);
    EXPECT_THAT(run.errors, HasSubstr("PGM_USER_SFL_FLASH_INFO is saved in " + file +
                                      " (environment variable TESSARY_CONFIG_FILE)\n"));
    std::ifstream saved(file, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}),
              "# mine\r\nPGM_USER_SFL_FLASH_INFO = " + defined() + "\r\nOTHER=1\r\nlast = 2");
}

/// What `--save` makes of a configuration file with these contents, and how it ends.
std::pair<PROCESS_RESULT, std::string> saved_into(const std::string& contents) {
    const SCRATCH scratch;
    const std::string chip = scratch.write("chip.txt", chip_text(CHIP_LINES));
    const std::string file = scratch.write("own.conf", contents);
    const PROCESS_RESULT run =
        run_process({{TEST_COMMAND, "flash", "define", "@" + chip, "--save"}, "", {{"TESSARY_CONFIG_FILE", file}}, {}});
    std::ifstream saved(file, std::ios::binary);
    return {run, std::string(std::istreambuf_iterator<char>(saved), {})};
}

TEST(flash_define_save, KeepsAByteOrderMark) {
    const auto [run, saved] = saved_into("\xEF\xBB\xBFPGM_USER_SFL_FLASH_INFO = old\nOTHER=1\n");
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    EXPECT_EQ(saved, "\xEF\xBB\xBFPGM_USER_SFL_FLASH_INFO = " + defined() + "\nOTHER=1\n");
}

TEST(flash_define_save, LeavesUtf16AsItIs) {
    const std::string wide("\xFF\xFE#\0\n\0", 6);
    const auto [run, saved] = saved_into(wide);
    EXPECT_EQ(run.exit_code, INTERNAL_ERROR);
    EXPECT_NE(run.errors.find("the configuration file is UTF-16, and is not changed"), std::string::npos) << run.errors;
    EXPECT_EQ(saved, wide);
}

TEST(flash_reseal, SignsForThisBuild) {
    const std::string body = text_ref::body();
    const std::string old = text_ref::encoded(body + "#ABCDEFGHIJKLMNOP;");
    EXPECT_EQ(run_command({"flash", "decode", old}).exit_code, INTERNAL_ERROR);
    const PROCESS_RESULT run = run_command({"flash", "reseal", old});
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    const JSON decoded = json_of(run_command({"--json", "flash", "decode", lines_of(run.output).at(0)}).output);
    EXPECT_EQ(decoded.at("body"), body);
    EXPECT_EQ(decoded.at("password_valid"), true);
    expect_failure(run_command({"flash", "reseal", "wrong"}), WRONG_USAGE, {"the description is refused: "});
    const SCRATCH scratch;
    const std::string file = scratch.write("chip.txt", chip_text(CHIP_LINES));
    EXPECT_EQ(run_command({"flash", "reseal", "@" + file}).output, defined() + "\n");
}

TEST(flash_define, TakesLinesOfAnotherSystem) {
    std::string answers = "\xEF\xBB\xBF";
    for (const std::string& line : lines_of(DIALOGUE_ANSWERS)) {
        answers += line + "\r\n";
    }
    EXPECT_THAT(run_command({"flash", "define"}, answers).output, EndsWith("\nINI : " + defined() + "\n"));
}

TEST(flash_define, RefusesWhatTearsTheDescriptionApart) {
    for (const std::string name : {"A@B", "A#B", "A;B"}) {
        const PROCESS_RESULT run = run_command({"flash", "define"}, "1\n" + name + "\n");
        EXPECT_EQ(run.exit_code, WRONG_USAGE);
        EXPECT_EQ(run.errors,
                  "pgmdev: the answer \"" + name +
                      "\" to \"Manufacture Name\" is refused; accepted: 1 to 19 characters, none of them @, "
                      "# or ;\n");
    }
}

TEST(flash_identify_user, TriesAFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("chip.txt", chip_text(with_line(CHIP_LINES, 0, "id = 857114")));
    const PROCESS_RESULT unknown = run_command({"flash", "identify", "857114"});
    EXPECT_EQ(unknown.exit_code, NOT_FOUND);
    EXPECT_THAT(unknown.output, HasSubstr("no table has: guide your-own-flash.md"));
    const PROCESS_RESULT run = run_command({"flash", "identify", "--user", "@" + file, "857114"});
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    EXPECT_THAT(run.output, testing::StartsWith("Device 0 (857114): NUMONYX M25PX80, record 0\n"));
}

TEST(flash_identify_user, TakesOneThingFromStandardInput) {
    for (const std::vector<std::string>& others :
         std::vector<std::vector<std::string>>{{"-"}, {"--log", "-"}, {"--sfdp", "-", "857114"}}) {
        std::vector<std::string> arguments{"flash", "identify", "--user", "@-"};
        arguments.insert(arguments.end(), others.begin(), others.end());
        expect_failure(run_command(arguments, chip_text(with_line(CHIP_LINES, 0, "id = 857114"))), WRONG_USAGE,
                       {"standard input has the description"});
    }
}

TEST(flash_user_help, HasAnExampleForEachVerb) {
    for (const std::string verb : {"define", "reseal", "decode", "identify"}) {
        const PROCESS_RESULT run = run_command({"flash", verb, "--help"});
        EXPECT_EQ(run.exit_code, 0);
        EXPECT_THAT(run.output, HasSubstr("Example: pgmdev flash " + verb));
    }
}

}  // namespace
