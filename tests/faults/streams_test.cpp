#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <string>

#include "support/process.h"
#include "support/scratch.h"

// Programs whose standard streams are closed or full: they end by themselves, and their exit code is the truth.

namespace {

namespace fs = std::filesystem;

const std::string SHIPPED_TABLE = TEST_DATA_DIR "/flash/pgm_flash.csv";

/// What a shell makes of a command line; $P is the command pgmdev, $G the generator.
int exit_code_of(const std::string& line, const std::map<std::string, std::string>& variables = {}) {
    PROCESS process{{"/bin/sh", "-c", line}, "", {{"P", TEST_COMMAND}, {"G", TEST_GENERATOR}}, {}};
    process.environment.insert(variables.begin(), variables.end());
    return run_process(process).exit_code;
}

TEST(StreamFaults, EveryCombinationOfClosedAndFullStreams) {
    for (const std::string error : {"", "2>&-", "2>/dev/full"}) {
        for (const std::string output : {"", ">&-", ">/dev/full"}) {
            for (const std::string input : {"</dev/null", "<&-"}) {
                std::string streams;
                for (const std::string& stream : {input, output, error}) {
                    (streams += ' ') += stream;
                }
                SCOPED_TRACE(streams);
                const int answered = output.empty() ? 0 : 3;
                EXPECT_EQ(exit_code_of("$P flash list" + streams), answered);
                EXPECT_EQ(exit_code_of("$P --help" + streams), answered);
                EXPECT_EQ(exit_code_of("$P --version" + streams), answered);
                EXPECT_EQ(exit_code_of("$P no-such-noun" + streams), 2);
                EXPECT_EQ(exit_code_of("$P --json no-such-noun" + streams), answered == 0 ? 2 : 3);
                EXPECT_EQ(exit_code_of("$P flash check /none" + streams), 3);
                EXPECT_EQ(exit_code_of("$G --help" + streams), answered);
            }
        }
    }
}

/// The shell's limit ends whoever does not ask to be told instead.
TEST(StreamFaults, AFileThatMayNotBecomeAsLargeIsAFailure) {
    const SCRATCH scratch;
    const std::string database = scratch.write("flash.pcf", "");
    const std::map<std::string, std::string> names{{"T", TEST_DATA_DIR "/flash/pgm_flash.csv"},
                                                   {"C", TEST_DATA_DIR "/catalog"},
                                                   {"D", database},
                                                   {"L", scratch.path("list")}};
    const std::string compile = R"($P flash compile "$T" "$D")";
    EXPECT_EQ(exit_code_of(R"(ulimit -f 0; $P flash list >"$L")", names), 3);
    EXPECT_EQ(exit_code_of("ulimit -f 8; " + compile + " 2>&1 | grep -q 'the system says .File too large.'", names), 0);
    EXPECT_EQ(exit_code_of("ulimit -f 8; " + compile, names), 3);
    EXPECT_EQ(read_file(database), "");
    EXPECT_EQ(exit_code_of(R"(ulimit -f 8; $G "$C" "$L.1" "$L.2" "$L.3" 2>/dev/null)", names), 3);
    EXPECT_EQ(scratch.file_count(), 2U);
    EXPECT_EQ(exit_code_of("ulimit -f 800; " + compile, names), 0);
}

/// What is still open, but has been removed, has no place for the text beside it.
TEST(StreamFaults, ARemovedFileIsRefusedAsAnOutput) {
    const SCRATCH scratch;
    const std::string line = R"(exec 7>"$D"; rm "$D"; $P flash compile "$T" /proc/self/fd/7 2>&1 | )"
                             "grep -q 'it has been removed and is only open'";
    EXPECT_EQ(exit_code_of(line, {{"T", SHIPPED_TABLE}, {"D", scratch.path("gone")}}), 0);
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(StreamFaults, StandardInputThatCannotBeReadIsNoEnd) {
    EXPECT_EQ(exit_code_of("$P part info - </dev/null"), 0);
    EXPECT_EQ(exit_code_of("$P part info - <&- 2>/dev/null"), 3);
    EXPECT_EQ(exit_code_of("$P part info - </ 2>/dev/null"), 3);
    EXPECT_EQ(exit_code_of("$P part info - </dev/zero 2>/dev/null"), 3);
}

TEST(StreamFaults, OnlyFilesWhereFilesAreMeant) {
    const SCRATCH scratch;
    ASSERT_EQ(::mkfifo(scratch.path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {scratch.path("pipe"), std::string("/dev/zero"), scratch.directory().string()}) {
        EXPECT_EQ(exit_code_of("TESSARY_CONFIG_FILE=" + path + " timeout 20 $P flash list 2>/dev/null"), 3) << path;
    }
    for (const std::string& path : {std::string("/dev/zero"), scratch.directory().string()}) {
        EXPECT_EQ(exit_code_of("timeout 20 $P flash dump " + path + " 2>/dev/null"), 3) << path;
        EXPECT_EQ(exit_code_of("timeout 20 $P flash check " + path + " 2>/dev/null"), 3) << path;
        EXPECT_EQ(exit_code_of("timeout 20 $G --check " + path + " 2>/dev/null"), 1) << path;
    }
}

TEST(StreamFaults, APipeInThePlaceOfADatabaseIsNotWaitedFor) {
    const SCRATCH scratch;
    const std::string pipe = scratch.path("programmer/pgm_flash.pcf");
    scratch.write("programmer/pgm_flash.pcf.info", "database_sha256 = 0\n");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& command :
         {"flash dump " + pipe, "flash dump --annotate " + pipe, "flash verify " + pipe, std::string("flash list"),
          std::string("-v flash list"), std::string("page ") + scratch.path("page")}) {
        EXPECT_EQ(
            exit_code_of("timeout 20 $P --db-dir " + scratch.directory().string() + " " + command + " 2>/dev/null"), 3)
            << command;
    }
}

TEST(StreamFaults, APipeInThePlaceOfAListIsNotWaitedFor) {
    const SCRATCH scratch;
    const std::string check = "timeout 20 $P flash check " + scratch.write("t.csv", read_file(SHIPPED_TABLE));
    ASSERT_EQ(exit_code_of(check + " >/dev/null"), 0);
    for (const char* list :
         {"ambiguities.csv", "identifications.csv", "aliases.csv", "left_out.csv", "sources.csv", "t.csv.accepted"}) {
        ASSERT_EQ(::mkfifo(scratch.path(list).c_str(), 0600), 0);
        EXPECT_EQ(exit_code_of(check + " >\"$D\" 2>&1", {{"D", scratch.path("said")}}), 3) << list;
        const std::string said = read_file(scratch.path("said"));
        EXPECT_NE(said.find(list), std::string::npos) << said;
        EXPECT_NE(said.find("regular file"), std::string::npos) << said;
        fs::remove(scratch.path(list));
    }
    fs::create_directory(scratch.path("programmer"));
    const std::string place = scratch.path("programmer/pgm_flash.pcf");
    ASSERT_EQ(exit_code_of("$P flash compile " + scratch.path("t.csv") + " " + place + " >/dev/null"), 0);
    for (const auto& [list, command] :
         {std::pair("aliases.csv", "show W25Q64FV"), {"left_out.csv", "show X"}, {"sources.csv", "show W25Q64JV"}}) {
        ASSERT_EQ(::mkfifo((place + "." + list).c_str(), 0600), 0);
        EXPECT_EQ(exit_code_of("timeout 20 $P --db-dir " + scratch.directory().string() + " flash " + command +
                               " 2>/dev/null"),
                  3)
            << list;
        fs::remove(place + "." + list);
    }
    // Notes that cannot be read are told, and the rest of the answer comes all the same.
    ASSERT_EQ(::mkfifo((place + ".ambiguities.csv").c_str(), 0600), 0);
    EXPECT_EQ(exit_code_of("timeout 20 $P --db-dir " + scratch.directory().string() +
                           " flash identify EF4017 2>&1 | grep -q 'a regular file, no pipe and no device'"),
              0);
}

}  // namespace
