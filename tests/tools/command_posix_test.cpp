#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include "command_fixture.h"
#include "flash_source.h"

// What only exists on systems with links, permissions and a device that is always full.

namespace {

namespace fs = std::filesystem;

/// Runs the command by a line of the shell.
PROCESS_RESULT run_shell(const std::string& line) {
    return run_process({{"/bin/sh", "-c", "exec \"" TEST_COMMAND "\" " + line}, "", {}, {}});
}

/// Likewise behind a pipe that gives the input.
PROCESS_RESULT run_piped(const std::string& input, const std::string& line) {
    return run_process({{"/bin/sh", "-c", "cat | \"" TEST_COMMAND "\" " + line}, input, {}, {}});
}

}  // namespace

TEST(command_posix, OutputThatCannotBeWrittenIsAnError) {
    for (const char* arguments : {"flash list", "--json flash list", "flash show W25Q64JV", "flash identify EF7017",
                                  "--version", "--help", "schema"}) {
        const PROCESS_RESULT result = run_shell(std::string(arguments) + " >/dev/full");
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << arguments;
        EXPECT_EQ(result.errors,
                  "pgmdev: standard output cannot be written: " + std::generic_category().message(ENOSPC) + "\n");
    }
}

TEST(command_posix, ABatchWhoseAnswersCannotBeWrittenEnds) {
    const std::string why = "standard output cannot be written: " + std::generic_category().message(ENOSPC);
    for (const char* arguments : {"enum name sector -", "--json enum name sector -", "enum name block -"}) {
        const PROCESS_RESULT result = run_piped("1\n\n1\n", std::string(arguments) + " >/dev/full");
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << arguments;
        EXPECT_TRUE(result.errors.ends_with("pgmdev: " + why + "\n")) << result.errors;
        EXPECT_FALSE(contains(result.errors, BLANK_LINE)) << "the second line has been read: " << result.errors;
    }
}

TEST(command_posix, CompileFollowsALink) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    scratch.write("real.pcf", flash_reference::MAGIC);
    fs::create_symlink("real.pcf", scratch.path("link.pcf"));
    ASSERT_EQ(run_command({"flash", "compile", csv, scratch.path("link.pcf")}).exit_code, DONE);
    EXPECT_TRUE(fs::is_symlink(scratch.path("link.pcf")));
    EXPECT_EQ(read_file(scratch.path("real.pcf")).substr(0, 8), flash_reference::MAGIC);
    EXPECT_EQ(scratch.file_count(), 3U);  // the table, what the link names, and what tells of it
}

TEST(command_posix, AnInputThatTheSystemDoesNotFindIsNamed) {
    const SCRATCH scratch;
    const std::string database = scratch.write("out.pcf", flash_reference::MAGIC);
    const std::string circle = scratch.path("circle.csv");
    fs::create_symlink("circle.csv", circle);
    for (const auto& [table, reason] : {std::pair(circle, ELOOP), std::pair(std::string(300, 'x'), ENAMETOOLONG)}) {
        const std::string message = "the source table cannot be read, since the system says \"" +
                                    std::generic_category().message(reason) + "\"";
        const JSON error = json_failure(run_command({"--json", "flash", "compile", "--force", table, database}),
                                        INTERNAL_ERROR, "source_table_unreadable");
        EXPECT_EQ(error.at("message"), message);
        EXPECT_EQ(error.at("path"), table);
    }
    EXPECT_EQ(read_file(database), flash_reference::MAGIC);
}

TEST(command_posix, ADatabaseThatTheSystemDoesNotFindIsNamed) {
    const SCRATCH scratch;
    const std::string page = scratch.write("index.html", "somebody's own");
    const std::string circle = scratch.path("circle");
    fs::create_symlink("circle", circle);
    for (const auto& verb : {std::vector<std::string>{"flash", "list"}, {"page", scratch.directory().string()}}) {
        std::vector<std::string> arguments{"--json", "--db-dir", circle};
        arguments.insert(arguments.end(), verb.begin(), verb.end());
        const JSON error = json_failure(run_command(arguments), INTERNAL_ERROR, "database_unreadable");
        EXPECT_EQ(error.at("message"), "the flash database cannot be read, since the system says \"" +
                                           std::generic_category().message(ELOOP) + "\"");
        EXPECT_EQ(error.at("path"), circle + "/programmer/pgm_flash.pcf");
    }
    EXPECT_EQ(read_file(page), "somebody's own");
}

TEST(command_posix, CompileIntoADevice) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    expect_failure(run_command({"flash", "compile", csv, "/dev/null"}), INTERNAL_ERROR, {});
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(command_posix, CheckReadsThroughADescriptor) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    EXPECT_EQ(run_shell("flash check /dev/stdin < '" + csv + "'").exit_code, DONE);
}

