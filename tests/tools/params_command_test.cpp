#include "hps_directory.h"
#include "pgmdev/parameters/fixture.h"

// The noun `params`.

namespace {

namespace ref = ini_reference;

TEST(params_command, ValuesOfABlock) {
    const HPS_DIRECTORY directory;
    EXPECT_EQ(directory
                  .run({"params", "set", "0", "STRING=a b", "bool=true", "BYTE=1", "WORD=0x1234", "DWORD=-1",
                        "QWORD=18446744073709551615"})
                  .output,
              "Block \"SFL FLASH\" written, 20 bytes\n");
    const std::string bytes("a b\0\1\1\x34\x12\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 20);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{bytes, std::nullopt, std::nullopt}));
    const JSON shown = directory.json({"params", "show", "0", "STRING", "BOOL", "BYTE", "WORD", "DWORD", "QWORD"});
    EXPECT_EQ(shown.at("rest"), 0);
    EXPECT_EQ(shown.at("values"),
              JSON::array({{{"offset", 0}, {"type", "STRING"}, {"value", "a b"}},
                           {{"offset", 4}, {"type", "BOOL"}, {"value", "True"}},
                           {{"offset", 5}, {"type", "BYTE"}, {"value", "1"}},
                           {{"offset", 6}, {"type", "WORD"}, {"value", "4660"}},
                           {{"offset", 8}, {"type", "DWORD"}, {"value", "4294967295"}},
                           {{"offset", 12}, {"type", "QWORD"}, {"value", "18446744073709551615"}}}));
    EXPECT_EQ(lines_of(directory.run({"params", "show", "0", "WORD", "--hex", "--skip", "6"}).output).at(1),
              "6       WORD  0x1234");
    EXPECT_EQ(directory.json({"params", "show", "0", "QWORD"}).at("rest"), 4);
    EXPECT_EQ(lines_of(directory.run({"params", "show", "0", "QWORD"}).output).back(),
              "4 bytes from 16 on are no whole value of these types");
    expect_failure(directory.run({"params", "show", "1", "WORD"}), NOT_FOUND, {"HPS SPI"});
    expect_failure(directory.run({"params", "show", "0", "INT"}), WRONG_USAGE, {"\"INT\"", "QWORD"});
    expect_failure(directory.run({"params", "show", "0", "BYTE", "--skip", "21"}), WRONG_USAGE, {"20 bytes"});
}

TEST(params_command, AFileWithoutANameIsNoListing) {
    const HPS_DIRECTORY directory;
    ASSERT_EQ(directory.run({"params", "set", "0", "BYTE=1"}).exit_code, DONE);
    expect_failure(directory.run({"params", "read", "0", ""}), INTERNAL_ERROR, {"the output cannot be written"});
}

TEST(params_command, NumbersAreConvertedAsAsked) {
    const HPS_DIRECTORY directory;
    const auto number = [&directory](std::vector<std::string> more) {
        more.insert(more.begin(), {"params", "set", "0"});
        EXPECT_EQ(directory.run(more).exit_code, DONE) << more.back();
        return directory.json({"params", "show", "0", "DWORD"}).at("values").at(0).at("value");
    };
    EXPECT_EQ(number({"DWORD=12", "--hex"}), "18");
    EXPECT_EQ(number({"DWORD=12", "--multiple", "1000"}), "12000");
    EXPECT_EQ(number({"DWORD=12", "--exponent"}), "4096");
    EXPECT_EQ(number({"DWORD=16", "--power-of-two", "--range", "1-5,0x10-0x20", "--invalid-hit", "0xF=1,1=1"}), "16");
    const std::string before = directory.file();
    const auto refused = [&directory](std::vector<std::string> more, const std::string& part) {
        more.insert(more.begin(), {"params", "set", "0"});
        expect_failure(directory.run(more), WRONG_USAGE, {part});
    };
    refused({"DWORD=12", "--power-of-two"}, "Input must be power of 2 (\"12\")");
    refused({"DWORD=6", "--range", "1-5,16-32"}, "Input is out of range (\"6\")");
    refused({"DWORD=0x13", "--invalid-hit", "0xF=3"}, "Input is invalid (hit) (\"0x13\")");
    refused({"WORD=65", "--multiple", "1024"}, "Calculation overflow compare to type (\"65\")");
    refused({"BYTE=256"}, "Conversion overflow compare to type (\"256\")");
    refused({"BYTE="}, "a number is missing");
    refused({"BYTE"}, "TYPE=VALUE");
    refused({"BYTE=1", "--multiple", "0"}, "--multiple");
    refused({"BYTE=1", "--range", "5"}, "--range");
    refused({"BYTE=1", "--invalid-hit", "x=1"}, "--invalid-hit");
    refused({"BOOL=2"}, "false or true");
    expect_failure(directory.run({"params", "set", "1", "BYTE=1"}), WRONG_USAGE, {"HPS SPI", "hps add"});
    expect_failure(directory.run({"params", "set", "3", "BYTE=1"}), WRONG_USAGE, {"\"3\""});
    EXPECT_EQ(directory.file(), before);
}

TEST(params_command, BlocksBehindThoseWithNamesAreReadAndNotLost) {
    const HPS_DIRECTORY directory;
    const std::string file = ref::file_of({"zero", std::nullopt, std::nullopt, "three", std::nullopt});
    directory.scratch().write("pgm_flash.ini", file);
    const JSON blocks = directory.json({"params", "list"});
    ASSERT_EQ(blocks.size(), 5U);
    EXPECT_EQ(blocks.at(3), (JSON{{"block", 3}, {"name", "block 3"}, {"present", true}, {"size", 5}}));
    EXPECT_EQ(directory.json({"params", "read", "3"}).at("data"), "7468726565");
    EXPECT_EQ(directory.json({"params", "show", "3", "BYTE"}).at("values").size(), 5U);
    expect_failure(directory.run({"params", "read", "4"}), NOT_FOUND, {"block 4"});
    expect_failure(directory.run({"params", "read", "5"}), WRONG_USAGE, {"\"5\""});
    for (const std::vector<std::string>& change :
         {std::vector<std::string>{"params", "set", "0", "BYTE=1"}, {"params", "remove", "0"}, ADD_NAND}) {
        std::vector<std::string> arguments = change;
        arguments.back() = arguments.back().starts_with("device_byte") ? "device_byte_size=1024" : arguments.back();
        expect_failure(directory.run(arguments), INTERNAL_ERROR, {"would lose"});
    }
    EXPECT_EQ(directory.file(), file);
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

TEST(params_command, AFileThatIsTooLargeForABlockIsNotRead) {
    const HPS_DIRECTORY directory;
    const std::string source = directory.scratch().write("source.bin", "x");
    std::filesystem::resize_file(source, (std::uintmax_t{1} << 28) + 1);
    expect_failure(directory.run({"params", "write", "0", source}), WRONG_USAGE, {"source.bin is too large"});
    EXPECT_EQ(directory.scratch().file_count(), 1U);
}

TEST(params_command, AbsentBlocks) {
    const HPS_DIRECTORY directory;
    expect_failure(directory.run({"params", "read", "1"}), NOT_FOUND, {"HPS SPI"});
    expect_failure(directory.run({"params", "remove", "1"}), NOT_FOUND, {"HPS SPI"});
    const auto answer = [&directory](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--json");
        const PROCESS_RESULT result = directory.run(arguments);
        EXPECT_EQ(result.exit_code, NOT_FOUND);
        return json_of(result.output);
    };
    JSON absent{{"block", 1}, {"name", "HPS SPI"}, {"present", false}, {"size", 0}};
    EXPECT_EQ(answer({"params", "remove", "1"}), absent);
    JSON read = absent;
    read["data"] = "";
    EXPECT_EQ(answer({"params", "read", "1"}), read);
    EXPECT_EQ(answer({"params", "read", "1", directory.scratch().path("spi.bin")}), read);
    absent["values"] = JSON::array();
    absent["rest"] = 0;
    EXPECT_EQ(answer({"params", "show", "1", "DWORD"}), absent);
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

}  // namespace
