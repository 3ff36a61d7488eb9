#include <filesystem>
#include <set>

#include "command_fixture.h"
#include "pgmdev/profiles/fixture.h"

// Failures: what could not be done, with which file and what led to it, what to do next, what the library has said.

namespace {

namespace fs = std::filesystem;

const std::string FLASH_FILE = "programmer/pgm_flash.pcf";

std::string sound_database() {
    return flash_reference::file(flash_reference::payload({flash_reference::sample()}));
}

/// The texts come one after the other.
void expect_order(const std::string& text, const std::vector<std::string>& parts) {
    std::size_t position = 0;
    for (const std::string& part : parts) {
        const std::size_t found = text.find(part, position);
        ASSERT_NE(found, std::string::npos) << "\"" << part << "\" in " << text;
        position = found + part.size();
    }
}

PROCESS_RESULT list_flash(const SCRATCH& scratch) {
    return run_command({"--json", "--db-dir", scratch.directory().string(), "flash", "list"});
}

}  // namespace

TEST(errors, AMissingDatabaseIsToldInOneOrder) {
    const SCRATCH scratch;
    const PROCESS_RESULT result = run_command({"--db-dir", scratch.path("none"), "flash", "list"});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(lines_of(result.errors).size(), 1U);
    expect_order(result.errors, {"pgmdev: the flash database cannot be read", "there is no such file", "none",
                                 "pgm_flash.pcf", "(option --db-dir)", "pgmdev flash compile",
                                 "[FIO_FILE_SYSTEM::exists(", "PGMDEV, pgm/pgmdev/pgmdev_flash_manager, line ", "]\n"});
}

TEST(errors, TheCauseOfAPathIsTold) {
    const SCRATCH scratch;
    const std::string none = scratch.path("none");
    const auto tried = [](const PROCESS& process) {
        return json_failure(run_process(process), INTERNAL_ERROR, "database_missing").at("tried");
    };
    const std::vector<std::string> list{TEST_COMMAND, "--json", "profile", "list"};
    EXPECT_EQ(tried({list, "", {{"TESSARY_DEVICE_DB_DIR", none}}, {}}),
              JSON::array({"environment variable TESSARY_DEVICE_DB_DIR"}));
    EXPECT_EQ(
        tried({list, "", {{"TESSARY_INSTALL_DIR", none}}, {}}),
        JSON::array({"default: devices in the installation directory", "environment variable TESSARY_INSTALL_DIR"}));
    std::vector<std::string> with_option = list;
    with_option.emplace_back("--install-dir=" + none);
    EXPECT_EQ(tried({with_option, "", {{"TESSARY_INSTALL_DIR", none}}, {}}),
              JSON::array({"default: devices in the installation directory", "option --install-dir"}));
}

TEST(errors, EachStateOfADatabaseHasItsCode) {
    const std::string good = sound_database();
    const std::string other_stamp = std::string(32, '7');
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "database_damaged"},
        {good.substr(0, 46), "database_damaged"},
        {good.substr(0, good.size() - 4), "database_damaged"},
        {"no database, but long enough to hold the head of one", "database_other_kind"},
        {dev_info_reference::file("body"), "database_other_kind"},
        {flash_reference::MAGIC + other_stamp + good.substr(40), "database_other_stamp"},
        {flash_reference::file(flash_reference::le32(2) + flash_reference::payload({}).substr(4)),
         "database_other_version"},
    };
    for (const auto& [bytes, code] : cases) {
        SCOPED_TRACE(code);
        const SCRATCH scratch;
        const std::string file = scratch.write(FLASH_FILE, bytes);
        const JSON error = json_failure(list_flash(scratch), INTERNAL_ERROR, code);
        EXPECT_TRUE(fs::equivalent(error.at("path").get<std::string>(), file));
        EXPECT_EQ(error.at("tried"), JSON::array({"option --db-dir"}));
        EXPECT_NE(error.at("advice"), "");
        EXPECT_NE(error.at("condition"), "");
        EXPECT_EQ(error.at("module"), "PGMDEV");
        EXPECT_EQ(error.at("source"), "pgm/pgmdev/pgmdev_flash_manager");
        EXPECT_GT(error.at("line").get<int>(), 0);
        json_failure(run_command({"--json", "flash", "dump", file}), INTERNAL_ERROR, code);
    }
}

TEST(errors, BothStampsAreShown) {
    const SCRATCH scratch;
    const std::string stamp(32, '7');
    scratch.write(FLASH_FILE, flash_reference::MAGIC + stamp + sound_database().substr(40));
    const std::string message = json_failure(list_flash(scratch), INTERNAL_ERROR, "database_other_stamp").at("message");
    EXPECT_TRUE(contains(message, stamp) && contains(message, flash_reference::STAMP)) << message;
}

