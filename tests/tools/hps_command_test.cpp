#include "hps_directory.h"
#include "pgmdev/parameters/fixture.h"

// The noun `hps`.

namespace {

namespace ref = ini_reference;

/// An `hps add spi` of every field.
std::vector<std::string> add_spi(const std::string& name) {
    return {"hps",
            "add",
            "spi",
            "silicon_id=0x1840C8",
            "silicon_id_mask=0xFFFF00",
            "ext_id=1",
            "ext_id_mask=255",
            "manufacturer_name=A maker",
            "device_name=" + name,
            "device_bit_size=0x8000000",
            "device_sector_byte=65536",
            "page_byte=256",
            "bulk_erase_time=300",
            "code_a=3",
            "code_b=11",
            "sec_erase_time=-1",
            "code_c=1",
            "die_count=2",
            "flag_a=true",
            "erase_opcode=0xDC",
            "program_opcode=0x12",
            "read_opcode=0x13"};
}

JSON spi_object(unsigned index, const std::string& name) {
    return {{"index", index},
            {"silicon_id", 0x1840C8},
            {"silicon_id_mask", 0xFFFF00},
            {"ext_id", 1},
            {"ext_id_mask", 255},
            {"manufacturer_name", "A maker"},
            {"device_name", name},
            {"device_bit_size", 0x8000000},
            {"device_sector_byte", 65536},
            {"page_byte", 256},
            {"bulk_erase_time", 300},
            {"code_a", 3},
            {"code_b", 11},
            {"sec_erase_time", 0xFFFFFFFF},
            {"code_c", 1},
            {"die_count", 2},
            {"flag_a", true},
            {"erase_opcode", 0xDC},
            {"program_opcode", 0x12},
            {"read_opcode", 0x13},
            {"user", true}};
}

}  // namespace

TEST(hps_command, Kinds) {
    const JSON kinds = HPS_DIRECTORY().json({"hps", "kinds"});
    ASSERT_EQ(kinds.size(), 2U);
    EXPECT_EQ(kinds[0].at("id"), 0x4BA00477);
    EXPECT_EQ(kinds[1].at("id"), 0x4BA00478);
    EXPECT_EQ(kinds[1].at("index"), 1);
    EXPECT_EQ(kinds[1].at("user"), false);
    EXPECT_GE(kinds[0].at("spi_controller_base").get<unsigned>(), 0xFF700000);
    const PROCESS_RESULT text = HPS_DIRECTORY().run({"hps", "kinds"});
    EXPECT_EQ(text.exit_code, DONE);
    EXPECT_TRUE(contains(text.output, "0x4BA00477"));
}

TEST(hps_command, BuiltInLists) {
    const HPS_DIRECTORY directory;
    const JSON nand = directory.json({"hps", "nand"});
    ASSERT_GE(nand.size(), 10U);
    EXPECT_EQ(nand[9], (JSON{{"index", 9},
                             {"manufacturer_id", 1},
                             {"device_id", 0xCC},
                             {"device_byte_size", 0x20000000},
                             {"user", false}}));
    const JSON spi = directory.json({"hps", "spi"});
    EXPECT_EQ(keys_of(spi.at(0)), keys_of(spi_object(0, "")));
    EXPECT_EQ(spi[0].at("device_name"), "QSPI_64");
    EXPECT_EQ(spi[0].at("user"), false);
    EXPECT_EQ(lines_of(directory.run({"hps", "nand"}).output).size(), nand.size() + 1);
    const std::vector<std::string> lines = lines_of(directory.run({"hps", "spi"}).output);
    ASSERT_EQ(lines.size(), spi.size() + 1);
    EXPECT_TRUE(contains(lines[1], "QSPI_64"));
    EXPECT_TRUE(contains(lines[1], "built-in"));
    EXPECT_EQ(directory.scratch().file_count(), 0U);
}

TEST(hps_command, AddedNandFlash) {
    const HPS_DIRECTORY directory;
    const JSON expected{
        {"index", 0}, {"manufacturer_id", 0xEC}, {"device_id", 0xD3}, {"device_byte_size", 0x40000000}, {"user", true}};
    EXPECT_EQ(
        directory.json({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x40000000"}),
        expected);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{std::nullopt, std::nullopt,
                                                      "79b884d001a0760b19c475920183ef66" + ref::le32(0xEC) +
                                                          ref::le32(0xD3) + ref::le32(0x40000000) + ref::le32(0)}));
    const JSON list = directory.json({"hps", "nand"});
    ASSERT_EQ(list.size(), HPS_DIRECTORY().json({"hps", "nand"}).size() + 1);
    EXPECT_EQ(list[0], expected);
    EXPECT_EQ(list[1].at("device_id"), 0x68);
}

