#include <algorithm>
#include <filesystem>

#include "tools/help_text.h"

// The command line itself: help, exit codes, what goes where.

TEST(usage, EveryNounAndVerbHasHelpWithAnExample) {
    const std::string top = help_of({});
    EXPECT_EQ(examples(top).size(), 1U);
    const std::vector<std::string> nouns = subcommands(top);
    EXPECT_NE(std::find(nouns.begin(), nouns.end(), "flash"), nouns.end());
    for (const std::string& noun : nouns) {
        const std::string help = help_of({noun});
        EXPECT_GE(examples(help).size(), 1U) << noun;
        const std::vector<std::string> verbs = subcommands(help);
        EXPECT_EQ(verbs.empty(), !contains(help, " SUBCOMMAND\n")) << noun;  // of a verb that needs no noun
        for (const std::string& verb : verbs) {
            const std::vector<std::string> found = examples(help_of({noun, verb}));
            EXPECT_GE(found.size(), 1U) << noun << " " << verb;
            std::string words = " " + noun;
            words += " " + verb + " ";
            for (const std::string& example : found) {
                EXPECT_TRUE(contains(" " + example + " ", words)) << example;
            }
        }
    }
}

TEST(usage, HelpTellsTheExitCodes) {
    const std::string help = help_of({});
    for (const char* part : {"0 done", "1 not found", "2 wrong usage", "3 an internal error"}) {
        EXPECT_TRUE(contains(help, part)) << part;
    }
    for (const char* option : {"--json", "--db-dir", "--install-dir", "--module-dir", "--set"}) {
        EXPECT_TRUE(contains(help, option)) << option;
    }
}

TEST(usage, FlashHasItsVerbs) {
    const std::vector<std::string> verbs = subcommands(help_of({"flash"}));
    for (const char* verb : {"list", "show", "identify", "check", "compile", "dump"}) {
        EXPECT_NE(std::find(verbs.begin(), verbs.end(), verb), verbs.end()) << verb;
    }
}

TEST(usage, ExamplesOfFlashRun) {
    const SCRATCH scratch;
    std::filesystem::create_directories(scratch.directory() / "data");
    std::filesystem::copy(std::filesystem::path(TEST_DATA_DIR) / "flash", scratch.directory() / "data" / "flash");
    for (const char* verb :
         {"list", "show", "identify", "check", "compile", "dump"}) {  // dump reads what compile wrote
        for (const std::string& example : examples(help_of({"flash", verb}))) {
            PROCESS process{arguments_of(example), "", {}, scratch.directory()};
            process.command.insert(process.command.begin(), TEST_COMMAND);
            const PROCESS_RESULT result = run_process(process);
            EXPECT_EQ(result.exit_code, DONE) << example << ": " << result.errors;
            EXPECT_NE(result.output, "") << example;
        }
    }
}

TEST(usage, WrongUsage) {
    const std::vector<std::vector<std::string>> wrong{
        {},
        {"flash"},
        {"nonsense"},
        {"flash", "nonsense"},
        {"list"},
        {"--nonsense"},
        {"--nonsense", "flash", "list"},
        {"flash", "list", "too", "much"},
        {"flash", "list", "--nonsense"},
        {"flash", "show"},
        {"flash", "show", "ONE", "TWO"},
        {"flash", "identify"},
        {"flash", "identify", "--silicon"},
        {"flash", "check"},
        {"flash", "check", "a", "b"},
        {"flash", "compile"},
        {"flash", "compile", "only.csv"},
        {"flash", "compile", "a", "b", "c"},
        {"flash", "dump"},
        {"flash", "dump", "--csv"},
        {"flash", "dump", "a", "b"},
        {"--db-dir"},
        {"--set", "flash"},
        {"--set", "KEY", "flash", "list"},
        {"--set", "=value", "flash", "list"},
        {"--set", "", "flash", "list"},
    };
    for (const auto& arguments : wrong) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        expect_failure(run_command(arguments), WRONG_USAGE, {});
    }
}

