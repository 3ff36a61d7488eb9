#include "command_fixture.h"
#include "pgmdev/parameters/fixture.h"

// The nouns `hps` and `params`.

namespace {

namespace ref = ini_reference;

/// A module directory, and the command run on it.
class HPS_DIRECTORY {
public:
    PROCESS_RESULT run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--module-dir", m_scratch.directory().string()});
        return run_command(arguments);
    }
    JSON json(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "--json");
        const PROCESS_RESULT result = run(arguments);
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
        return json_of(result.output);
    }
    std::string file() const { return read_file(m_scratch.directory() / "pgm_flash.ini"); }
    const SCRATCH& scratch() const { return m_scratch; }

private:
    SCRATCH m_scratch;
};

const std::vector<std::string> ADD_NAND{
    "hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x140000000"};

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
    EXPECT_GE(kinds[0].at("spi_controller_base"), 0xFF700000);
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
    refused(3, "manufacturer_id=256", {"manufacturer_id: Input is out of range"});
    refused(3, "manufacturer_id=", {"manufacturer_id"});
    refused(3, "manufacturer_id", {"FIELD=VALUE"});
    refused(3, "manufacturer=1", {"\"manufacturer\""});
    refused(3, "device_id=1", {"device_id: given twice"});
    refused(5, "device_byte_size=0x140000000", {"device_byte_size: Input must be power of 2"});
    refused(5, "device_byte_size=0", {"device_byte_size: Input must be power of 2"});
    std::vector<std::string> arguments = add_spi("NAME");
    arguments.at(18) = "flag_a=2";
    expect_failure(directory.run(arguments), WRONG_USAGE, {"flag_a"});
    EXPECT_EQ(directory.scratch().file_count(), 0U);
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

TEST(params_command, BlocksOfAFile) {
    const HPS_DIRECTORY directory;
    const std::string contents("any\0bytes\xFF", 10);
    const std::string source = directory.scratch().write("source.bin", contents);
    EXPECT_EQ(directory.json({"params", "write", "0", source}),
              (JSON{{"block", 0}, {"name", "SFL FLASH"}, {"present", true}, {"size", 10}}));
    EXPECT_EQ(directory.run({"params", "write", "hps nand", source, "--raw"}).exit_code, DONE);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{contents, std::nullopt, contents}));
    EXPECT_EQ(directory.json({"params", "list"}),
              JSON::array({{{"block", 0}, {"name", "SFL FLASH"}, {"present", true}, {"size", 10}},
                           {{"block", 1}, {"name", "HPS SPI"}, {"present", false}, {"size", 0}},
                           {{"block", 2}, {"name", "HPS NAND"}, {"present", true}, {"size", 10}}}));
    EXPECT_EQ(lines_of(directory.run({"params", "list"}).output),
              (std::vector<std::string>{"block  name       bytes", "0      SFL FLASH  10", "1      HPS SPI    absent",
                                        "2      HPS NAND   10"}));

    EXPECT_EQ(directory.json({"params", "read", "SFL FLASH"}).at("data"), "616e79006279746573ff");
    EXPECT_EQ(directory.run({"params", "read", "0"}).output,
              "00000000  61 6e 79 00 62 79 74 65 73 ff                    |any.bytes.|\n");
    EXPECT_EQ(directory.run({"params", "read", "2", directory.scratch().path("copy.bin")}).exit_code, DONE);
    EXPECT_EQ(read_file(directory.scratch().path("copy.bin")), contents);

    EXPECT_EQ(directory.run({"params", "remove", "0"}).exit_code, DONE);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{std::nullopt, std::nullopt, contents}));
}

TEST(params_command, AbsentBlocks) {
    const HPS_DIRECTORY directory;
    expect_failure(directory.run({"params", "read", "1"}), NOT_FOUND, {"HPS SPI"});
    expect_failure(directory.run({"params", "remove", "1"}), NOT_FOUND, {"HPS SPI"});
    EXPECT_EQ(directory.scratch().file_count(), 0U);
}

TEST(params_command, WrongArguments) {
    const HPS_DIRECTORY directory;
    const std::string empty = directory.scratch().write("empty.bin", "");
    const std::string good = directory.scratch().write("good.bin", "data");
    expect_failure(directory.run({"params", "read", "3"}), WRONG_USAGE, {"\"3\"", "HPS NAND"});
    expect_failure(directory.run({"params", "write", "spi", good}), WRONG_USAGE, {"\"spi\""});
    expect_failure(directory.run({"params", "write", "1", empty}), WRONG_USAGE, {"is empty"});
    expect_failure(directory.run({"params", "write", "1", directory.scratch().path("missing")}), WRONG_USAGE,
                   {"cannot be read"});
    expect_failure(directory.run({"params", "write", "1", directory.scratch().directory().string()}), WRONG_USAGE,
                   {"cannot be read"});
    expect_failure(directory.run({"params", "write", "1"}), WRONG_USAGE, {});
}
