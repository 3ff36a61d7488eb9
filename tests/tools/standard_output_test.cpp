#include "command_fixture.h"
#include "pgmdev/user_flash/reference.h"

// Standard output belongs to the answer, whatever the library prints.

namespace {

/// Every switch that makes the library print, and a description that it cannot take.
const std::map<std::string, std::string> ALL_SWITCHES{{"PGMDEV_ENABLE_GRAMMAR_DEBUG", "on"},
                                                      {"PGM_USER_SFL_FLASH_INFO_DEBUG", "on"},
                                                      {"TESSARY_DEBUG_LEVEL", "9"},
                                                      {"PGM_USER_SFL_FLASH_INFO", "nothing"}};

PROCESS_RESULT run_traced(std::vector<std::string> arguments, const std::string& input = "",
                          std::map<std::string, std::string> environment = ALL_SWITCHES) {
    arguments.insert(arguments.begin(), TEST_COMMAND);
    return run_process({arguments, input, std::move(environment), {}});
}

}  // namespace

TEST(standard_output, HoldsNothingButTheAnswer) {
    const std::vector<std::vector<std::string>> questions{
        {"flash", "list"},         {"flash", "show", "W25Q64JV"}, {"flash", "identify", "20BA18"},
        {"profile", "list"},       {"name", "show", "KES50C6"},   {"part", "complete", "KES50"},
        {"enum", "list", "block"},
    };
    for (std::vector<std::string> question : questions) {
        SCOPED_TRACE(testing::PrintToString(question));
        EXPECT_EQ(run_traced(question).output, run_command(question).output);
        question.insert(question.begin(), "--json");
        const PROCESS_RESULT json = run_traced(question);
        EXPECT_EQ(json.output, run_command(question).output);
        json_of(json.output);
    }
}

TEST(standard_output, TracesAreOnStandardError) {
    const PROCESS_RESULT name = run_traced({"--json", "name", "show", "KES50C6"});
    EXPECT_TRUE(contains(name.errors, "Map Flow   : Strip Speedgrade\n    Input  : KES50C6\n")) << name.errors;
    EXPECT_TRUE(contains(name.errors, "Strip Package (skip package conversion: 0)\n    Input0 : KES50C6\n"));
    EXPECT_TRUE(
        contains(run_traced({"flash", "list"}).errors, "Fail to generate INI because of decompression failure"));
}

TEST(standard_output, ADescriptionIsTracedThereAsWell) {
    auto switches = ALL_SWITCHES;
    switches["PGM_USER_SFL_FLASH_INFO"] = user_flash_reference::encoded("no description");
    const PROCESS_RESULT result = run_traced({"--json", "flash", "show", "W25Q64JV"}, "", switches);
    EXPECT_EQ(result.output, run_command({"--json", "flash", "show", "W25Q64JV"}).output);
    EXPECT_TRUE(contains(result.errors, "no description\n")) << result.errors;
}

TEST(standard_output, ABatchIsOneDocumentOnEachLine) {
    const PROCESS_RESULT result = run_traced({"--json", "name", "show", "-"}, "KES50C6\nKES50C7\n");
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_lines_of(result.output).size(), 2U);
}

TEST(standard_output, AFailureIsTheOnlyDocument) {
    json_failure(run_traced({"--json", "--db-dir", "none", "flash", "list"}), INTERNAL_ERROR, "database_missing");
    json_failure(run_traced({"--json", "flash", "identify", "x"}), WRONG_USAGE, "usage");
}

TEST(standard_output, TheDialogueAsksThere) {
    EXPECT_TRUE(contains(run_traced({"flash", "define"}).output, "Number of 3rd party flash to define"));
    EXPECT_FALSE(contains(run_traced({"--json", "flash", "define"}).output, "Number of"));
}

TEST(standard_output, HelpIsAnAnswer) {
    const PROCESS_RESULT help = run_traced({"flash", "--help"});
    EXPECT_EQ(help.exit_code, DONE);
    EXPECT_TRUE(contains(help.output, "identify"));
    EXPECT_EQ(help.errors, "");
}
