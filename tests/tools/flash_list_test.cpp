#include "command_fixture.h"

// `flash list` and `flash show`.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

RECORD named(const std::string& name, unsigned memory_id) {
    RECORD record = flash_reference::sample(name);
    record.memory_id = static_cast<BYTE>(memory_id);
    return record;
}

RECORD switched(const std::string& name, unsigned memory_id, const std::string& ini) {
    RECORD record = named(name, memory_id);
    record.ini = ini;
    return record;
}

}  // namespace

TEST(flash_list, AllMembersInOrder) {
    RECORD plain;  // differs from the sample in every member
    plain.manufacturer_name = "Other";
    plain.device_name = "PLAIN";
    plain.silicon_id = true;
    plain.memory_id = 0x10;
    plain.default_dev = true;
    plain.ini = "none";
    plain.device_bit_size = 0xFFFFFFFF;
    plain.asc_voltage = "1.8V";
    const std::vector<RECORD> records{flash_reference::sample(), plain};
    const PROCESS_RESULT result = FLASH_DATABASE(records).run({"--json", "flash", "list"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    const JSON document = json_of(result.output);
    EXPECT_EQ(document, JSON::array({record_object(0, records[0]), record_object(1, records[1])}));
    ASSERT_EQ(document.size(), 2U);
    EXPECT_EQ(keys_of(document[0]), keys_of(record_object(0, records[0])));
    EXPECT_EQ(keys_of(document[0]).size(), flash_reference::MEMBERS + 1);
    EXPECT_EQ(result.output.back(), '\n');
}

TEST(flash_list, TextThatIsNoUtf8StaysADocument) {
    RECORD record = flash_reference::sample("BAD\xFF\xC3NAME");
    record.manufacturer_name = "quote\" back\\slash \n\x01";
    const PROCESS_RESULT result = FLASH_DATABASE({record}).run({"--json", "flash", "list"});
    EXPECT_EQ(result.exit_code, DONE);
    const JSON document = json_of(result.output);
    EXPECT_EQ(document.at(0).at("manufacturer_name"), record.manufacturer_name);
    EXPECT_EQ(document.at(0).at("device_name"), "BAD\xEF\xBF\xBD\xEF\xBF\xBDNAME");
}

TEST(flash_list, ForPeople) {
    const FLASH_DATABASE database({named("FIRST", 1), named("SECOND", 2)});
    const PROCESS_RESULT result = database.run({"flash", "list"});
    EXPECT_EQ(result.exit_code, DONE);
    const std::vector<std::string> lines = lines_of(result.output);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].starts_with("index  manufacturer  device") && !contains(lines[0], "enabled")) << lines[0];
    EXPECT_TRUE(contains(lines[1], "FIRST") && contains(lines[1], "128 Mbit")) << lines[1];
    EXPECT_TRUE(contains(lines[2], "SECOND")) << lines[2];
    const std::vector<std::string> rows = lines_of(database.run({"flash", "list", "--all-rows"}).output);
    EXPECT_TRUE(rows.at(0).starts_with("row  index  manufacturer  device") && contains(rows[0], "enabled")) << rows[0];
    EXPECT_TRUE(rows.at(2).starts_with("1    1      ")) << rows[2];
}

TEST(flash_list, SwitchesEnableRecords) {
    const FLASH_DATABASE database({named("ALWAYS", 1), switched("RARE", 2, "RARE"), switched("ODD", 3, "ODD")});
    const auto names = [&](std::vector<std::string> options) {
        options.insert(options.end(), {"--json", "flash", "list"});
        const PROCESS_RESULT result = database.run(options);
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
        std::string text;
        for (const JSON& record : json_of(result.output)) {
            text += (text.empty() ? "" : " ") + record.at("device_name").get<std::string>();
        }
        return text;
    };
    EXPECT_EQ(names({}), "ALWAYS");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_RARE=on"}), "ALWAYS RARE");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_ODD=1"}), "ALWAYS ODD");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_RARE=yes", "--set", "PGM_ALLOW_ODD=TRUE"}), "ALWAYS RARE ODD");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_RARE=on", "--set", "PGM_ALLOW_RARE=off"}), "ALWAYS");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_RARE="}), "ALWAYS");
    EXPECT_EQ(names({"--set", "PGM_ALLOW_rare=on"}), "ALWAYS");
}

