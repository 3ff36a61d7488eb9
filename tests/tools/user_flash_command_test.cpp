#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    return JSON::parse(run.output).at("encoded");
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
    EXPECT_EQ(JSON::parse(run.output).size(), 1U);
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
    const JSON document = JSON::parse(run.output);
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
    const JSON nothing = JSON::parse(run_command({"--json", "flash", "decode", "nothing"}).output);
    EXPECT_TRUE(nothing.at("record").is_null());
    EXPECT_EQ(nothing.at("plausible"), false);
}

TEST(flash_decode, ReadsOneTextPerLine) {
    const PROCESS_RESULT run = run_command({"--json", "flash", "decode", "-"}, defined() + "\n\nwrong\n");
    EXPECT_EQ(run.exit_code, 3);
    std::istringstream lines(run.output);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(JSON::parse(line).at("found"), true);
    EXPECT_EQ(JSON::parse(line).at("plausible"), true);
    std::getline(lines, line);
    EXPECT_EQ(JSON::parse(line).at("error").at("message"), "a line without a question");
    std::getline(lines, line);
    EXPECT_EQ(JSON::parse(line).at("query"), "wrong");
    EXPECT_EQ(JSON::parse(line).at("found"), false);
    EXPECT_EQ(JSON::parse(line).at("plausible"), false);
    EXPECT_FALSE(std::getline(lines, line));
}

TEST(flash_identify_user, TriesADescription) {
    EXPECT_THAT(run_command({"flash", "identify", "207114"}).output, HasSubstr("Micron M25PX80, record "))
        << "the table has the chip under its later maker";
    const PROCESS_RESULT run = run_command({"--json", "flash", "identify", "--user", defined(), "207114", "20BA18"});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    const JSON devices = JSON::parse(run.output).at("devices");
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

TEST(flash_user_help, HasAnExampleForEachVerb) {
    for (const std::string verb : {"define", "decode", "identify"}) {
        const PROCESS_RESULT run = run_command({"flash", verb, "--help"});
        EXPECT_EQ(run.exit_code, 0);
        EXPECT_THAT(run.output, HasSubstr("Example: pgmdev flash " + verb));
    }
}

}  // namespace
