#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "command_fixture.h"

// Standard output and devices as only Windows has them.

TEST(devices, AreNoFiles) {
    expect_failure(run_command({"flash", "dump", "NUL"}), INTERNAL_ERROR, {"since it is no regular file: NUL"});
    expect_failure(run_command({"flash", "compile", std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv", "NUL"}),
                   INTERNAL_ERROR, {"the output cannot be written, since it is no regular file: NUL"});
    const PROCESS_RESULT empty = run_command({"flash", "sfdp", "NUL"});
    EXPECT_TRUE(contains(empty.errors, "found the end of the dump")) << empty.errors;
}

TEST(output, TheDirectoryOfADriveIsThere) {
    const std::string drive = std::filesystem::current_path().root_path().string();
    const PROCESS_RESULT result =
        run_command({"flash", "compile", std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv", drive + "no|name.pcf"});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, "the output cannot be written, since the system says \"")) << result.errors;
}

TEST(output, APipeThatNobodyReadsIsCalledBroken) {
    int ends[2] = {};
    ASSERT_EQ(_pipe(ends, 4096, _O_BINARY), 0);
    _close(ends[0]);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"part", "list"}, std::vector<std::string>{"opn", "name", "1337"}}) {
        const auto unread = [&] {
            _dup2(ends[1], _fileno(stdout));
            return run_pgmdev(arguments);
        };
        const PROCESS_RESULT result = run_captured(unread, "");
        std::clearerr(stdout);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
        EXPECT_EQ(result.errors, "pgmdev: standard output cannot be written: Broken pipe\n");
    }
    _close(ends[1]);
}