TEST(hps_command, AddedSpiFlashes) {
    const HPS_DIRECTORY directory;
    const std::size_t built_in = directory.json({"hps", "spi"}).size();
    EXPECT_EQ(directory.json(add_spi("FIRST")), spi_object(0, "FIRST"));
    EXPECT_EQ(directory.json(add_spi("SECOND")), spi_object(1, "SECOND"));
    const JSON list = directory.json({"hps", "spi"});
    ASSERT_EQ(list.size(), built_in + 2);
    EXPECT_EQ(list[0], spi_object(0, "FIRST"));
    EXPECT_EQ(list[1], spi_object(1, "SECOND"));
    EXPECT_EQ(list[2].at("user"), false);

    const PROCESS_RESULT removed = directory.run({"hps", "remove", "spi", "0"});
    EXPECT_EQ(removed.exit_code, DONE) << removed.errors;
    EXPECT_EQ(directory.json({"hps", "spi"})[0], spi_object(0, "SECOND"));
    EXPECT_EQ(directory.json({"hps", "remove", "spi", "0"}), spi_object(0, "SECOND"));
    EXPECT_EQ(directory.json({"hps", "spi"}).size(), built_in);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{}));
}

TEST(hps_command, FieldsThatMayBeLeftOut) {
    const HPS_DIRECTORY directory;
    std::vector<std::string> arguments = add_spi("SHORT");
    std::erase_if(arguments, [](const std::string& text) {
        const std::string name = text.substr(0, text.find('='));
        return name == "silicon_id_mask" || name == "ext_id" || name == "ext_id_mask" || name == "page_byte" ||
               name == "code_c" || name == "die_count" || name == "flag_a";
    });
    JSON expected = spi_object(0, "SHORT");
    expected["silicon_id_mask"] = 0xFFFFFF;
    expected["ext_id"] = 0;
    expected["ext_id_mask"] = 0;
    expected["die_count"] = 1;
    EXPECT_EQ(directory.json(arguments), expected);

    arguments.pop_back();
    expect_failure(directory.run(arguments), WRONG_USAGE, {"missing", "read_opcode"});
}

TEST(hps_command, FieldsTakenFromAnotherEntry) {
    const HPS_DIRECTORY directory;
    const JSON built_in = directory.json({"hps", "spi"});
    JSON expected = built_in.at(26);
    EXPECT_EQ(expected.at("device_name"), "QSPI_128");
    expected["index"] = 0;
    expected["device_name"] = "QSPI_256";
    expected["device_bit_size"] = 0x10000000;
    expected["user"] = true;
    EXPECT_EQ(
        directory.json({"hps", "add", "spi", "--like", "26", "device_name=QSPI_256", "device_bit_size=0x10000000"}),
        expected);
    const std::string count = std::to_string(built_in.size() + 1);
    expect_failure(directory.run({"hps", "add", "spi", "--like", count}), WRONG_USAGE, {count + " entries"});
}

TEST(hps_command, FieldsAreChecked) {
    const HPS_DIRECTORY directory;
    const auto refused = [&directory](std::size_t position, const std::string& field,
                                      std::initializer_list<std::string> parts) {
        std::vector<std::string> arguments = ADD_NAND;
        arguments.at(position) = field;
        expect_failure(directory.run(arguments), WRONG_USAGE, parts);
    };
    refused(3, "manufacturer_id=0xEG", {"manufacturer_id: Invalid QWORD conversion"});
    refused(3, "manufacturer_id=4294967296", {"manufacturer_id: Conversion overflow compare to type"});
    refused(3, "manufacturer_id=18446744073709551616", {"manufacturer_id: Conversion overflow compare to type"});
    refused(3, "manufacturer_id=", {"manufacturer_id"});
    refused(3, "manufacturer_id", {"FIELD=VALUE"});
    refused(3, "manufacturer=1", {"\"manufacturer\""});
    refused(3, "device_id=1", {"device_id: given twice"});
    refused(5, "device_byte_size=0x140000000", {"device_byte_size: Input must be power of 2"});
    refused(5, "device_byte_size=0", {"device_byte_size: Input must be power of 2"});
    std::vector<std::string> arguments = add_spi("NAME");
    arguments.at(18) = "flag_a=2";
    expect_failure(directory.run(arguments), WRONG_USAGE, {"flag_a"});
    arguments = add_spi("NAME");
    arguments.at(19) = "erase_opcode=256";
    expect_failure(directory.run(arguments), WRONG_USAGE, {"erase_opcode: Input is out of range"});
    EXPECT_EQ(directory.scratch().file_count(), 0U);
}