TEST(flash_list, SwitchInTheEnvironment) {
    const SCRATCH scratch;
    scratch.write("programmer/pgm_flash.pcf",
                  flash_reference::file(flash_reference::payload({switched("RARE", 2, "RARE")})));
    PROCESS process{
        {TEST_COMMAND, "flash", "show", "RARE"}, "", {{"TESSARY_DEVICE_DB_DIR", scratch.directory().string()}}, {}};
    EXPECT_EQ(run_process(process).exit_code, NOT_FOUND);
    process.environment["PGM_ALLOW_RARE"] = "on";
    EXPECT_EQ(run_process(process).exit_code, DONE);
}

TEST(flash_list, MissingDatabase) {
    const SCRATCH scratch;
    const PROCESS_RESULT result = run_command({"--db-dir", scratch.path("none"), "flash", "list"});
    expect_failure(result, INTERNAL_ERROR,
                   {"FIO_FILE_SYSTEM::exists(flash_file.fullpath().c_str()) && "
                    "FIO_FILE_SYSTEM::status(flash_file.fullpath().c_str(), &stat_info)",
                    "PGMDEV", "pgm/pgmdev/pgmdev_flash_manager"});
}

TEST(flash_list, FileThatIsNoDatabaseIsReportedByEveryVerb) {
    const SCRATCH scratch;
    std::string bytes = flash_reference::file(flash_reference::payload({named("ONE", 1)}));
    bytes[0] = 'X';
    scratch.write("programmer/pgm_flash.pcf", bytes);
    for (const std::vector<std::string>& verb :
         {std::vector<std::string>{"list"}, {"show", "ONE"}, {"identify", "20BA01"}}) {
        std::vector<std::string> arguments{"--db-dir", scratch.directory().string(), "flash"};
        arguments.insert(arguments.end(), verb.begin(), verb.end());
        const PROCESS_RESULT result = run_command(arguments);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << verb.front();
        EXPECT_TRUE(contains(result.errors, "data[index++] == 'P'")) << result.errors;
        EXPECT_FALSE(contains(result.output, "ONE"));
    }
}

TEST(flash_list, InstallationDirectoryLeadsToTheDatabase) {
    const SCRATCH scratch;
    scratch.write("devices/programmer/pgm_flash.pcf",
                  flash_reference::file(flash_reference::payload({named("INSTALLED", 1)})));
    const PROCESS_RESULT result =
        run_command({"--install-dir", scratch.directory().string(), "flash", "show", "INSTALLED"});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
}

TEST(flash_show, DefaultRecordOfAName) {
    RECORD secondary = named("TWICE", 1);
    secondary.default_dev = false;
    const RECORD standing = named("Twice", 2);
    const FLASH_DATABASE database({named("OTHER", 3), secondary, standing});
    for (const char* name : {"TWICE", "twice", "tWiCe"}) {
        const PROCESS_RESULT result = database.run({"--json", "flash", "show", name});
        EXPECT_EQ(result.exit_code, DONE);
        const JSON document = json_of(result.output);
        EXPECT_EQ(document, found_answer(name, record_object(2, standing)));
        EXPECT_EQ(keys_of(document), keys_of(found_answer(name, record_object(2, standing))));
    }
}

TEST(flash_show, ForPeopleEveryMemberHasALine) {
    const RECORD record = flash_reference::sample();
    const PROCESS_RESULT result = FLASH_DATABASE({record}).run({"flash", "show", "SAMPLE"});
    EXPECT_EQ(result.exit_code, DONE);
    const std::vector<std::string> lines = lines_of(result.output);
    const std::vector<std::string> keys = keys_of(record_object(0, record));
    ASSERT_EQ(lines.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(lines[i].substr(0, lines[i].find(' ')), keys[i]);
    }
    for (const char* part : {"3.3V", "134217728 bits", "65536 bytes", "250 s", "5000 us", "0xBA", "TRUE"}) {
        EXPECT_TRUE(contains(result.output, part)) << part;
    }
}

TEST(flash_show, UnknownName) {
    const FLASH_DATABASE database({named("W25Q64JV", 1), named("W25Q128JV", 2), named("MX25L", 3)});
    expect_failure(database.run({"flash", "show", "W25Q64"}), NOT_FOUND,
                   {"pgmdev: no flash is named \"W25Q64\"; did you mean W25Q64JV\n"});
    const PROCESS_RESULT json = database.run({"--json", "flash", "show", "W25Q64"});
    EXPECT_EQ(json.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(json.errors, "W25Q64JV")) << json.errors;
    EXPECT_EQ(json_of(json.output),
              missing_answer("W25Q64", {{"index", nullptr}, {"device_name", "W25Q64"}}, {"W25Q64JV"}));
    expect_failure(database.run({"flash", "show", "NOTHING"}), NOT_FOUND, {"NOTHING"});
    expect_failure(database.run({"flash", "show", ""}), NOT_FOUND, {});
}

