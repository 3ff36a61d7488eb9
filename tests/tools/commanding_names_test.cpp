#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pgmdev/profiles/fixture.h"
#include "pgmdev/user_flash/reference.h"
#include "support/scratch.h"
#include "tools/command_fixture.h"
#include "tools/flash_source.h"

// Names that would command a terminal, by a character that systems allow in those of files (U+009B, which begins what a
// terminal carries out): wherever the command says them, it does not.

namespace {

constexpr const char* COMMANDING = "\xC2\x9B";
constexpr const char* SHOWN = "\\xC2\\x9B";

const std::string NAME = std::string("a") + COMMANDING + "31m";

void expect_shown(const PROCESS_RESULT& result) {
    const std::string said = result.output + result.errors;
    EXPECT_FALSE(contains(said, COMMANDING)) << said;
    EXPECT_TRUE(contains(said, SHOWN)) << said;
}

void expect_shown(const std::vector<std::string>& arguments) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    expect_shown(run_command(arguments));
}

}  // namespace

TEST(CommandingNames, OfTablesAndTheirCompanions) {
    const SCRATCH scratch;
    const std::string table = scratch.write(NAME + ".csv", "no table\n");
    scratch.write(NAME + ".csv.accepted", "row\nanother row and a text\n");
    expect_shown({"flash", "check", table});
    expect_shown({"flash", "compile", table, scratch.path("out.pcf")});
    expect_shown({"profile", "check", table});
    expect_shown({"flash", "diff", table, table});
}

TEST(CommandingNames, OfDatabases) {
    const SCRATCH scratch;
    const std::string damaged = scratch.write(NAME + ".pcf", "PGMIO_FM and then nothing that belongs there ..........");
    expect_shown({"flash", "verify", damaged});
    expect_shown({"flash", "dump", "--annotate", damaged});
    expect_shown({"flash", "dump", damaged});
    expect_shown({"profile", "dump", damaged});
    const std::string sound = scratch.write(NAME + "1.pcf", flash_reference::file(flash_reference::payload({})));
    expect_shown({"flash", "verify", sound});
}

TEST(CommandingNames, OfDirectoriesAndOutputs) {
    const SCRATCH scratch;
    const std::string nowhere = scratch.path(NAME + "/" + NAME);
    expect_shown({"--db-dir", nowhere, "flash", "list"});
    expect_shown({"--module-dir", nowhere, "params", "read", "0"});
    expect_shown({"--install-dir", nowhere, "doctor"});
    expect_shown({"flash", "compile", scratch.write("t.csv", "x"), nowhere});
    expect_shown({"flash", "define", "@" + nowhere});
    expect_shown({"page", nowhere + "/page"});
}

TEST(CommandingNames, OfMakersAndDevices) {
    PGMDEV_SFL_FLASH_INFO record = flash_reference::sample(NAME);
    record.manufacturer_name = NAME;
    record.asc_voltage = NAME;
    const FLASH_DATABASE database({record});
    const std::string response = "EF4017";
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"flash", "list"},
                                               {"flash", "list", "--csv"},
                                               {"--wide", "flash", "list"},
                                               {"flash", "show", "--index", "0"},
                                               {"flash", "show", NAME},
                                               {"flash", "show", NAME + "X"},
                                               {"--json", "flash", "show", NAME + "X"},
                                               {"flash", "identify", "--as", "0=" + NAME, response},
                                               {"flash", "dump", database.file()},
                                               {"flash", "dump", "--annotate", database.file()}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const PROCESS_RESULT result = database.run(arguments);
        const std::string said = result.output + result.errors;
        EXPECT_FALSE(contains(said, COMMANDING)) << said;
        EXPECT_TRUE(contains(said, SHOWN) || contains(said, "\\u009b")) << said;
    }
}

TEST(CommandingNames, OfSwitchesThatEnableRows) {
    PGMDEV_SFL_FLASH_INFO record = flash_reference::sample("CHIP");
    record.ini = NAME;
    const FLASH_DATABASE database({record});
    const std::string setting = "PGM_ALLOW_" + NAME + "=on";
    expect_shown(database.run({"--set", setting, "flash", "show", "--all-rows", "chip"}));
    expect_shown(database.run({"--set", setting, "doctor"}));
}

TEST(CommandingNames, OfTheListsBesideADatabase) {
    const FLASH_DATABASE database({flash_reference::sample("CHIP")});
    const std::string bytes = ",18@2 BA@1 20@0,";
    database.write_beside(".aliases.csv", "alias,device_name,reason\nCHIP-" + NAME + ",CHIP," + NAME + "\n");
    expect_shown(database.run({"flash", "show", "CHIP-" + NAME}));
    database.write_beside(".sources.csv", "device_name,compared,times\nCHIP" + bytes + "two:linux+" + NAME + "\n");
    expect_shown(database.run({"flash", "show", "CHIP"}));
    database.write_beside(".sources.csv", "device_name,compared," + NAME + "\nCHIP" + bytes + "family\n");
    expect_shown(database.run({"flash", "show", "CHIP"}));
}

TEST(CommandingNames, OfWhatAProfileHolds) {
    namespace ref = dev_info_reference;
    const SCRATCH scratch;
    std::vector<ref::CELLS> rows = ref::rows();
    rows[0] = ref::sample("AVOCET");
    for (std::size_t i = ref::PART + 1; i < rows[0].size(); ++i) {
        rows[0][i] = ref::COLUMNS[i].kind == std::string("STL_STRING") ? NAME : rows[0][i];
    }
    scratch.write("programmer/pgm_dev_info.pcf", ref::file(ref::records(rows) + ref::tables(ref::TABLES())));
    expect_shown(run_command({"--db-dir", scratch.directory().string(), "profile", "show", "--index", "0"}));
}

TEST(CommandingNames, OnTheDebugChannelAndInTraces) {
    const SCRATCH scratch;
    const std::string table = scratch.write(NAME + ".csv", "no table\n");
    expect_shown({"-v", "flash", "compile", table, scratch.path("out.pcf")});
    const std::string text = user_flash_reference::encoded("1@" + NAME + "@");
    expect_shown({"--set", "PGM_USER_SFL_FLASH_INFO_DEBUG=on", "--set", "PGM_USER_SFL_FLASH_INFO=" + text, "flash",
                  "identify", "EF4018"});
}
