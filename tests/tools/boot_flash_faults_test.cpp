#include <gtest/gtest.h>

#include "tools/small_tables.h"

// The generator on tables of boot flash: what it refuses, and what it makes of correct ones.

namespace {

/// Two small correct tables.
class SMALL_BOOT_FLASH : public SMALL_TABLES {
public:
    SMALL_BOOT_FLASH() : SMALL_TABLES("hps") {
        set("nand.csv",
            "DWORD, DWORD, QWORD\n"
            "manufacturer_id, device_id, device_byte_size\n"
            "Notes, of any, length, for people\n"
            "-, -\n"
            "--------\n"
            "\n"
            "0x2C, 0x68, 0x100000000\n"
            "1, 241, 4096\n");
        set("spi.csv",
            "STL_STRING, STL_STRING, DWORD, DWORD, DWORD, DWORD, QWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, "
            "DWORD, "
            "DWORD, bool, DWORD, DWORD, DWORD\n"
            "manufacturer_name, device_name, silicon_id, silicon_id_mask, ext_id, ext_id_mask, device_bit_size, "
            "device_sector_byte, page_byte, bulk_erase_time, code_a, code_b, sec_erase_time, code_c, die_count, "
            "flag_a, erase_opcode, program_opcode, read_opcode\n"
            "--------\n"
            "MAKER, ONE, 0x11BA20, 0xFFFFFF, 68, 255, 4096, 256, 16, 101, 102, 103, 104, 105, 1, TRUE, 6, 7, 8\n"
            "MAKER, TWO, 0x11BA20, 0xFFFFFF, 0, 0, 4096, 256, 16, 1, 2, 3, 4, 5, 1, FALSE, 6, 7, 0xFF\n");
    }

    std::string source() const { return output("records.cpp"); }