TEST(command_posix, DiffTellsWhatComesThroughAPipe) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.path("table.pcf");
    ASSERT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    const std::string bytes = read_file(pcf);
    const std::string pipe = "/dev/stdin";
    for (const std::string& input : {read_file(csv), bytes}) {
        const PROCESS_RESULT same = run_piped(input, "flash diff /dev/stdin '" + csv + "'");
        EXPECT_EQ(same.exit_code, DONE) << same.errors;
        EXPECT_EQ(same.output, "1 records, then 1: the same\n");
    }
    const JSON cut = json_failure(run_piped(bytes.substr(0, 60), "--json flash diff '" + csv + "' " + pipe),
                                  INTERNAL_ERROR, "database_damaged");
    EXPECT_EQ(cut.at("path"), pipe);
    EXPECT_EQ(cut.at("tried"), JSON::array({"argument B"}));
    const JSON other = json_failure(run_piped(bytes, "--json profile diff " + pipe + " '" + csv + "'"), INTERNAL_ERROR,
                                    "database_other_kind");
    EXPECT_EQ(other.at("path"), pipe);
    const JSON endless =
        json_failure(run_shell("--json flash diff /dev/zero '" + csv + "'"), INTERNAL_ERROR, "source_table_unreadable");
    EXPECT_EQ(endless.at("path"), "/dev/zero");
    EXPECT_TRUE(contains(endless.at("message"), "what it gives is too much, or ends in an error")) << endless;
    expect_failure(run_piped("manufacturer_name\n", "flash diff " + pipe + " '" + csv + "'"), INTERNAL_ERROR,
                   {pipe + ": fault: ", pipe + " (argument A); see"});
}

TEST(command_posix, SfdpReadsADumpThroughAPipe) {
    const std::string dump = std::string(TEST_SFDP_DIR) + "/W25Q128JV.sfdp";
    const JSON expected = json_of(run_command({"--json", "flash", "sfdp", dump}).output);
    const PROCESS_RESULT piped = run_piped(read_file(dump), "--json flash sfdp /dev/stdin");
    EXPECT_EQ(piped.exit_code, DONE) << piped.errors;
    EXPECT_EQ(json_of(piped.output).at("record"), expected.at("record"));
    EXPECT_EQ(run_piped(read_file(dump), "flash identify --sfdp /dev/stdin EF4018").exit_code, DONE);
    const JSON endless = json_failure(run_shell("--json flash sfdp /dev/zero"), WRONG_USAGE, "file_unreadable");
    EXPECT_EQ(endless.at("path"), "/dev/zero");
}

TEST(command_posix, ADialogueWhoseAnswersCannotBeReadSaysSo) {
    for (const char* input : {"< /", "<&-"}) {
        const PROCESS_RESULT result = run_shell(std::string("flash define ") + input);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << input;
        EXPECT_TRUE(contains(result.errors, "standard input cannot be read to its end")) << result.errors;
    }
    EXPECT_EQ(run_shell("flash define < /dev/null").exit_code, WRONG_USAGE);
}

// Which is read more than once.
TEST(command_posix, VerifyTakesTheTableThroughAPipe) {
    const SCRATCH scratch;
    const std::string table = FLASH_SOURCE().row().text();
    const std::string pcf = scratch.path("table.pcf");
    ASSERT_EQ(run_command({"flash", "compile", scratch.write("table.csv", table), pcf}).exit_code, DONE);
    const std::string line = "--json flash verify '" + pcf + "' /dev/stdin";
    const PROCESS_RESULT same = run_piped(table, line);
    EXPECT_EQ(same.exit_code, DONE) << same.errors;
    EXPECT_EQ(json_of(same.output).at("source"), "/dev/stdin");
    EXPECT_EQ(json_of(same.output).at("sound"), true);
    const std::string other = FLASH_SOURCE().row({{"die_count", "2"}}).text();
    EXPECT_EQ(run_piped(other, line).exit_code, INTERNAL_ERROR);
}

TEST(command_posix, AKilledCompileLeavesADatabaseThatIsKnown) {
    constexpr int KILLS = 60;
    const SCRATCH scratch;
    const std::string one = scratch.write("one.csv", FLASH_SOURCE().row().text());
    const std::string two = scratch.write("two.csv", FLASH_SOURCE().row({{"device_name", "OTHER"}}).text());
    const std::string pcf = scratch.path("out.pcf");
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(run_command({"flash", "compile", one, pcf}).exit_code, DONE);
    const auto one_compile = std::chrono::steady_clock::now() - begin;
    std::set<std::string> databases;
    for (int i = 0; i < KILLS; ++i) {
        const pid_t compiler = fork();
        ASSERT_GE(compiler, 0);
        if (compiler == 0) {
            if (std::freopen("/dev/null", "w", stdout) == nullptr) {
                _exit(1);
            }
            for (;;) {
                run_pgmdev({"-q", "flash", "compile", two, pcf});
                run_pgmdev({"-q", "flash", "compile", one, pcf});
            }
        }
        std::this_thread::sleep_for(one_compile * (i + 5) / 20);  // up to the fourth compile
        ASSERT_EQ(kill(compiler, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(compiler, &status, 0), compiler);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the compiler ended by itself";
        databases.insert(read_file(pcf));
        const PROCESS_RESULT verified = run_command({"flash", "verify", pcf});
        ASSERT_EQ(verified.exit_code, DONE) << "kill " << i << "\n" << verified.output << read_file(pcf + ".info");
    }
    EXPECT_EQ(databases.size(), 2U) << "some were killed before, some behind the replacement";
}
