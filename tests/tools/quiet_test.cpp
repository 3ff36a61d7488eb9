#include "command_fixture.h"

// -q and -v: less, and more, on standard error.

TEST(quiet, LeavesOutHints) {
    const PROCESS_RESULT hinted = run_command({"flash", "show", "W25Q6"});
    const PROCESS_RESULT quiet = run_command({"-q", "flash", "show", "W25Q6"});
    EXPECT_EQ(hinted.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(hinted.errors, "did you mean")) << hinted.errors;
    EXPECT_EQ(quiet.exit_code, NOT_FOUND);
    EXPECT_FALSE(contains(quiet.errors, "did you mean")) << quiet.errors;
    EXPECT_NE(quiet.errors, "");
}

TEST(verbose, ShowsTheDebugChannel) {
    const std::vector<std::string> question{"flash", "identify", "EF7017"};
    const PROCESS_RESULT plain = run_command(question);
    EXPECT_EQ(plain.errors, "");
    for (const char* option : {"-v", "--verbose"}) {
        std::vector<std::string> arguments = question;
        arguments.emplace_back(option);
        const PROCESS_RESULT verbose = run_command(arguments);
        EXPECT_EQ(verbose.output, plain.output);
        EXPECT_TRUE(contains(verbose.errors, "PGMDEV debug")) << verbose.errors;
    }
}