TEST(flash_show, MistypedName) {
    const FLASH_DATABASE database({named("W25Q64JV", 1), named("W25Q64JVM", 2), named("W25Q", 3), named("MX25L", 4)});
    const auto candidates = [&database](const std::string& name) {
        return json_of(database.run({"--json", "flash", "show", name}).output).at("candidates");
    };
    EXPECT_EQ(candidates("W25Q46JV"), JSON::array({"W25Q64JV", "W25Q64JVM", "W25Q"}));  // swapped
    EXPECT_EQ(candidates("W25Q64JX"), JSON::array({"W25Q64JV", "W25Q64JVM", "W25Q"}));
    EXPECT_EQ(candidates("W25Q64"), JSON::array({"W25Q64JV", "W25Q64JVM", "W25Q"}));
    EXPECT_EQ(candidates("MX2L"), JSON::array({"MX25L"}));
    expect_failure(database.run({"flash", "identify", "--as", "0=W25Q46JV", "EF4017"}), WRONG_USAGE,
                   {"no flash is named \"W25Q46JV\"; did you mean W25Q64JV, W25Q64JVM, W25Q\n"});
}

TEST(flash_show, NameWithoutItsSwitchIsUnknown) {
    const FLASH_DATABASE database({named("ALWAYS", 1), switched("RARE", 2, "RARE")});
    expect_failure(database.run({"flash", "show", "RARE"}), NOT_FOUND, {"RARE"});
    EXPECT_EQ(database.run({"--set", "PGM_ALLOW_RARE=on", "flash", "show", "RARE"}).exit_code, DONE);
}

TEST(flash_show, ThereMayBeNoRecordAtAll) {
    const FLASH_DATABASE database({switched("RARE", 1, "RARE")});
    expect_failure(database.run({"flash", "show", "--index", "0"}), NOT_FOUND,
                   {"there is no record 0: there are none\n"});
    EXPECT_EQ(database.run({"flash", "show", "--all-rows", "--index", "0"}).exit_code, DONE);
    expect_failure(database.run({"flash", "show", "--all-rows", "--index", "1"}), NOT_FOUND,
                   {"there is no row 1: the last is 0\n"});
}

TEST(flash_show, Batch) {
    const FLASH_DATABASE database({named("ONE", 1), named("TWO", 2)});
    const PROCESS_RESULT result = database.run({"--json", "flash", "show", "-"}, "two\n  ONE \r\n\ttwo");
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_lines_of(result.output),
              (std::vector<JSON>{found_answer("two", record_object(1, named("TWO", 2))),
                                 found_answer("  ONE ", record_object(0, named("ONE", 1))),
                                 found_answer("\ttwo", record_object(1, named("TWO", 2)))}));
}

TEST(flash_show, BatchAnswersEveryLineAndTellsOfTheMissing) {
    const FLASH_DATABASE database({named("ONE", 1), named("TWO", 2)});
    const PROCESS_RESULT result = database.run({"--json", "flash", "show", "-"}, "ONE\nNOTHING\nTWO\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(result.errors, "NOTHING")) << result.errors;
    const std::vector<JSON> answers = json_lines_of(result.output);
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_EQ(answers[0].at("device_name"), "ONE");
    EXPECT_EQ(answers[1], missing_answer("NOTHING", {{"index", nullptr}, {"device_name", "NOTHING"}}));
    EXPECT_EQ(answers[2].at("device_name"), "TWO");
    const PROCESS_RESULT text = database.run({"flash", "show", "-"}, "ONE\nNOTHING\nTWO\n");
    EXPECT_EQ(text.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(text.output, "ONE") && contains(text.output, "TWO"));
}

TEST(flash_show, EmptyBatch) {
    const FLASH_DATABASE database({named("ONE", 1)});
    const PROCESS_RESULT result = database.run({"--json", "flash", "show", "-"}, "");
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
}

TEST(flash_show, BlankLinesAreToldApart) {
    const FLASH_DATABASE database({named("ONE", 1)});
    const PROCESS_RESULT result = database.run({"--json", "flash", "show", "-"}, "\n \n\t\r\nONE");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(
        json_lines_of(result.output),
        (std::vector<JSON>{refused_line("", BLANK_LINE), refused_line(" ", BLANK_LINE), refused_line("\t", BLANK_LINE),
                           found_answer("ONE", record_object(0, named("ONE", 1)))}));
}
