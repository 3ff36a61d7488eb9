#include <gtest/gtest.h>

#include <algorithm>

#include "data_set.h"
#include "host_tables.h"
#include "small_catalog.h"

namespace {

TEST(Generator, ExplainsItself) {
    const GENERATOR_RUN help = run({"--help"});
    EXPECT_EQ(help.result, 0);
    EXPECT_NE(help.output.find("Usage: ddb_generator --check CATALOG"), std::string::npos);
    EXPECT_EQ(help.errors, "");
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{{},
                                                                                           {"catalog"},
                                                                                           {"--check"},
                                                                                           {"a", "b", "c"},
                                                                                           {"--x", "b", "c", "d"},
                                                                                           {"--hps", "b"},
                                                                                           {"--check-hps", "b", "c"}}) {
        const GENERATOR_RUN wrong = run(arguments);
        EXPECT_EQ(wrong.result, 2);
        EXPECT_EQ(wrong.errors, help.output);
        EXPECT_EQ(wrong.output, "");
    }
}

TEST(Generator, SummarisesACorrectCatalog) {
    const GENERATOR_RUN checked = SMALL_CATALOG().check();
    EXPECT_EQ(checked.result, 0);
    EXPECT_EQ(checked.errors, "");
    EXPECT_EQ(checked.output,
              "2 families, 3 devices, 8 ordering names, 3 ordering codes in 20 entries\n"
              "free from: part 9, ordering-code index 10\n"
              "grammar (keys/entries): 5/7, 4/5, 2/4, 2/4, 2/2, 2/2, 1/1, 2/2\n");
}

TEST(Generator, WritesTheValuesThatPartsAreFilteredBy) {
    SMALL_CATALOG catalog;
    catalog.replace("packages.txt", "Q44   PQFP  44\n", "Q44   PQFP  44\nQ100  PQFP  100\n");
    const std::string source = catalog.output("values.cpp");
    const GENERATOR_RUN generated = run({"--part-values", catalog.directory(), source});
    ASSERT_EQ(generated.result, 0) << generated.errors;
    EXPECT_EQ(read_file(source),
              "// Written by ddb_generator from the device catalog. Do not edit.\n"
              "\n"
              "#include \"names/part_values.h\"\n"
              "\n"
              "const PART_VALUES& part_values() {\n"
              "    static const PART_VALUES values{\n"
              "        {\"FBGA\", \"PQFP\"},\n"
              "        {\"44\", \"100\"},\n"
              "        {\"6\", \"7\"},\n"
              "        {\"COMMERCIAL\", \"INDUSTRIAL\"},\n"
              "    };\n"
              "    return values;\n"
              "}\n");
    catalog.replace("grades.txt", "C6  6  COMMERCIAL", "C6  6");
    EXPECT_EQ(run({"--part-values", catalog.directory(), catalog.output("none.cpp")}).result, 1);
    EXPECT_FALSE(std::filesystem::exists(catalog.output("none.cpp")));
}

TEST(Generator, WritesThePartListInOrderOfNumbers) {
    const SMALL_CATALOG catalog;
    ASSERT_EQ(catalog.generate().result, 0);
    EXPECT_EQ(read_file(catalog.output("h/pgm_parts.txt")),
              "// Written by ddb_generator from the device catalog. Do not edit.\n"
              "\n"
              "// part, device, family, part number, ordering-code index, status, programmer part\n"
              "FIN1F100C6 FINCH-1 Finch 1 3 production FIN_1\n"
              "FIN1F100I7 FINCH-1 Finch 2 - production FIN_1\n"
              "FIN1LF100C6 FINCH-1 Finch 3 4 production FIN_1\n"
              "FIN1LF100I7 FINCH-1 Finch 4 - production FIN_1\n"
              "ROB1 ROBIN-1 Robin 6 - sample ROB\n"
              "ROB2C6 ROBIN-1 Robin 7 - announced ROB\n"
              "ROB3F100I7 ROBIN-2 Robin 8 9 discontinued NONE\n");
}