TEST(usage, BlanksAroundNamesAndNumbersDoNotCount) {
    const std::vector<std::vector<std::string>> commands{
        {"enum", "list", " Sector\t"},
        {"enum", "name", " sector ", " 3 "},
        {"enum", "value", " sector ", " cfm0 "},
        {"flash", "list", " W25Q64JV "},
        {"flash", "list", "--maker", " winbond ", "--size", " 64Mbit ", "--voltage", " 3.3V "},
        {"flash", "show", "--index", " 3 "},
        {"flash", "identify", "--as", " 0 = W25Q64JV ", " EF4017 "},
        {"flash", "define", "--like", " W25Q64JV ", " device_name = AC25X80 "},
        {"part", "list", "--family", " Kestrel ", "--pins", " 144 ", "--speed", " 6 "},
        {"profile", "show", "--family", " Kestrel "},
        {"hps", "nand", "--hps", " HPS 1 "},
    };
    for (const auto& arguments : commands) {
        EXPECT_EQ(run_command(arguments).exit_code, DONE) << testing::PrintToString(arguments);
    }
    expect_failure(run_command({"params", "read", " hps spi "}), NOT_FOUND, {"holds no block \"HPS SPI\""});
    expect_failure(run_command({"params", "remove", " 2 "}), NOT_FOUND, {"holds no block \"HPS NAND\""});
    expect_failure(run_command({"hps", "remove", "nand", " 1 "}), NOT_FOUND, {"entry 1 is built in"});
}

TEST(usage, NumbersThatAreNoneAreNamed) {
    expect_failure(run_command({"hps", "remove", "nand", "x"}), WRONG_USAGE,
                   {"pgmdev: \"x\" is not a value of INDEX: expected a number of 32 bits"});
    expect_failure(run_command({"hps", "edit", "spi", "-1", "page_byte=1"}), WRONG_USAGE,
                   {"\"-1\" is not a value of INDEX"});
    expect_failure(run_command({"hps", "add", "nand", "--like", "4294967296"}), WRONG_USAGE,
                   {"\"4294967296\" is not a value of --like"});
    for (const std::string text : {"+1", "", " "}) {
        expect_failure(run_command({"hps", "remove", "nand", text}), WRONG_USAGE, {"is not a value of INDEX"});
    }
    for (const std::string number : {"-0", "-9"}) {  // which are no options
        expect_failure(run_command({"hps", "remove", "nand", number, "--x"}), WRONG_USAGE, {"no option \"--x\""});
    }
    const PROCESS_RESULT decimal = run_command({"hps", "remove", "nand", "010"});  // 8 is built in
    EXPECT_EQ(decimal.errors, "pgmdev: entry 10 does not exist; hps nand lists all\n");
    expect_failure(run_command({"params", "show", "0", "DWORD", "--skip", "-1"}), WRONG_USAGE,
                   {"\"-1\" is not a value of --skip"});
}

TEST(usage, WhatIsMissingOrTooMuchIsNamed) {
    expect_failure(run_command({}), WRONG_USAGE, {"a noun is missing; the nouns are doctor, page, schema, flash"});
    expect_failure(run_command({"--db-dir"}), WRONG_USAGE, {"--db-dir: 1 required DIR missing"});
    expect_failure(run_command({"flash", "list", "--set"}), WRONG_USAGE, {"--set: 1 required KEY=VALUE missing"});
    expect_failure(run_command({"--db-dir", "--set"}), WRONG_USAGE, {"a noun is missing"});  // a directory of that name
    expect_failure(run_command({"opn"}), WRONG_USAGE,
                   {"a verb is missing; behind \"opn\" may stand name, index, hash, from-hash, list"});
    expect_failure(run_command({"hps", "add"}), WRONG_USAGE, {"behind \"hps add\" may stand nand, spi"});
    expect_failure(run_command({"-x", "opn", "list"}), WRONG_USAGE, {"there is no option \"-x\""});
    expect_failure(run_command({"--db-dir", "a", "flash", "list", "--db-dir", "b"}), WRONG_USAGE,
                   {"--db-dir is given more than once"});
    expect_failure(run_command({"--db-dir=a", "flash", "list", "--db-dir", "b"}), WRONG_USAGE,
                   {"--db-dir is given more than once"});
    expect_failure(run_command({"flash", "list", "--size", "8", "--size=64"}), WRONG_USAGE,
                   {"--size is given more than once"});
    expect_failure(run_command({"flash", "show", "--index", "1", "--index", "2"}), WRONG_USAGE,
                   {"--index is given more than once"});
}

