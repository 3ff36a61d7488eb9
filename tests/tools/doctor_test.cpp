#include "command_fixture.h"
#include "pgmdev_flash_ini.h"
#include "support/settings.h"

// What the command runs with, and what is wrong with it.

namespace {

PROCESS_RESULT run_doctor(const std::map<std::string, std::string>& environment,
                          const std::vector<std::string>& options = {}) {
    PROCESS process{{TEST_COMMAND, "doctor", "--json"}, "", environment, {}};
    process.command.insert(process.command.end(), options.begin(), options.end());
    return run_process(process);
}

/// The element of that name.
JSON named(const JSON& array, const std::string& name) {
    for (const JSON& element : array) {
        if (element["name"] == name) {
            return element;
        }
    }
    ADD_FAILURE() << "no " << name << " in " << array;
    return {};
}

/// A healthy machine, with a module directory of its own.
class doctor : public testing::Test {
protected:
    doctor() { environment["TESSARY_MODULE_DIR"] = scratch.directory().string(); }

    JSON examine(int exit_code, const std::vector<std::string>& options = {}) const {
        const PROCESS_RESULT result = run_doctor(environment, options);
        EXPECT_EQ(result.exit_code, exit_code) << result.output << result.errors;
        return json_of(result.output);
    }

    SCRATCH scratch;
    std::map<std::string, std::string> environment;
};

}  // namespace

TEST_F(doctor, FindsNothingWrongWithWhatIsBuilt) {
    const JSON all = examine(DONE);
    EXPECT_EQ(all["healthy"], true);
    EXPECT_EQ(all["problems"], JSON::array());
    EXPECT_EQ(all["versions"], json_of(run_command({"--version", "--json"}).output));
    const JSON flash = named(all["files"], "flash database");
    EXPECT_EQ(flash["state"], "good");
    EXPECT_EQ(flash["magic"], "PGMIO_FM");
    EXPECT_EQ(flash["stamp"], flash_reference::STAMP);
    EXPECT_EQ(flash["size"], read_file(flash["path"].get<std::string>()).size());
    EXPECT_GT(flash["records"].get<int>(), 300);
    EXPECT_EQ(named(all["files"], "profile database")["magic"], "PGMIO_DM");
    EXPECT_EQ(named(all["files"], "part list")["state"], "good");
    EXPECT_EQ(named(all["files"], "parameter container")["state"], "missing");
    EXPECT_EQ(all["user_flash"], (JSON{{"present", false}, {"taken", false}, {"faults", JSON::array()}}));
}

TEST_F(doctor, TellsWhatNamedEachDirectory) {
    const JSON by_environment = named(examine(DONE)["directories"], "module");
    EXPECT_EQ(by_environment["path"], scratch.directory().string());
    EXPECT_EQ(by_environment["origin"], JSON::array({"environment variable TESSARY_MODULE_DIR"}));
    const JSON by_option = examine(DONE, {"--db-dir", TEST_DEVICES_DIR, "--module-dir", scratch.path("")});
    EXPECT_EQ(named(by_option["directories"], "module")["origin"], JSON::array({"option --module-dir"}));
    EXPECT_EQ(named(by_option["directories"], "device databases")["origin"], JSON::array({"option --db-dir"}));
    const JSON outbox = examine(DONE, {"--set", "TESSARY_OUTBOX_DIR=" + scratch.path("outbox")});
    EXPECT_EQ(named(outbox["directories"], "outbox")["path"], scratch.path("outbox"));
    EXPECT_EQ(named(outbox["directories"], "outbox")["origin"], JSON::array({"option --set"}));
}