TEST(Generator, WritesTheSameBytesForTheSameCatalog) {
    const SMALL_CATALOG first;
    const SMALL_CATALOG second;  // in another directory
    ASSERT_EQ(first.generate().result, 0);
    ASSERT_EQ(second.generate().result, 0);
    for (const std::string file : {"data.cpp", "host.cpp", "h/pgm_parts.txt"}) {
        EXPECT_EQ(read_file(first.output(file)), read_file(second.output(file))) << file;
    }
}

TEST(Generator, KeepsNumbersWhenSomethingIsAdded) {
    SMALL_CATALOG catalog;
    ASSERT_EQ(catalog.generate().result, 0);
    std::istringstream before(read_file(catalog.output("h/pgm_parts.txt")));
    catalog.replace("devices.txt", "device 2", "  parts 10 FIN1 Q44 I7 sample\ndevice 2");
    catalog.replace("devices.txt", "device 9",
                    "device 3 FINCH-2 Finch FIN_1\n parts 12 FIN2 F100 C6,I7 sample\ndevice 9");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7", "5 FIN2F100I7\n9 ROB3F100I7");
    ASSERT_EQ(catalog.faults(), "");
    ASSERT_EQ(catalog.generate().result, 0);
    const std::string after = read_file(catalog.output("h/pgm_parts.txt"));
    for (std::string line; std::getline(before, line);) {
        EXPECT_NE(after.find(line + "\n"), std::string::npos) << line;
    }
    EXPECT_NE(after.find("FIN1Q44I7 FINCH-1 Finch 10 - sample FIN_1\n"), std::string::npos);
    EXPECT_NE(after.find("FIN2F100I7 FINCH-2 Finch 13 5 sample FIN_1\n"), std::string::npos);
}

TEST(Generator, ReadsFilesWithOtherLineEnds) {
    SMALL_CATALOG catalog;
    ASSERT_EQ(catalog.generate().result, 0);
    const std::string expected = read_file(catalog.output("host.cpp"));
    catalog.set("families.txt", "\r\n 1\tFinch FINCH_PCF#c\r\n\t# comment\r\n2 Robin NONE");
    ASSERT_EQ(catalog.generate().result, 0);
    EXPECT_EQ(read_file(catalog.output("host.cpp")), expected);
}

TEST(Generator, TellsWhatItCannotWrite) {
    const SMALL_CATALOG catalog;
    const SCRATCH scratch;
    const std::string directory = scratch.path("taken");
    std::filesystem::create_directory(directory + ".new");
    const GENERATOR_RUN failed = run({catalog.directory(), directory, scratch.path("host.cpp"), scratch.path("parts")});
    EXPECT_EQ(failed.result, 3);
    EXPECT_NE(failed.errors.find("taken.new: cannot be written"), std::string::npos) << failed.errors;
    EXPECT_FALSE(std::filesystem::exists(scratch.path("host.cpp")));
}

TEST(Generator, AnswersNumbersThatAreLeftOutWithTheGenericOnes) {
    const SMALL_CATALOG source;
    FAULTS faults;
    const HOST_TABLES tables = build_host_tables(read_catalog(source.directory(), faults));
    ASSERT_TRUE(faults.empty());
    EXPECT_STREQ(name_of(tables.pool(), tables.parts.table(), 5), "");
    EXPECT_EQ(tables.part_facts[5].device, 990);
    EXPECT_EQ(tables.part_facts[5].flags, 0);
    EXPECT_EQ(tables.device_families[3], 72);
    EXPECT_EQ(tables.device_families[9], 2);
    EXPECT_EQ(number_of(tables.pool(), tables.parts.table(), "fin1-f100-c6"), 1);
    EXPECT_STREQ(name_of(tables.pool(), tables.parts.table(), 9), "Generic");
    EXPECT_STREQ(name_of(tables.pool(), tables.parts.table(), 10), "") << "the place of the alias";
    EXPECT_EQ(number_of(tables.pool(), tables.parts.table(), "FIN1Q44C6"), 0);
}