TEST(hps_command, IdentificationsAreAsLongAsTheLibraryTakesThem) {
    const HPS_DIRECTORY directory;
    EXPECT_EQ(directory.json({"hps", "add", "nand", "manufacturer_id=0x12C", "device_id=-1", "device_byte_size=1024"}),
              (JSON{{"index", 0},
                    {"manufacturer_id", 0x12C},
                    {"device_id", 0xFFFFFFFF},
                    {"device_byte_size", 1024},
                    {"user", true}}));
    const JSON spi =
        directory.json({"hps", "add", "spi", "--like", "26", "silicon_id=0x101840C8", "silicon_id_mask=0xFFFFFFFF"});
    EXPECT_EQ(spi.at("silicon_id"), 0x101840C8);
    EXPECT_EQ(spi.at("silicon_id_mask"), 0xFFFFFFFF);
    EXPECT_EQ(directory.json({"hps", "spi"}).at(0), spi);
}

TEST(hps_command, HelpTellsWhichFieldsHaveALargestValue) {
    EXPECT_TRUE(contains(run_command({"hps", "add", "nand", "--help"}).output,
                         "-1 is the largest value of manufacturer_id device_id.\n"));
    EXPECT_TRUE(contains(run_command({"hps", "add", "spi", "--help"}).output,
                         "-1 is the largest value of silicon_id silicon_id_mask bulk_erase_time code_a code_b "
                         "sec_erase_time code_c.\n"));
}