TEST_F(doctor, FindsAMissingAndADamagedDatabase) {
    const JSON missing = examine(NOT_FOUND, {"--db-dir", scratch.directory().string()});
    EXPECT_EQ(missing["healthy"], false);
    EXPECT_EQ(named(missing["files"], "flash database")["wrong"], true);
    EXPECT_EQ(missing["problems"].size(), 2U);

    const std::string whole = read_file(std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf");
    scratch.write("programmer/pgm_dev_info.pcf",
                  read_file(std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf"));
    scratch.write("programmer/pgm_flash.pcf", whole.substr(0, whole.size() / 2));
    const JSON damaged = examine(NOT_FOUND, {"--db-dir", scratch.directory().string()});
    EXPECT_EQ(damaged["problems"].size(), 1U);
    EXPECT_EQ(named(damaged["files"], "flash database")["state"], "database_damaged");
    EXPECT_EQ(named(damaged["files"], "profile database")["state"], "good");

    std::string other = whole;
    other[8] = other[8] == '0' ? '1' : '0';
    scratch.write("programmer/pgm_flash.pcf", other);
    const JSON stamped =
        named(examine(NOT_FOUND, {"--db-dir", scratch.directory().string()})["files"], "flash database");
    EXPECT_EQ(stamped["state"], "database_other_stamp");
    EXPECT_EQ(stamped["stamp"], other.substr(8, 32));
}

TEST_F(doctor, FindsADamagedContainer) {
    {
        const MODULE_DIRECTORY module(scratch.directory().string());
        BYTE block[] = {1, 2, 3};
        ASSERT_TRUE(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, block, 3));
    }
    const JSON sound = named(examine(DONE)["files"], "parameter container");
    EXPECT_EQ(sound["state"], "good");
    EXPECT_EQ(sound["size"], 47);
    const std::string bytes = read_file(scratch.path("pgm_flash.ini"));
    scratch.write("pgm_flash.ini", bytes.substr(0, bytes.size() - 1) + "x");
    const JSON doubtful = named(examine(NOT_FOUND)["files"], "parameter container");
    EXPECT_EQ(doubtful["state"], "doubtful");
    EXPECT_EQ(doubtful["size"], 47);
    EXPECT_TRUE(contains(doubtful["remark"].get<std::string>(), "pgm_flash.ini.info tells of another one"));
    scratch.write("pgm_flash.ini", bytes + "x");
    EXPECT_EQ(named(examine(NOT_FOUND)["files"], "parameter container")["state"], "damaged");
}

TEST_F(doctor, TellsTheSettingsInForce) {
    environment["TESSARY_CONFIG_FILE"] = scratch.write("own.conf", "PGM_ALLOW_M45PE = on\n");
    const JSON all = examine(DONE, {"--set", "TESSARY_OUTBOX_DIR=x"});
    const JSON expected = JSON::array({{{"key", "TESSARY_OUTBOX_DIR"}, {"value", "x"}},
                                       {{"key", "TESSARY_CONFIG_FILE"}, {"value", scratch.path("own.conf")}},
                                       {{"key", "TESSARY_MODULE_DIR"}, {"value", scratch.directory().string()}},
                                       {{"key", "PGM_ALLOW_M45PE"}, {"value", "on"}}});
    for (const JSON& each : expected) {
        EXPECT_NE(std::find(all["switches"].begin(), all["switches"].end(), each), all["switches"].end()) << each;
    }
    EXPECT_EQ(named(all["files"], "configuration file")["state"], "good");
}

TEST_F(doctor, FindsANamedConfigurationFileThatIsMissing) {
    environment["TESSARY_CONFIG_FILE"] = scratch.path("none.conf");
    const JSON all = examine(NOT_FOUND);
    EXPECT_EQ(named(all["files"], "configuration file")["state"], "missing");
}

TEST_F(doctor, FindsAConfigurationFileThatCannotBeRead) {
    environment["TESSARY_CONFIG_FILE"] = scratch.directory().string();
    const JSON all = examine(NOT_FOUND);
    EXPECT_EQ(named(all["files"], "configuration file")["state"], "unreadable");
    EXPECT_TRUE(contains(text_of(all["problems"].at(0)), "it is a directory")) << all["problems"];
}

TEST_F(doctor, FindsAConfigurationFileOfWhichNothingCounts) {
    const std::string comment = std::string(1023, '#') + '\n';
    std::string large;
    while (large.size() < std::size_t{1} << 20) {
        large += comment;
    }
    environment["TESSARY_CONFIG_FILE"] = scratch.write("own.conf", large);  // as large as a file may be
    EXPECT_EQ(named(examine(DONE)["files"], "configuration file")["state"], "good");
    for (const auto& [contents, remark] :
         {std::pair(large + '\n', "it cannot be read to its end, or is larger than 1 MiB"),
          std::pair(std::string("\xFF\xFEP\0", 4), "it is UTF-16, and nothing of it counts: save it as UTF-8")}) {
        scratch.write("own.conf", contents);
        const JSON all = examine(NOT_FOUND);
        const JSON file = named(all["files"], "configuration file");
        EXPECT_EQ(file["state"], "unreadable");
        EXPECT_EQ(file["remark"], remark);
        EXPECT_EQ(file["size"], contents.size());
        EXPECT_EQ(all["problems"].size(), 1U) << all["problems"];
    }
}

TEST_F(doctor, SaysWhyADescriptionIsNotTaken) {
    environment["PGM_USER_SFL_FLASH_INFO"] = "nonsense";
    const JSON all = examine(NOT_FOUND);
    EXPECT_EQ(all["user_flash"]["present"], true);
    EXPECT_EQ(all["user_flash"]["taken"], false);
    const JSON decoded = json_of(run_command({"flash", "decode", "nonsense", "--json"}).output);
    EXPECT_FALSE(decoded["faults"].empty());
    EXPECT_EQ(all["user_flash"]["faults"], decoded["faults"]);
}

TEST_F(doctor, SpeaksToPeople) {
    const PROCESS_RESULT healthy = run_command({"doctor"});
    EXPECT_EQ(healthy.exit_code, DONE) << healthy.output;
    for (const char* part : {"pgmdev 1.", "Directories", "Files", "default: the libraries' directory",
                             "Settings in force", "none is described", "Nothing is wrong"}) {
        EXPECT_TRUE(contains(healthy.output, part)) << part;
    }
    const PROCESS_RESULT ill = run_command({"doctor", "--db-dir", scratch.directory().string()});
    EXPECT_EQ(ill.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(ill.output, "\nSomething is wrong\n  flash database ")) << ill.output;
}