BYTES bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

template <class OPERATION>
bool throws(OPERATION operation) {
    try {
        operation();
        return false;
    } catch (const std::runtime_error&) {
        return true;
    }
}

TEST(DataSets, UseTheCheckSumOfBzip2) {
    const BYTES digits = bytes("123456789");
    EXPECT_EQ(crc32_msb_first(digits.data(), digits.size()), 0xFC891918U);
}

TEST(DataSets, WriteTablesWithOneMarkAfterEachLevel) {
    GRAMMAR grammar;
    for (auto& table : grammar) {
        table["K"] = {"B", "A"};
    }
    grammar[0]["A1"] = {"X"};
    std::string expected("A1\0X\0\0K\0B\0A\0\0\0", 14);
    for (int table = 1; table < 8; ++table) {
        expected += std::string("K\0B\0A\0\0\0", 8);
    }
    EXPECT_EQ(encode_grammar(grammar), bytes(expected));
    EXPECT_NO_THROW(prove_grammar(bytes(expected), grammar));
    for (std::size_t length = 0; length < expected.size(); ++length) {
        EXPECT_THROW(prove_grammar(bytes(expected.substr(0, length)), grammar), std::runtime_error) << length;
        for (const char other : {'\0', 'K', 'C'}) {
            std::string changed = expected;
            changed[length] = other;
            EXPECT_EQ(changed == expected, !throws([&] { prove_grammar(bytes(changed), grammar); })) << length;
        }
    }
    EXPECT_THROW(prove_grammar(bytes(expected + "X"), grammar), std::runtime_error);
    EXPECT_THROW(prove_grammar(bytes(std::string("K\0A\0\0K\0A\0\0\0", 11) + expected), grammar), std::runtime_error);
    grammar[7].clear();
    EXPECT_THROW(prove_grammar(encode_grammar(grammar), grammar), std::runtime_error) << "no format for an empty table";
}

TEST(DataSets, WritePartNumbersInGroupsOfSevenBits) {
    const std::vector<std::uint32_t> parts{0, 127, 128, 16383, 16384, 0xFFFFFFFF};
    const BYTES expected{6,    0,    0,    0,    0x00, 0x7F, 0x80, 0x01, 0xFF,
                         0x7F, 0x80, 0x80, 0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F};
    EXPECT_EQ(encode_ordering_codes(parts), expected);
    EXPECT_EQ(decode_ordering_codes(expected), parts);
    for (std::size_t length = 0; length < expected.size(); ++length) {
        EXPECT_THROW(decode_ordering_codes({expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(length)}),
                     std::runtime_error);
    }
    EXPECT_THROW(decode_ordering_codes({1, 0, 0, 0, 0x80, 0x80, 0x80, 0x80, 0x80, 0x00}), std::runtime_error);
}

TEST(DataSets, AreRefusedWhenDamaged) {
    const BYTES body = bytes("the body");
    DATA_SET sealed = seal(body);
    EXPECT_EQ(sealed.unpacked_length, 10 + body.size() + 4);
    EXPECT_EQ(unseal(sealed), body);
    ++sealed.crc;
    EXPECT_THROW(unseal(sealed), std::runtime_error);
    --sealed.crc;
    for (const int change : {-1, 1}) {
        DATA_SET other = sealed;
        other.unpacked_length += static_cast<std::size_t>(change);
        EXPECT_THROW(unseal(other), std::runtime_error);
    }
    for (std::size_t i = 0; i < sealed.packed.size(); ++i) {
        DATA_SET other = sealed;
        other.packed.resize(i);
        EXPECT_THROW(unseal(other), std::runtime_error) << i;
    }
}

}  // namespace
