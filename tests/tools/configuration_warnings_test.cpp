#include "command_fixture.h"

// Settings that have no effect.

namespace {

/// The warnings of a run that does nothing else of note.
std::vector<std::string> warnings(const std::map<std::string, std::string>& environment,
                                  std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), TEST_COMMAND);
    arguments.insert(arguments.end(), {"flash", "show", "W25Q64JV"});
    const PROCESS_RESULT result = run_process({arguments, "", environment, {}});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    return lines_of(result.errors);
}

using LINES = std::vector<std::string>;

}  // namespace

TEST(configuration_warnings, SettingsThatAreFineAreNotMentioned) {
    const SCRATCH scratch;
    const std::string file = scratch.write("tessary.conf", "# note\n\n PGM_ALLOW_M45PE = Yes \nOTHER_PROGRAM = 7\n");
    EXPECT_EQ(warnings({{"TESSARY_CONFIG_FILE", file},
                        {"TESSARY_OUTBOX_DIR", "somewhere"},
                        {"PGM_USER_SFL_FLASH_INFO_DEBUG", "off"},
                        {"PATH_OF_ANOTHER", "x"}},
                       {"--set", "PGMDEV_ENABLE_GRAMMAR_DEBUG=0", "--set", "TESSARY_DEBUG_LEVEL=1"}),
              LINES{});
}

TEST(configuration_warnings, UnknownKeys) {
    EXPECT_EQ(warnings({{"TESSARY_OUTBOX_DIRS", "x"}, {"PGM_ALLOW_M45PF", "on"}, {"PGM_NONSENSE", "x"}},
                       {"--set", "PGMDEV_ENABLE_GRAMAR_DEBUG=on", "--set", "TESSARY_DEBUG=2"}),
              (LINES{("pgmdev: warning: --set: the key PGMDEV_ENABLE_GRAMAR_DEBUG is not known; did you mean "
                      "PGMDEV_ENABLE_GRAMMAR_DEBUG"),
                     "pgmdev: warning: --set: the key TESSARY_DEBUG is not known; did you mean TESSARY_DEBUG_LEVEL",
                     "pgmdev: warning: environment: the key PGM_ALLOW_M45PF is not known; did you mean PGM_ALLOW_M45PE",
                     "pgmdev: warning: environment: the key PGM_NONSENSE is not known",
                     ("pgmdev: warning: environment: the key TESSARY_OUTBOX_DIRS is not known; did you mean "
                      "TESSARY_OUTBOX_DIR")}));
}

TEST(configuration_warnings, AMisspeltSwitchOfRowsAlone) {
    EXPECT_EQ(warnings({}, {"--set", "PGM_ALOW_M45PE=on"}),
              LINES{"pgmdev: warning: --set: the key PGM_ALOW_M45PE is not known; did you mean PGM_ALLOW_M45PE"});
}

TEST(configuration_warnings, ValuesAndPlacesThatDoNotCount) {
    EXPECT_EQ(warnings({{"PGM_ALLOW_M45PE", "maybe"}, {"TESSARY_DEBUG_LEVEL", "much"}},
                       {"--set", "TESSARY_MODULE_DIR=x", "--set", "PGM_USER_SFL_FLASH_INFO_DEBUG=onn"}),
              (LINES{"pgmdev: warning: --set: the key TESSARY_MODULE_DIR counts only as an environment variable",
                     "pgmdev: warning: --set: the value \"onn\" of PGM_USER_SFL_FLASH_INFO_DEBUG is neither on nor off",
                     "pgmdev: warning: environment: the value \"maybe\" of PGM_ALLOW_M45PE is neither on nor off",
                     "pgmdev: warning: environment: the value \"much\" of TESSARY_DEBUG_LEVEL is no number"}));
}

TEST(configuration_warnings, LinesOfTheFile) {
    const SCRATCH scratch;
    const std::string file =
        scratch.write("my.conf", "PGM_ALLOW_M45PE on\nPGM_ALOW_M45PE = on\n= x\nPGM_ALLOW_M45PE = si\n");
    const std::string begin = "pgmdev: warning: " + file + ":";
    EXPECT_EQ(warnings({{"TESSARY_CONFIG_FILE", file}}),
              (LINES{begin + "1: \"PGM_ALLOW_M45PE on\" is no assignment: expected KEY = VALUE",
                     begin + "3: \"= x\" is no assignment: expected KEY = VALUE",
                     begin + "2: the key PGM_ALOW_M45PE is not known; did you mean PGM_ALLOW_M45PE",
                     begin + "4: the value \"si\" of PGM_ALLOW_M45PE is neither on nor off"}));
}

TEST(configuration_warnings, MarksOfEncodings) {
    const SCRATCH scratch;
    const std::string marked = scratch.write("marked.conf", "\xEF\xBB\xBFPGM_NONSENSE = x\n");
    EXPECT_EQ(warnings({{"TESSARY_CONFIG_FILE", marked}}),
              LINES{"pgmdev: warning: " + marked + ":1: the key PGM_NONSENSE is not known"});
    const std::string wide = scratch.write("wide.conf", std::string("\xFF\xFEK\0=\0v\0\n\0", 10));
    EXPECT_EQ(warnings({{"TESSARY_CONFIG_FILE", wide}}),
              LINES{"pgmdev: warning: " + wide + ": it is UTF-16, and nothing of it counts: save it as UTF-8"});
}

TEST(configuration_warnings, EachOnce) {
    EXPECT_EQ(warnings({}, {"--set", "NOTHING=1", "--set", "NOTHING=1"}),
              LINES{"pgmdev: warning: --set: the key NOTHING is not known"});
}

TEST(configuration_warnings, AFileThatIsNotThereOrCannotBeRead) {
    const SCRATCH scratch;
    const std::string none = scratch.path("none.conf");
    EXPECT_EQ(warnings({{"TESSARY_CONFIG_FILE", none}}),
              LINES{"pgmdev: warning: environment variable TESSARY_CONFIG_FILE: there is no file " + none});
    const std::string directory = scratch.directory().string();
    const JSON error = json_failure(
        run_process({{TEST_COMMAND, "--json", "flash", "list"}, "", {{"TESSARY_CONFIG_FILE", directory}}, {}}),
        INTERNAL_ERROR, "configuration_unreadable");
    EXPECT_EQ(error.at("path"), directory);
    EXPECT_EQ(error.at("tried"), JSON::array({"environment variable TESSARY_CONFIG_FILE"}));
}

TEST(configuration_warnings, SwitchesOfRowsAreNotDoubtedWithoutTheDatabase) {
    const SCRATCH scratch;
    const PROCESS_RESULT result =
        run_command({"--db-dir", scratch.path("none"), "--set", "PGM_ALLOW_ANYTHING=on", "enum", "list", "block"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
}
