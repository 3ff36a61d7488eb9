#include <gmock/gmock.h>

#include "pgmdev/sfdp/sample.h"

// The 4-Byte Address Instruction Table and the Sector Map Parameter Table.

namespace {

using namespace sfdp_sample;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using SFDP = PGMDEV_FLASH_SFDP;
using TEXTS = std::vector<std::string>;

SFDP with_table(WORD id, const WORDS& words) {
    return read(dump({{.words = basic_words()}, {.id = id, .words = words}}));
}

SFDP with_map(const WORDS& words) {
    return with_table(SFDP::SECTOR_MAP_ID, words);
}

TEXTS regions_of(const SFDP::SECTOR_MAP& map) {
    TEXTS texts;
    for (const SFDP::REGION& region : map.regions) {
        std::string types;
        for (const BYTE type : region.erase_types) {
            types += std::to_string(type);
        }
        texts.push_back(std::to_string(region.offset) + "+" + std::to_string(region.bytes) + " " + types);
    }
    return texts;
}

TEST(SfdpFourByteTable, BitsAndOpcodes) {
    const SFDP sfdp = with_table(SFDP::FOUR_BYTE_ID, {0xFFF00A43, 0xFFDCFF21});
    ASSERT_TRUE(sfdp.four_byte());
    EXPECT_EQ(sfdp.four_byte()->word1, 0xFFF00A43U);
    EXPECT_EQ(sfdp.four_byte()->word2, 0xFFDCFF21U);
    EXPECT_EQ(sfdp.four_byte()->support,
              (TEXTS{"read 13", "fast read 0C", "program 12", "erase type 1", "erase type 3"}));
    EXPECT_THAT(sfdp.four_byte()->erase_opcodes, ElementsAre(Pair(1, 0x21), Pair(3, 0xDC)));
    EXPECT_EQ(sfdp.basic().erase_types[0].opcode_4byte, 0x21);
    EXPECT_EQ(sfdp.basic().erase_types[1].opcode_4byte, std::nullopt);
    EXPECT_EQ(sfdp.basic().erase_types[2].opcode_4byte, 0xDC);
}

TEST(SfdpFourByteTable, EachBitHasAName) {
    const TEXTS names{"read 13",          "fast read 0C",  "read 1-1-2 3C",     "read 1-2-2 BC",
                      "read 1-1-4 6C",    "read 1-4-4 EC", "program 12",        "program 1-1-4 34",
                      "program 1-4-4 3E", "erase type 1",  "erase type 2",      "erase type 3",
                      "erase type 4",     "DTR read 0E",   "DTR read 1-2-2 BE", "DTR read 1-4-4 EE"};
    for (std::size_t bit = 0; bit < 32; ++bit) {
        const SFDP sfdp = with_table(SFDP::FOUR_BYTE_ID, {DWORD{1} << bit, 0x5CDC5221});
        EXPECT_EQ(sfdp.four_byte()->support, bit < names.size() ? TEXTS{names[bit]} : TEXTS()) << bit;
    }
}

TEST(SfdpFourByteTable, EraseOpcodeThatIsNoneIsNamedAndNotUsed) {
    const SFDP sfdp = with_table(SFDP::FOUR_BYTE_ID, {0x00000600, 0xFFFFFF21});
    EXPECT_THAT(sfdp.four_byte()->erase_opcodes, ElementsAre(Pair(1, 0x21)));
    EXPECT_THAT(sfdp.warnings(), ElementsAre("4-byte instructions table at 58h word 2: erase type 2 has the opcode FF, "
                                             "which erases nothing; it is not used"));
}

TEST(SfdpFourByteTable, ShortOneIsNamedAndNotUsed) {
    const SFDP sfdp = with_table(SFDP::FOUR_BYTE_ID, {0xFFFFFFFF});
    EXPECT_FALSE(sfdp.four_byte());
    EXPECT_THAT(sfdp.warnings(), ElementsAre("4-byte instructions table at 58h: 1 words, expected 2; it is not used"));
}

TEST(SfdpSectorMap, OneMap) {
    // 64 KiB of 4-KiB and 32-KiB sectors, then 64-KiB sectors to the end of the 16 MiB.
    const SFDP sfdp = with_map({0xFF0100FF, 0x0000FFF3, 0x00FEFFF4});
    EXPECT_TRUE(sfdp.hybrid());
    EXPECT_THAT(sfdp.map_commands(), IsEmpty());
    ASSERT_EQ(sfdp.sector_maps().size(), 1U);
    EXPECT_EQ(sfdp.sector_maps()[0].id, 0);
    EXPECT_EQ(regions_of(sfdp.sector_maps()[0]), (TEXTS{"0+65536 12", "65536+16711680 3"}));
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
    EXPECT_EQ(sfdp.sector_erase()->bytes, 65536U);  // nothing erases everywhere
}

TEST(SfdpSectorMap, UniformMapIsNotHybrid) {
    const SFDP sfdp = with_map({0xFF0000FF, 0x00FFFFF5});
    EXPECT_FALSE(sfdp.hybrid());
    EXPECT_EQ(regions_of(sfdp.sector_maps().at(0)), TEXTS{"0+16777216 13"});
}

TEST(SfdpSectorMap, SectorSizeIsOneOfEveryRegion) {
    const SFDP sfdp = with_map({0xFF0100FF, 0x0000FFF1, 0x00FEFFF5});
    EXPECT_EQ(sfdp.sector_erase()->bytes, 4096U);
}

TEST(SfdpSectorMap, CommandsChooseAmongMaps) {
    const SFDP sfdp = with_map({0x08FF65FC, 0x00000004, 0x044865FC, 0x00800002, 0x020035FD, 0xFFFFFFFF,  // commands
                                0xFF0100FE, 0x0000FFF1, 0x00FEFFF4,                                      // map 0
                                0xFF0105FF, 0x00FEFFF4, 0x0000FFF1});                                    // map 5
    ASSERT_EQ(sfdp.map_commands().size(), 3U);
    EXPECT_EQ(sfdp.map_commands()[0].opcode, 0x65);
    EXPECT_EQ(sfdp.map_commands()[0].mask, 0x08);
    EXPECT_EQ(sfdp.map_commands()[0].address, 4U);
    EXPECT_EQ(sfdp.map_commands()[0].address_bytes, std::nullopt);
    EXPECT_EQ(sfdp.map_commands()[0].wait_clocks, std::nullopt);
    EXPECT_EQ(sfdp.map_commands()[1].address, 0x800002U);
    EXPECT_EQ(sfdp.map_commands()[1].address_bytes, 3);
    EXPECT_EQ(sfdp.map_commands()[1].wait_clocks, 8);
    EXPECT_EQ(sfdp.map_commands()[2].opcode, 0x35);
    EXPECT_EQ(sfdp.map_commands()[2].address_bytes, 0);
    EXPECT_EQ(sfdp.map_commands()[2].wait_clocks, 0);
    ASSERT_EQ(sfdp.sector_maps().size(), 2U);
    EXPECT_EQ(sfdp.sector_maps()[1].id, 5);
    EXPECT_EQ(regions_of(sfdp.sector_maps()[1]), (TEXTS{"0+16711680 3", "16711680+65536 1"}));
    EXPECT_TRUE(sfdp.hybrid());
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
}

TEST(SfdpSectorMap, WordsBehindTheLastMapAreNotRead) {
    const SFDP sfdp = with_map({0xFF0000FF, 0x00FFFFF5, 0xFFFFFFFF, 0xFFFFFFFF});
    EXPECT_EQ(sfdp.sector_maps().size(), 1U);
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
}

TEST(SfdpSectorMap, DamagedOnesAreNamedAndNotUsed) {
    const std::vector<std::pair<WORDS, std::string>> damaged{
        {{0xFF0200FF, 0x0000FFF1, 0x00FEFFF4},
         "sector map table at 58h word 1: a map of 3 regions, the table has 2 more words; it is not used"},
        {{0x08FF65FD, 0x00000004}, "sector map table at 58h: it has no map; it is not used"},
        {{0x08FF65FD}, "sector map table at 58h: it has no map; it is not used"},
        {{0xFF0000FE, 0x00FFFFF5, 0x08FF65FD, 0x00000004},
         "sector map table at 58h word 3: a command behind a map, expected a map; the table is not used"},
        {{0xFF0000FF, 0x0000FFF1},
         "sector map table at 58h word 1 (map 0): its regions end at 65536 bytes, the chip has 16777216; it is not "
         "used"},
    };
    for (const auto& [words, warning] : damaged) {
        const SFDP sfdp = with_map(words);
        EXPECT_FALSE(sfdp.refusal());
        EXPECT_THAT(sfdp.warnings(), ElementsAre(warning));
        EXPECT_THAT(sfdp.sector_maps(), IsEmpty());
        EXPECT_FALSE(sfdp.hybrid());
    }
}

TEST(SfdpSectorMap, OddOnesAreNamed) {
    EXPECT_THAT(with_map({0xFF0000FE, 0x00FFFFF5}).warnings(),
                ElementsAre("sector map table at 58h: no map is marked as the last one; the table ends them"));
    EXPECT_THAT(with_map({0xFF0000FF, 0x00FFFFF0}).warnings(),
                ElementsAre("sector map table at 58h word 1 (map 0): nothing erases the region at 00h"));
    EXPECT_THAT(with_map({0xFF0100FF, 0xFFFFFF00, 0xFFFFFF08}).warnings(),
                ElementsAre("sector map table at 58h word 1 (map 0): nothing erases the region at 00h",
                            "sector map table at 58h word 1 (map 0): the region at 100000000h names an erase type that "
                            "the basic table does not have",
                            "sector map table at 58h word 1 (map 0): its regions end at 8589934592 bytes, the chip has "
                            "16777216; it is not used"));
    EXPECT_THAT(with_map({0xFF0000FF, 0x00FFFFF9}).warnings(),
                ElementsAre("sector map table at 58h word 1 (map 0): the region at 00h names an erase type that the "
                            "basic table does not have"));
}

}  // namespace
