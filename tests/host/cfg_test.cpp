#include "cfg.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "host_probe.h"
#include "support/scratch.h"
#include "support/settings.h"

// The configuration file is read once per process, so what concerns it runs in processes of its own.

namespace {

constexpr const char* FILE_VARIABLE = "TESSARY_CONFIG_FILE";

/// What a process with this configuration file answers for a key.
std::string value_in_file(const std::string& contents, const std::string& key) {
    const SCRATCH scratch;
    return host_answers({"value", key}, {{FILE_VARIABLE, scratch.write("test.conf", contents)}});
}

}  // namespace

TEST(cfg, KeyWithoutValueIsEmpty) {
    EXPECT_EQ(cfg_get_value("TESSARY_TEST_NOWHERE"), "");
    EXPECT_EQ(cfg_get_value(""), "");
}

TEST(cfg, ProgramComesBeforeEnvironmentBeforeFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_TEST = file\n");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{FILE_VARIABLE, file}}), "[file]\n");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{FILE_VARIABLE, file}, {"TESSARY_TEST", "environment"}}),
              "[environment]\n");
    EXPECT_EQ(host_answers({"set", "TESSARY_TEST", "program", "value", "TESSARY_TEST"},
                           {{FILE_VARIABLE, file}, {"TESSARY_TEST", "environment"}}),
              "[program]\n");
}

TEST(cfg, ProgramWinsEvenWithAnEmptyValueUntilCleared) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_TEST = file\n");
    EXPECT_EQ(host_answers({"set", "TESSARY_TEST", "", "value", "TESSARY_TEST", "clear", "TESSARY_TEST", "value",
                            "TESSARY_TEST", "clear", "TESSARY_TEST", "value", "TESSARY_TEST"},
                           {{FILE_VARIABLE, file}}),
              "[]\n[file]\n[file]\n");
}

TEST(cfg, FileIsInTheInstallationDirectoryUnlessNamed) {
    const SCRATCH scratch;
    scratch.write("tessary.conf", "TESSARY_TEST = installed\n");
    const std::string other = scratch.write("other.conf", "TESSARY_TEST = named\n");
    const std::string install = scratch.directory().string();
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{"TESSARY_INSTALL_DIR", install}}), "[installed]\n");
    EXPECT_EQ(host_answers({"set-install", install, "value", "TESSARY_TEST"}), "[installed]\n");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{"TESSARY_INSTALL_DIR", install}, {FILE_VARIABLE, ""}}),
              "[installed]\n");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{"TESSARY_INSTALL_DIR", install}, {FILE_VARIABLE, other}}),
              "[named]\n");
}

TEST(cfg, FileNeedNotExist) {
    const SCRATCH scratch;
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{FILE_VARIABLE, scratch.path("none.conf")}}), "[]\n");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST"}, {{FILE_VARIABLE, scratch.directory().string()}}), "[]\n");
}

TEST(cfg, FileIsReadOnce) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_TEST = first\n");
    EXPECT_EQ(
        host_answers({"value", "TESSARY_TEST", "write-file", file, "TESSARY_TEST = second\n", "value", "TESSARY_TEST"},
                     {{FILE_VARIABLE, file}}),
        "[first]\n[first]\n");
}

// As where HOME is /dev/null: looking it up again and again would take a thousand times as long.
TEST(cfg, AFileBelowAFileIsMissing) {
    const SCRATCH scratch;
    const std::string file = scratch.write("home", "a file, not a directory");
    const std::string below = scratch.path("home/tessary.conf");
    EXPECT_EQ(host_answers({"value", "TESSARY_TEST", "make-directory", file, "write-file", below,
                            "TESSARY_TEST = second\n", "value", "TESSARY_TEST"},
                           {{FILE_VARIABLE, below}}),
              "[]\n[]\n");
}