TEST(hps_command, EntriesAreInsertedAndChangedInTheirPlace) {
    const HPS_DIRECTORY directory;
    const auto add = [&directory](const std::string& id, std::vector<std::string> more) {
        std::vector<std::string> arguments{
            "hps", "add", "nand", "manufacturer_id=1", "device_id=" + id, "device_byte_size=1024"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return directory.json(arguments).at("index");
    };
    const auto ids = [&directory] {
        std::vector<int> found;
        for (const JSON& entry : directory.json({"hps", "nand"})) {
            if (entry.at("user") == true) {
                found.push_back(entry.at("device_id").get<int>());
            }
        }
        return found;
    };
    EXPECT_EQ(add("10", {}), 0);
    EXPECT_EQ(add("11", {}), 1);
    EXPECT_EQ(add("12", {"--before", "1"}), 1);
    EXPECT_EQ(add("13", {"--before", "0"}), 0);
    EXPECT_EQ(ids(), (std::vector<int>{13, 10, 12, 11}));

    JSON entry = directory.json({"hps", "nand"}).at(2);
    entry["device_id"] = 20;
    EXPECT_EQ(directory.json({"hps", "edit", "nand", "2", "device_id=20"}), entry);
    EXPECT_EQ(ids(), (std::vector<int>{13, 10, 20, 11}));
    EXPECT_EQ(directory.run({"hps", "edit", "nand", "0", "device_id=1"}).output, "Entry 0 changed\n");

    const std::string before = directory.file();
    expect_failure(directory.run({"hps", "edit", "nand", "4", "device_id=1"}), NOT_FOUND, {"built in"});
    expect_failure(directory.run({"hps", "edit", "nand", "99", "device_id=1"}), NOT_FOUND, {"does not exist"});
    expect_failure(directory.run({"hps", "edit", "nand", "0", "device=1"}), WRONG_USAGE, {"\"device\""});
    expect_failure(directory.run({"hps", "edit", "nand", "0"}), WRONG_USAGE, {});
    expect_failure(directory.run({"hps", "add", "nand", "--like", "0", "--before", "4"}), NOT_FOUND, {"built in"});
    EXPECT_EQ(directory.file(), before);
}

TEST(hps_command, EntriesThatStayAreToldToPrograms) {
    const HPS_DIRECTORY directory;
    const auto failure = [&directory](std::vector<std::string> arguments, const std::string& code) {
        arguments.insert(arguments.begin(), "--json");
        const JSON error = json_failure(directory.run(arguments), NOT_FOUND, code);
        return text_of(error.value("message", JSON())) + "; " + text_of(error.value("advice", JSON()));
    };
    EXPECT_EQ(failure({"hps", "remove", "nand", "0"}, "entry_built_in"),
              "entry 0 is built in and stays; hps add nand --like 0 makes one of your own of it");
    EXPECT_EQ(failure({"hps", "edit", "spi", "99", "code_a=1"}, "entry_missing"),
              "entry 99 does not exist; hps spi lists all");
    failure({"hps", "add", "nand", "--like", "0", "--before", "0"}, "entry_built_in");
}

TEST(hps_command, EntriesThatCannotBeRemoved) {
    const HPS_DIRECTORY directory;
    expect_failure(directory.run({"hps", "remove", "nand", "0"}), NOT_FOUND, {"built in"});
    const std::size_t count = directory.json({"hps", "nand"}).size();
    expect_failure(directory.run({"hps", "remove", "nand", std::to_string(count)}), NOT_FOUND, {"does not exist"});
    expect_failure(directory.run({"hps", "remove", "nand", "x"}), WRONG_USAGE, {});
    expect_failure(directory.run({"hps", "remove", "nand"}), WRONG_USAGE, {});
}

TEST(hps_command, BlocksOfAnotherVersionAreLeftAlone) {
    const HPS_DIRECTORY directory;
    const std::string other_stamp(32, '0');
    const std::string cut = "9095cbfc6f5b69d3eb5d625df882a316" + std::string(20, '\0');
    const std::string file = ref::file(ref::BLOCKS{std::nullopt, cut, other_stamp + "records"});
    directory.scratch().write("pgm_flash.ini", file);
    std::vector<std::string> add_nand = ADD_NAND;
    add_nand.back() = "device_byte_size=1024";
    expect_failure(directory.run(add_nand), INTERNAL_ERROR, {"HPS NAND", "params remove 2"});
    expect_failure(directory.run(add_spi("NAME")), INTERNAL_ERROR, {"HPS SPI", "params remove 1"});
    EXPECT_EQ(directory.file(), file);
    EXPECT_EQ(directory.run({"params", "remove", "2"}).exit_code, DONE);
    EXPECT_EQ(directory.run(add_nand).exit_code, DONE);
}

TEST(hps_command, FileThatCannotBeWritten) {
    const HPS_DIRECTORY directory;
    std::filesystem::create_directories(directory.scratch().directory() / "pgm_flash.ini");
    expect_failure(directory.run(add_spi("NAME")), INTERNAL_ERROR,
                   {"the parameter container cannot be changed, since it is a directory: ", "pgm_flash.ini"});
}

TEST(hps_command, HelpWithExamples) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"hps"},
                                                  {"hps", "kinds"},
                                                  {"hps", "nand"},
                                                  {"hps", "spi"},
                                                  {"hps", "add"},
                                                  {"hps", "add", "nand"},
                                                  {"hps", "add", "spi"},
                                                  {"hps", "remove"},
                                                  {"hps", "remove", "nand"},
                                                  {"hps", "remove", "spi"},
                                                  {"hps", "edit"},
                                                  {"hps", "edit", "nand"},
                                                  {"hps", "edit", "spi"},
                                                  {"params", "show"},
                                                  {"params", "set"},
                                                  {"params"},
                                                  {"params", "list"},
                                                  {"params", "read"},
                                                  {"params", "write"},
                                                  {"params", "remove"}}) {
        std::vector<std::string> arguments = words;
        arguments.emplace_back("--help");
        const PROCESS_RESULT result = run_command(arguments);
        EXPECT_EQ(result.exit_code, DONE) << words.back();
        EXPECT_TRUE(contains(result.output, "Example: pgmdev ")) << words.back();
    }
    expect_failure(run_command({"hps"}), WRONG_USAGE, {});
    expect_failure(run_command({"params"}), WRONG_USAGE, {});
}