    GENERATOR_RUN check() const { return run({"--check-hps", directory()}); }
    GENERATOR_RUN generate() const { return run({"--hps", directory(), source()}); }
    std::string faults() const { return told_inside(directory(), check().errors); }
};

class BootFlashFaults : public testing::TestWithParam<TABLE_DAMAGE> {};

TEST_P(BootFlashFaults, AreToldWithFileLineAndColumn) {
    SMALL_BOOT_FLASH flash;
    expect_told(flash, GetParam());
    EXPECT_EQ(flash.generate().result, 1);
    EXPECT_FALSE(std::filesystem::exists(flash.source()));
}

const std::vector<TABLE_DAMAGE> HEADER_DAMAGES{
    {"NoRuler", "nand.csv", "--------\n", "",
     "nand.csv: has no header: types, names, and a line of dashes below them\n"},
    {"RulerAtOnce", "nand.csv", "manufacturer_id,", "--------\nmanufacturer_id,",
     "nand.csv: has no header: types, names, and a line of dashes below them\n"},
    {"NoRow", "nand.csv", "\n\n0x2C, 0x68, 0x100000000\n1, 241, 4096\n", "\n \t\r\n",
     "nand.csv: has no row below its header\n"},
    {"UnknownColumn", "nand.csv", "device_id", "device",
     "nand.csv:2:18: column \"device\" is not known\n"
     "nand.csv:2:42: column \"device_id\" is missing\n"},
    {"ColumnTwice", "nand.csv", "device_id, device_byte_size", "device_id, device_id",
     "nand.csv:2:29: column \"device_id\" is already given at nand.csv:2:18\n"
     "nand.csv:2:38: column \"device_byte_size\" is missing\n"},
    {"MissingColumn", "nand.csv", ", device_byte_size", "",
     "nand.csv:2:27: column \"device_byte_size\" is missing\n"
     "nand.csv:1:15: expected 2 cells, found 3\n"},
    {"SurplusColumn", "nand.csv", "device_byte_size\n", "device_byte_size, colour\n",
     "nand.csv:2:47: column \"colour\" is not known\n"
     "nand.csv:1:20: expected 4 cells, found 3\n"},
    {"MissingType", "nand.csv", ", QWORD", "", "nand.csv:1:13: expected 3 cells, found 2\n"},
    {"WrongTypes", "nand.csv", "DWORD, DWORD, QWORD", "DWORD, QWORD, dword",
     "nand.csv:1:8: type \"QWORD\" of column \"device_id\" must be \"DWORD\"\n"
     "nand.csv:1:15: type \"dword\" of column \"device_byte_size\" must be \"QWORD\"\n"},
};

const std::vector<TABLE_DAMAGE> ROW_DAMAGES{
    {"MissingCell", "nand.csv", "1, 241, 4096", "1, 241  ", "nand.csv:8:7: expected 3 cells, found 2\n"},
    {"SurplusCell", "nand.csv", "1, 241, 4096", "1, 241, 4096, 5, 6", "nand.csv:8:15: expected 3 cells, found 5\n"},
    {"CommaAtTheEnd", "nand.csv", "1, 241, 4096", "1, 241, 4096,", "nand.csv:8:14: expected 3 cells, found 4\n"},
    {"EmptyNumber", "nand.csv", "1, 241, 4096", "1,  , 4096",
     "nand.csv:8:5: device_id \"\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"NumberWithText", "nand.csv", "1, 241, 4096", "1, 24l, 4096",
     "nand.csv:8:4: device_id \"24l\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"NoHexadecimalDigit", "nand.csv", "1, 241, 4096", "0x, 241, 4096",
     "nand.csv:8:1: manufacturer_id \"0x\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"NegativeNumber", "nand.csv", "1, 241, 4096", "-1, 241, 4096",
     "nand.csv:8:1: manufacturer_id \"-1\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"NumberAboveItsRange", "spi.csv", "FALSE, 6, 7, 0xFF", "FALSE, 6, 7, 256",
     "spi.csv:5:85: read_opcode \"256\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"IdentificationOfMoreThanAByte", "nand.csv", "1, 241, 4096", "0x1EC, 241, 4096",
     "nand.csv:8:1: manufacturer_id \"0x1EC\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"},
    {"NumberBelowItsRange", "spi.csv", "0xFFFFFF, 0,", "0, 0,",
     "spi.csv:5:23: silicon_id_mask \"0\" is not a number from 1 to 16777215, decimal or hexadecimal behind 0x\n"},
    {"NumberAboveItsType", "spi.csv", "101", "0x100000000",
     "spi.csv:4:57: bulk_erase_time \"0x100000000\" is not a number from 0 to 4294967295, decimal or hexadecimal "
     "behind 0x\n"},
    {"NumberAboveAll", "nand.csv", "0x100000000", "0x10000000000000000",
     "nand.csv:7:13: device_byte_size \"0x10000000000000000\" is not a number from 0 to 18446744073709551615, decimal "
     "or hexadecimal behind 0x\n"},
    {"SizeThatIsNoPowerOfTwo", "nand.csv", "1, 241, 4096", "1, 241, 4095",
     "nand.csv:8:9: device_byte_size \"4095\" is not a power of two\n"},
    {"SizeOfZero", "spi.csv", "4096, 256, 16, 101", "4096, 0, 16, 101",
     "spi.csv:4:48: device_sector_byte \"0\" is not a power of two\n"},
    {"Flag", "spi.csv", "TRUE", "True", "spi.csv:4:85: flag_a \"True\" is not TRUE or FALSE\n"},
    {"EmptyText", "spi.csv", "MAKER, TWO,", "MAKER,,",
     "spi.csv:5:7: device_name \"\" must consist of letters, digits and _ - . +\n"},
    {"Text", "spi.csv", "MAKER, TWO", "MAKER, TWO \"2\"",
     "spi.csv:5:8: device_name \"TWO \"2\"\" must consist of letters, digits and _ - . +\n"},
    {"DeviceTwice", "nand.csv", "1, 241, 4096", "0x2c, 104, 4096",
     "nand.csv:8:1: the device of this row is never found: the row at nand.csv:7:1 matches it and comes first\n"},
    {"DeviceBehindOneThatMatchesMore", "spi.csv", "68, 255, 4096", "0, 0, 4096",
     "spi.csv:5:13: the device of this row is never found: the row at spi.csv:4:13 matches it and comes first\n"},
    {"SeveralAtOnce", "nand.csv", "0x2C, 0x68, 0x100000000\n1, 241, 4096", "0x2C, x, 3\n1\n0x1FF, 241, 4096, 1",
     "nand.csv:7:7: device_id \"x\" is not a number from 0 to 255, decimal or hexadecimal behind 0x\n"
     "nand.csv:7:10: device_byte_size \"3\" is not a power of two\n"
     "nand.csv:8:2: expected 3 cells, found 1\n"
     "nand.csv:9:19: expected 3 cells, found 4\n"},
};

INSTANTIATE_TEST_SUITE_P(Header, BootFlashFaults, testing::ValuesIn(HEADER_DAMAGES), name_of_damage);
INSTANTIATE_TEST_SUITE_P(Rows, BootFlashFaults, testing::ValuesIn(ROW_DAMAGES), name_of_damage);

TEST(BootFlash, AByteOrderMarkIsPassedOver) {
    SMALL_BOOT_FLASH flash;
    flash.replace("nand.csv", "DWORD, DWORD, QWORD",
                  "\xEF\xBB\xBF"
                  "DWORD, DWORD, QWORD");
    EXPECT_EQ(flash.faults(), "");
    EXPECT_EQ(flash.check().result, 0);
}

TEST(BootFlash, FaultsOfBothTablesAreToldAtOnce) {
    SMALL_BOOT_FLASH flash;
    flash.remove("nand.csv");
    flash.replace("spi.csv", "TRUE", "1");
    EXPECT_EQ(flash.faults(), "nand.csv: cannot be read\nspi.csv:4:85: flag_a \"1\" is not TRUE or FALSE\n");
}

TEST(BootFlash, IsCounted) {
    const GENERATOR_RUN checked = SMALL_BOOT_FLASH().check();
    EXPECT_EQ(checked.result, 0);
    EXPECT_EQ(checked.errors, "");
    EXPECT_EQ(checked.output, "2 NAND and 2 SPI flash devices\n");
}

TEST(BootFlash, IsWrittenAsRecordsOfABlock) {
    SMALL_BOOT_FLASH flash;
    flash.replace("spi.csv",
                  "MAKER, TWO, 0x11BA20, 0xFFFFFF, 0, 0, 4096, 256, 16, 1, 2, 3, 4, 5, 1, FALSE, 6, 7, 0xFF\n", "");
    const GENERATOR_RUN generated = flash.generate();
    ASSERT_EQ(generated.result, 0) << generated.errors;
    EXPECT_EQ(generated.output + generated.errors, "");
    EXPECT_EQ(
        read_file(flash.source()),
        "// Written by ddb_generator from the tables of boot flash. Do not edit.\n"
        "\n"
        "#include \"hps/built_in_records.h\"\n"
        "\n"
        "const BYTE HPS_NAND_RECORDS[] = {\n"
        "44,0,0,0,104,0,0,0,0,0,0,0,1,0,0,0,1,0,0,0,241,0,0,0,0,16,0,0,0,0,0,0,\n"
        "};\n"
        "const DWORD HPS_NAND_RECORDS_LENGTH = 32;\n"
        "\n"
        "const BYTE HPS_SPI_RECORDS[] = {\n"
        "32,186,17,0,255,255,255,0,68,0,0,0,255,0,0,0,77,65,75,69,82,0,79,78,69,0,0,16,0,0,0,0,0,0,0,1,0,0,16,0,0,0,"
        "101,0,0,0,\n"
        "102,0,0,0,103,0,0,0,104,0,0,0,105,0,0,0,1,0,0,0,1,6,0,0,0,7,0,0,0,8,0,0,0,\n"
        "};\n"
        "const DWORD HPS_SPI_RECORDS_LENGTH = 79;\n");
}

TEST(BootFlash, LineEndsAndTheOrderOfColumnsDoNotMatter) {
    SMALL_BOOT_FLASH flash;
    ASSERT_EQ(flash.generate().result, 0);
    const std::string expected = read_file(flash.source());
    flash.set("nand.csv",
              "QWORD,DWORD,DWORD\r\n\r\ndevice_byte_size,manufacturer_id,device_id\r\n-\r\n\t4294967296\t,\t44,104\r\n"
              "0x1000,0x1,0xf1");
    ASSERT_EQ(flash.faults(), "");
    ASSERT_EQ(flash.generate().result, 0);
    EXPECT_EQ(read_file(flash.source()), expected);
}

TEST(BootFlash, ShippedTablesAreCorrect) {
    const GENERATOR_RUN checked = run({"--check-hps", TEST_DATA_DIR "/hps"});
    EXPECT_EQ(checked.result, 0) << checked.errors;
}

}  // namespace
