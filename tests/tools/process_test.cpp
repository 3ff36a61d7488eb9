#include "command_fixture.h"

// The command as a process: what a call within the tests cannot show.

namespace {

PROCESS_RESULT run_as_process(const std::vector<std::string>& arguments, const std::string& input = "") {
    PROCESS process{{TEST_COMMAND}, input, {}, {}};
    process.command.insert(process.command.end(), arguments.begin(), arguments.end());
    return run_process(process);
}

}  // namespace

TEST(Process, IsTheCommandThatTestsRun) {
    const std::pair<std::vector<std::string>, std::string> runs[]{
        {{"--version"}, ""},
        {{"--json", "opn", "name", "-"}, "1337\n\nrubbish\n"},
        {{"part", "info", "KES50C66"}, ""},
        {{"--json", "flash", "list", "--nonsense"}, ""},
        {{"--json", "flash", "dump", "none.pcf"}, ""},
        {{"-v", "flash", "list", "--fields", "device_name"}, ""},
        {{"flash", "define"}, "1\n"},
        {{"__complete", "flash", "show", "w25q"}, ""},
    };
    for (const auto& [arguments, input] : runs) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const PROCESS_RESULT process = run_as_process(arguments, input);
        const PROCESS_RESULT within = run_command(arguments, input);
        EXPECT_EQ(process.exit_code, within.exit_code);
        EXPECT_EQ(process.output, within.output);
        EXPECT_EQ(process.errors, within.errors);
    }
}

// Programs of Windows may take it for the end of a text.
TEST(Process, ReadsBeyondAByteThatEndsTextsOfOldSystems) {
    const PROCESS_RESULT batch = run_as_process({"--json", "opn", "name", "-"}, "1337\n\x1A\n1338\n");
    ASSERT_EQ(json_lines_of(batch.output).size(), 3U);
    EXPECT_EQ(json_lines_of(batch.output)[2].at("query"), "1338");
    const PROCESS_RESULT log =
        run_as_process({"--json", "flash", "identify", "--log", "-"}, "\x1A\nJEDEC ID: EF4018\n");
    EXPECT_EQ(json_of(log.output).at("log").at("line"), 2);
}

TEST(Process, LeavesNoSettingsBehind) {
    const auto list = [] { return run_command({"--json", "flash", "list", "--fields", "device_name"}).output; };
    const std::string before = list();
    const SCRATCH scratch;
    const std::string none = scratch.directory().string();
    run_command({"--db-dir", none, "--install-dir", none, "--module-dir", none, "flash", "list"});
    run_command({"--set", "PGM_ALLOW_M45PE=on", "-v", "-q", "--wide", "flash", "list"});
    run_command({"flash", "verify", std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf",
                 std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv"});
    run_command({"hps", "spi", "--hps", "1"});
    const PROCESS_RESULT after = run_command({"--json", "flash", "list", "--fields", "device_name"});
    EXPECT_EQ(after.output, before);
    EXPECT_EQ(after.errors, "") << "the debug channel is silent again";
    EXPECT_TRUE(contains(run_command({"opn", "hash", "KES50C66"}).errors, "did you mean")) << "hints are back";
}