// As scripts write it whose variable is empty.
TEST(usage, WhatStandsBehindAnEmptyValueIsNotTheValue) {
    expect_failure(run_command({"flash", "list", "--maker=", "--voltage=3.3V"}), NOT_FOUND,
                   {"that passes all filters; none passes --maker \n"});
    expect_failure(run_command({"--set=", "flash", "list"}), WRONG_USAGE, {"expected KEY=VALUE, found \"\""});
    expect_failure(run_command({"flash", "show", "--index=", "W25Q64JV"}), WRONG_USAGE, {"NAME and --index"});
    const PROCESS_RESULT shown = run_command({"--db-dir=", "flash", "show", "W25Q64JV", "--module-dir="});
    EXPECT_EQ(shown.exit_code, DONE) << shown.errors;
    EXPECT_EQ(run_command({"flash", "list", "--maker", "--size="}).exit_code, NOT_FOUND);  // a maker of that name
}

TEST(usage, BehindTwoMinusesAreNoOptions) {
    const PROCESS_RESULT both = run_command({"flash", "identify", "EF4017", "--json", "--", "EF4018"});
    EXPECT_EQ(both.exit_code, DONE) << both.errors;
    EXPECT_EQ(json_of(both.output).at("query"), JSON::array({"EF4017", "EF4018"}));
    expect_failure(run_command({"flash", "identify", "EF4017", "--", "--json"}), WRONG_USAGE,
                   {"\"--json\" is not an identification response"});
    expect_failure(run_command({"flash", "show", "W25Q64JV", "--", "--wide"}), WRONG_USAGE, {"not expected: --wide"});
    expect_failure(run_command({"flash", "list", "--maker", "Winbond", "--", "--csv"}), NOT_FOUND,
                   {"with a name like \"--csv\""});
    const SCRATCH scratch;
    const std::string at = scratch.directory().string();
    const PROCESS_RESULT set =
        run_command({"params", "set", "0", "STRING=a", "--module-dir", at, "--", "STRING=--b", "BYTE=1"});
    EXPECT_EQ(set.exit_code, DONE) << set.errors;
    const PROCESS_RESULT read = run_command({"--module-dir", at, "params", "read", "0"});
    EXPECT_TRUE(read.output.starts_with("00000000  61 00 2d 2d 62 00 01  ")) << read.output << read.errors;
}

TEST(usage, AnOptionThatMayBeRepeatedTakesOneValueEachTime) {
    const PROCESS_RESULT set = run_command({"--json", "flash", "show", "--set", "PGM_ALLOW_M45PE=on", "M45PE40"});
    EXPECT_EQ(set.exit_code, DONE) << set.errors;
    EXPECT_TRUE(contains(set.output, "\"M45PE40\"")) << set.output;
    const PROCESS_RESULT as = run_command({"--json", "flash", "identify", "--as", "0=W25Q64JV", "EF4017"});
    EXPECT_EQ(as.exit_code, DONE) << as.errors;
    EXPECT_EQ(json_of(as.output)["devices"][0]["by_hand"], true);
}

TEST(usage, SetMayBeGivenManyTimes) {
    const FLASH_DATABASE database({flash_reference::sample()});
    const PROCESS_RESULT result = database.run({"--set", "A=1", "--set", "B=", "--set", "C=x=y", "--set",
                                                "TESSARY_DEBUG_LEVEL=2", "flash", "identify", "20BA18"});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_TRUE(contains(result.errors, "Found Device 1 device id at index 0")) << result.errors;
    EXPECT_TRUE(contains(result.output, "SAMPLE"));
}