TEST(errors, ADirectoryIsNoDatabase) {
    const SCRATCH scratch;
    fs::create_directories(scratch.directory() / FLASH_FILE);
    const JSON error = json_failure(list_flash(scratch), INTERNAL_ERROR, "database_unreadable");
    EXPECT_TRUE(contains(error.at("message"), "it is a directory"));
}

TEST(errors, AProfileDatabaseOfAnotherKindIsNoEmptyOne) {
    const SCRATCH scratch;
    scratch.write("programmer/pgm_dev_info.pcf", sound_database());
    const JSON error =
        json_failure(run_command({"--json", "--db-dir", scratch.directory().string(), "profile", "list"}),
                     INTERNAL_ERROR, "database_other_kind");
    EXPECT_TRUE(contains(error.at("message"), "it is a flash database"));
    EXPECT_TRUE(contains(error.at("advice"), "pgmdev flash"));
}

TEST(errors, FilesThatCompilingNeeds) {
    const SCRATCH scratch;
    const std::string pcf = scratch.path("out.pcf");
    const JSON table = json_failure(run_command({"--json", "flash", "compile", scratch.path("none.csv"), pcf}),
                                    INTERNAL_ERROR, "source_table_unreadable");
    EXPECT_EQ(table.at("tried"), JSON::array({"argument CSV"}));
    EXPECT_EQ(table.at("condition"), "status && device_count > 0");

    const JSON list =
        json_failure(run_command({"--json", "--install-dir", scratch.directory().string(), "profile", "compile",
                                  std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv", pcf}),
                     INTERNAL_ERROR, "part_list_unreadable");
    EXPECT_TRUE(contains(list.at("path"), "h/pgm_parts.txt"));
    EXPECT_EQ(list.at("tried"), JSON::array({"option --install-dir"}));
    EXPECT_EQ(list.at("condition"), "status");
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(errors, APartListThatIsNoneIsNoFaultOfTheTable) {
    const SCRATCH scratch;
    const std::string list = scratch.write("h/pgm_parts.txt", "anything\n");
    const std::string csv = std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv";
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--json", "--install-dir", scratch.directory().string(), "profile"});
        return run_command(arguments);
    };
    const JSON error =
        json_failure(run({"compile", csv, scratch.path("out.pcf")}), INTERNAL_ERROR, "part_list_unreadable");
    EXPECT_TRUE(contains(error.at("path"), "h/pgm_parts.txt"));
    std::filesystem::remove(list);
    const PROCESS_RESULT check = run({"check", csv});
    EXPECT_EQ(check.exit_code, INTERNAL_ERROR);
    const std::string hint = text_of(json_of(check.output).at("hints").at(0));
    EXPECT_TRUE(contains(hint, "since there is no such file: ")) << hint;
    EXPECT_TRUE(contains(hint, "(option --install-dir); name the directory")) << hint;
    EXPECT_TRUE(contains(check.errors, "hint: the part list cannot be read")) << check.errors;
}

TEST(errors, AnOutputThatCannotBeWrittenTellsWhy) {
    const SCRATCH scratch;
    const std::string csv = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
    const std::string pcf = scratch.path("none/out.pcf");
    const JSON error =
        json_failure(run_command({"--json", "flash", "compile", csv, pcf}), INTERNAL_ERROR, "output_not_writable");
    EXPECT_EQ(error.at("path"), pcf);
    EXPECT_TRUE(contains(error.at("message"), "its directory does not exist"));
    const JSON directory = json_failure(run_command({"--json", "flash", "compile", csv, scratch.directory().string()}),
                                        INTERNAL_ERROR, "output_not_writable");
    EXPECT_TRUE(contains(directory.at("message"), "it is a directory"));
}

// By what the user has named it, as of files that are read.
TEST(errors, TheCauseOfAnOutputsPathIsTold) {
    const SCRATCH scratch;
    const std::string csv = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
    const std::string none = scratch.path("none/none");
    const std::string note = scratch.write("note.txt", "a note");
    struct OUTPUT {
        std::vector<std::string> arguments;
        int exit_code;
        const char* code;
        const char* tried;
    };
    const std::vector<OUTPUT> outputs{
        {{"flash", "compile", csv, none}, INTERNAL_ERROR, "output_not_writable", "argument PCF"},
        {{"flash", "compile", csv, csv, "--force"}, WRONG_USAGE, "refused", "argument PCF"},
        {{"profile", "compile", csv, note}, WRONG_USAGE, "refused", "argument PCF"},
        {{"params", "read", "0", note}, WRONG_USAGE, "refused", "argument FILE"},
        {{"page", none}, INTERNAL_ERROR, "output_not_writable", "argument OUTPUT_DIR"},
        {{"schema", "--directory", none}, INTERNAL_ERROR, "output_not_writable", "option --directory"},
    };
    for (const OUTPUT& output : outputs) {
        std::vector<std::string> arguments{"--json", "--module-dir", scratch.directory().string()};
        arguments.insert(arguments.end(), output.arguments.begin(), output.arguments.end());
        const JSON error = json_failure(run_command(arguments), output.exit_code, output.code);
        EXPECT_EQ(error.at("tried"), JSON::array({output.tried})) << output.tried;
    }
    EXPECT_TRUE(
        contains(run_command({"flash", "compile", csv, csv}).errors, csv + " (argument PCF); name another file"));
}

TEST(errors, WrongUsageIsADocumentToo) {
    const std::vector<std::vector<std::string>> wrong{
        {"--json"},
        {"--json", "flash"},
        {"flash", "--json"},
        {"--json", "nonsense"},
        {"flash", "list", "--nonsense", "--json"},
        {"--json", "--set", "KEY", "flash", "list"},
        {"--json", "flash", "identify", "xyz"},
        {"--json", "enum", "list", "colour"},
    };
    for (const auto& arguments : wrong) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        json_failure(run_command(arguments), WRONG_USAGE, "usage");
    }
}

TEST(errors, MisspeltWordsAreNamedWithTheNearest) {
    expect_failure(run_command({"flsh", "list"}), WRONG_USAGE, {"no noun \"flsh\"; did you mean flash"});
    expect_failure(run_command({"FLASH", "list"}), WRONG_USAGE, {"no noun \"FLASH\"; did you mean flash"});
    expect_failure(run_command({"Identify", "EF4018"}), WRONG_USAGE,
                   {"no noun \"Identify\"; did you mean flash identify; the nouns are doctor,"});
    expect_failure(run_command({"help"}), WRONG_USAGE, {"no noun \"help\"; did you mean --help; the nouns are"});
    expect_failure(run_command({"flash", "help"}), WRONG_USAGE, {"no verb \"help\"; did you mean --help; behind"});
    for (const std::string question : {"/?", "/h", "/help", "/HELP"}) {
        expect_failure(run_command({question}), WRONG_USAGE,
                       {"no noun \"" + question + "\"; did you mean --help; the nouns are"});
        expect_failure(run_command({"flash", question}), WRONG_USAGE,
                       {"no verb \"" + question + "\"; did you mean --help; behind"});
    }
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"-?"}, {"flash", "-?"}, {"flash", "show", "-?"}}) {
        expect_failure(run_command(words), WRONG_USAGE, {"there is no option \"-?\"; did you mean --help"});
    }
    expect_failure(run_command({"flash", "show", "/?"}), NOT_FOUND, {"no flash is named \"/?\""});  // it may be a name
    expect_failure(run_command({"check", "table.csv"}), WRONG_USAGE,
                   {"no noun \"check\"; did you mean flash check, profile check; the nouns are"});
    expect_failure(run_command({"--db-dir", "x", "flash", "lsit"}), WRONG_USAGE,
                   {"no verb \"lsit\"; did you mean list"});
    expect_failure(run_command({"hps", "add", "nnad"}), WRONG_USAGE, {"no verb \"nnad\"; did you mean nand"});
    expect_failure(run_command({"hps", "elephant"}), WRONG_USAGE, {"\"elephant\"", "kinds, nand, spi"});
    expect_failure(run_command({"--jsn", "flash", "list"}), WRONG_USAGE, {"no option \"--jsn\"; did you mean --json"});
    expect_failure(run_command({"flash", "list", "--makr", "x"}), WRONG_USAGE,
                   {"no option \"--makr\"; did you mean --maker"});
    expect_failure(run_command({"flash", "list", "--vltage=x"}), WRONG_USAGE, {"did you mean --voltage"});
    expect_failure(run_command({"schema", "flsh"}), WRONG_USAGE, {"\"flsh\"; did you mean flash"});
    expect_failure(run_command({"hps", "add", "nand", "device_di=1"}), WRONG_USAGE,
                   {"no field \"device_di\"; did you mean device_id"});
    expect_failure(run_command({"enum", "list", "blok"}), WRONG_USAGE, {"\"blok\"", "did you mean block"});
}

TEST(errors, EveryCodeIsDocumented) {
    const JSON schema = json_of(run_command({"schema", "flash", "list"}).output);
    std::set<std::string> codes;
    for (const JSON& code : schema["$defs"]["failure"]["properties"]["code"]["enum"]) {
        codes.insert(code.get<std::string>());
    }
    EXPECT_GE(codes.size(), 18U);
    // The rows of the table whose heading begins so.
    std::set<std::string> documented;
    bool inside = false;
    for (const std::string& line : lines_of(read_file(std::string(TEST_DATA_DIR) + "/../docs/command.md"))) {
        inside = line.starts_with("| code | exit |") || (inside && line.starts_with("|"));
        if (inside && line.starts_with("| `")) {
            documented.insert(line.substr(3, line.find('`', 3) - 3));
        }
    }
    EXPECT_EQ(codes, documented);
}
