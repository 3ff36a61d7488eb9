#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "command_fixture.h"
#include "pgmdev/user_flash/reference.h"

// A flash of one's own in the configuration files of the system: where it is saved, and signed again.

namespace {

using testing::HasSubstr;

/// How the command runs with the configuration below a directory.
PROCESS configured(const SCRATCH& scratch, const std::vector<std::string>& arguments) {
    PROCESS process{{TEST_COMMAND, "--db-dir", TEST_DEVICES_DIR},
                    "",
                    {{"TESSARY_INSTALL_DIR", scratch.path("installation")}, {"XDG_CONFIG_HOME", scratch.path("home")}},
                    {}};
    process.command.insert(process.command.end(), arguments.begin(), arguments.end());
    return process;
}

}  // namespace

TEST(flash_saving, TakesTheUsersOwnFileWhereTheNearestCannotBeWritten) {
    const SCRATCH scratch;
    scratch.write("installation/other", "");
    std::filesystem::create_symlink("/proc/version", scratch.path("installation/tessary.conf"));
    const std::string own = scratch.path("home/tessary/tessary.conf");
    const PROCESS_RESULT run = run_process(configured(
        scratch, {"--json", "flash", "define", "--like", "W25Q64JV", "--id", "857114", "device_name=MINE", "--save"}));
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    EXPECT_EQ(json_of(run.output).at("saved"), own);
    EXPECT_THAT(run.errors, HasSubstr("pgmdev: warning: " + scratch.path("installation/tessary.conf") +
                                      ": the output cannot be written, since "));
    EXPECT_THAT(run.errors, HasSubstr("; your own configuration file has it instead\n"));
    EXPECT_THAT(run.errors, HasSubstr("PGM_USER_SFL_FLASH_INFO is saved in " + own + " ("));
    EXPECT_THAT(run_process(configured(scratch, {"flash", "identify", "857114"})).output,
                HasSubstr("WINBOND MINE, record 0\n"));
}

TEST(flash_saving, TakesTheTextOfTheConfiguration) {
    const SCRATCH scratch;
    const std::string old = user_flash_reference::encoded(user_flash_reference::body() + "#ABCDEFGHIJKLMNOP;");
    const std::string own = scratch.write("home/tessary/tessary.conf", "PGM_USER_SFL_FLASH_INFO = " + old + "\n");
    scratch.write("installation/other", "");
    const PROCESS_RESULT run = run_process(configured(scratch, {"--json", "flash", "reseal", "--save"}));
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    EXPECT_EQ(json_of(run.output).at("saved"), own);
    EXPECT_EQ(json_of(run.output).at("flashes").at(0).at("device_name"), "AC25X80");
    std::ifstream saved(own, std::ios::binary);
    const std::string text = json_of(run.output).at("encoded");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), "PGM_USER_SFL_FLASH_INFO = " + text + "\n");
    EXPECT_EQ(json_of(run_command({"--json", "flash", "decode", text}).output).at("password_valid"), true);
    expect_failure(run_command({"flash", "reseal"}), WRONG_USAGE,
                   {"expected TEXT or @FILE: PGM_USER_SFL_FLASH_INFO has no description either"});
}
