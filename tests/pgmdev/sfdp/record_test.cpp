#include <gmock/gmock.h>

#include "pgmdev/sfdp/sample.h"

// The record that follows from what a flash says of itself.

namespace {

using namespace sfdp_sample;
using testing::Contains;
using testing::ElementsAre;
using testing::Pair;

using SFDP = PGMDEV_FLASH_SFDP;

const BYTES ID{0xEF, 0x40, 0x18};

PGMDEV_SFL_FLASH_INFO expected_record() {
    PGMDEV_SFL_FLASH_INFO record;
    record.manufacturer_name = "UNKNOWN";
    record.device_name = "UNKNOWN-EF4018";
    record.memory_id = 0x18;
    record.memory_id_index = 2;
    record.memory_type = 0x40;
    record.memory_type_index = 1;
    record.mfc_id = 0xEF;
    record.orvane_id = 24;
    record.default_dev = true;
    record.ini = "NONE";
    record.die_count = 1;
    record.device_bit_size = 134217728;
    record.device_sector_byte = 65536;
    record.bulk_erase_time = 80;
    record.sec_erase_time = 3;
    record.program_utime = 1792;
    record.protection_division = 255;
    record.bottom_value = 255;
    record.asc_voltage = "3.3V";
    return record;
}

TEST(SfdpRecord, HasLongestTimesRoundedUp) {
    const SFDP::DERIVED_RECORD derived = read(basic_dump(basic_words())).record(ID);
    EXPECT_EQ(derived.obstacle, "");
    EXPECT_EQ(derived.record, expected_record());
}

TEST(SfdpRecord, NamesWhatIsAssumed) {
    const std::string name = "a name for it: the title page of the data sheet has it";
    EXPECT_THAT(read(basic_dump(basic_words())).record(ID).assumed,
                ElementsAre(Pair("manufacturer_name", name), Pair("device_name", name),
                            Pair("die_count", "1: a chip does not tell how many dies it has"),
                            Pair("startup_protected", "FALSE: not told"), Pair("aai_mode", "FALSE: not told"),
                            Pair("protection_mask",
                                 "00, no protection bits: not told, nor are value, unprotect value and division"),
                            Pair("bottom_value", "255, no such bit: not told"),
                            Pair("sdm_support", "FALSE: the supply voltage is not told"),
                            Pair("asc_voltage", "3.3V: not told; make sure before you connect it")));
    EXPECT_THAT(
        with_word(1, 0xFFF120E1).record(ID).assumed,
        Contains(Pair("aai_mode", "FALSE: not told, but it is written by single bytes (word 1 bit 2): look it up")));
    const SFDP hybrid = read(
        dump({{.words = basic_words()}, {.id = SFDP::SECTOR_MAP_ID, .words = {0xFF0100FF, 0x0000FFF3, 0x00FEFFF4}}}));
    EXPECT_THAT(
        hybrid.record(ID).assumed,
        Contains(Pair("device_sector_byte",
                      "the largest that erase everywhere, or else the largest: regions differ (see the sector map)")));
}

TEST(SfdpRecord, AssumesTimesOfAShortTable) {
    WORDS words = basic_words();
    words.resize(9);
    const SFDP::DERIVED_RECORD derived = read(basic_dump(words)).record(ID);
    EXPECT_EQ(derived.record.sec_erase_time, 5U);
    EXPECT_EQ(derived.record.bulk_erase_time, 512U);
    EXPECT_EQ(derived.record.program_utime, 5000U);
    EXPECT_THAT(derived.assumed, Contains(Pair("sec_erase_time", "5 s: the table has no word 10")));
    EXPECT_THAT(derived.assumed,
                Contains(Pair("bulk_erase_time", "4 s for each Mbit, at most 900 s: the table has no word 11")));
    EXPECT_THAT(derived.assumed, Contains(Pair("program_utime", "5000 us: the table has no word 11")));
    EXPECT_THAT(derived.assumed, Contains(Pair("flag_status", "FALSE: the table has no word 14")));
    words[1] = 0x1FFFFFFF;  // 512 Mbit
    EXPECT_EQ(read(basic_dump(words)).record(ID).record.bulk_erase_time, 900U);
    words[1] = 0x0007FFFF;  // half a Mbit
    EXPECT_EQ(read(basic_dump(words)).record(ID).record.bulk_erase_time, 4U);
}

TEST(SfdpRecord, WithoutIdentificationSaysSo) {
    const SFDP::DERIVED_RECORD derived = read(basic_dump(basic_words())).record({});
    EXPECT_EQ(derived.record.mfc_id, 0);
    EXPECT_EQ(derived.record.device_name, "UNKNOWN");
    EXPECT_THAT(derived.assumed,
                Contains(Pair("memory_id", "00, and so are the other identification bytes that were not given")));
}

TEST(SfdpRecord, LargeChipsTakeFourBytes) {
    const PGMDEV_SFL_FLASH_INFO record = with_words({{1, 0xFFF320E5}, {2, 0x1FFFFFFF}}).record(ID).record;
    EXPECT_TRUE(record.extended_mode);
    EXPECT_TRUE(record.byte4_addressing);
    EXPECT_EQ(record.orvane_id, 32);
    EXPECT_EQ(record.device_bit_size, 536870912U);
    const auto addressing = [](DWORD word1, DWORD density) {
        const auto small = with_words({{1, word1}, {2, density}}).record(ID).record;
        return std::pair(small.extended_mode, small.byte4_addressing);
    };
    EXPECT_EQ(addressing(0xFFF320E5, 0x07FFFFFF), std::pair(false, false)) << "three bytes, or four";
    EXPECT_EQ(addressing(0xFFF520E5, 0x07FFFFFF), std::pair(false, true)) << "four only";
    EXPECT_EQ(addressing(0xFFF320E5, 0x0FFFFFFF), std::pair(true, true)) << "twice as large";
}

TEST(SfdpRecord, ClassesOfDensity) {
    const std::vector<std::pair<DWORD, BYTE>> classes{{1, 16},   {2, 16},   {3, 16},   {4, 18},   {8, 18},  {15, 18},
                                                      {16, 20},  {31, 20},  {32, 21},  {63, 21},  {64, 22}, {127, 22},
                                                      {128, 24}, {255, 24}, {256, 25}, {511, 25}, {512, 32}};
    for (const auto& [mbit, code] : classes) {
        EXPECT_EQ(with_words({{1, 0xFFF320E5}, {2, mbit * 0x100000 - 1}}).record(ID).record.orvane_id, code) << mbit;
    }
}

TEST(SfdpRecord, FlowsFollowMakerAndPolling) {
    const BYTES micron{0x20, 0xBA, 0x18};
    const BYTES spansion{0x01, 0x20, 0x18};
    const SFDP polled = with_word(14, 0xFFFFFFFB);
    EXPECT_TRUE(polled.record(micron).record.micron_flow);
    EXPECT_TRUE(polled.record(micron).record.flag_status);
    EXPECT_TRUE(polled.record(ID).record.flag_status);
    EXPECT_FALSE(polled.record(ID).record.micron_flow);
    EXPECT_FALSE(read(basic_dump(basic_words())).record(micron).record.micron_flow);
    EXPECT_TRUE(polled.record(spansion).record.spansion_flow);
}

TEST(SfdpRecord, SectorIsWhatD8Erases) {
    EXPECT_EQ(with_words({{8, 0x5210200C}, {9, 0x0000D80F}}).record(ID).record.device_sector_byte, 32768U);
    EXPECT_EQ(with_words({{8, 0x520F200C}, {9, 0}}).record(ID).record.device_sector_byte, 32768U);
    EXPECT_EQ(with_words({{8, 0xD80DD80F}, {9, 0xD810200C}}).record(ID).record.device_sector_byte, 65536U);
}

TEST(SfdpRecord, ObstaclesAreTold) {
    EXPECT_EQ(with_words({{8, 0}, {9, 0}}).record(ID).obstacle,
              "it has no erase type, so that there is no sector size");
    const std::string size = "its size is not known, or not below the 4 Gbit that a record can state";
    EXPECT_EQ(with_word(2, 0x80000020).record(ID).obstacle, size);
    EXPECT_EQ(with_word(2, 0xFFFFFFFF).record(ID).obstacle, size);
    EXPECT_EQ(read({'S'}).record(ID).obstacle,
              "byte 01h, signature: found the end of the dump, expected 53 46 44 50 (\"SFDP\")");
}

}  // namespace