TEST(cfg, LinesOfTheFile) {
    struct CASE {
        const char* contents;
        const char* key;
        const char* answer;
    };
    const std::array cases{
        CASE{"K=v\n", "K", "[v]\n"},
        CASE{"\xEF\xBB\xBFK=v\n", "K", "[v]\n"},
        CASE{"K = v", "K", "[v]\n"},
        CASE{" \t K \t = \t a value \t \r\n", "K", "[a value]\n"},
        CASE{"K =\n", "K", "[]\n"},
        CASE{"K = first\nK = last\n", "K", "[last]\n"},
        CASE{"K = a=b = c\n", "K", "[a=b = c]\n"},
        CASE{"K = v # no comment\n", "K", "[v # no comment]\n"},
        CASE{"# K = v\n", "K", "[]\n"},
        CASE{"  # K = v\n", "# K", "[]\n"},
        CASE{"#K = v\n", "#K", "[]\n"},
        CASE{"\n  \n\r\nK = v\n", "K", "[v]\n"},
        CASE{"no equals sign\nK = v\n", "K", "[v]\n"},
        CASE{"no equals sign\n", "no equals sign", "[]\n"},
        CASE{"= v\n", "", "[]\n"},
        CASE{"K = v\n", "k", "[]\n"},
        CASE{"K K = v\n", "K K", "[v]\n"},
        CASE{"K = Gr\xC3\xBC\xC3\x9F"
             "e\n",
             "K",
             "[Gr\xC3\xBC\xC3\x9F"
             "e]\n"},
    };
    for (const CASE& each : cases) {
        EXPECT_EQ(value_in_file(each.contents, each.key), each.answer) << each.contents;
    }
}

TEST(cfg, WordsForOnAndOff) {
    for (const char* word : {"on", "true", "yes", "1", "ON", "True", "yEs"}) {
        const SETTING setting("TESSARY_TEST_SWITCH", word);
        EXPECT_TRUE(cfg_is_on("TESSARY_TEST_SWITCH", false)) << word;
        EXPECT_TRUE(cfg_is_on("TESSARY_TEST_SWITCH", true)) << word;
    }
    for (const char* word : {"off", "false", "no", "0", "OFF", "False", "nO"}) {
        const SETTING setting("TESSARY_TEST_SWITCH", word);
        EXPECT_FALSE(cfg_is_on("TESSARY_TEST_SWITCH", false)) << word;
        EXPECT_FALSE(cfg_is_on("TESSARY_TEST_SWITCH", true)) << word;
    }
}

TEST(cfg, AnyOtherWordGivesTheDefault) {
    for (const char* word : {"", "2", "00", "01", "o", "onn", "enabled", " on", "on ", "t", "y", "-1"}) {
        const SETTING setting("TESSARY_TEST_SWITCH", word);
        EXPECT_FALSE(cfg_is_on("TESSARY_TEST_SWITCH", false)) << word;
        EXPECT_TRUE(cfg_is_on("TESSARY_TEST_SWITCH", true)) << word;
    }
    EXPECT_FALSE(cfg_is_on("TESSARY_TEST_NOWHERE", false));
    EXPECT_TRUE(cfg_is_on("TESSARY_TEST_NOWHERE", true));
}

TEST(cfg, SwitchesComeFromTheEnvironmentAndTheFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_A = on\nTESSARY_B = off\nTESSARY_C = on\n");
    EXPECT_EQ(host_answers({"is-on", "TESSARY_A", "is-on", "TESSARY_B", "is-on", "TESSARY_C"},
                           {{FILE_VARIABLE, file}, {"TESSARY_B", "1"}, {"TESSARY_C", "no"}}),
              "on\non\noff\n");
}

TEST(cfg, MayBeCalledFromAnyThread) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            const std::string key = "TESSARY_TEST_THREAD_" + std::to_string(i);
            for (int round = 0; round < 500; ++round) {
                cfg_set_value(key, std::to_string(round));
                EXPECT_EQ(cfg_get_value(key), std::to_string(round));
                cfg_clear_value(key);
                EXPECT_EQ(cfg_get_value(key), "");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
