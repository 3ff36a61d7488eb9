#include <gmock/gmock.h>

#include "pgmdev/sfdp/sample.h"

// The record that follows from what a flash says of itself.

namespace {

using namespace sfdp_sample;
using testing::Contains;
using testing::Key;
using testing::Not;

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
    const auto assumed = read(basic_dump(basic_words())).record(ID).assumed;
    for (const char* member : {"manufacturer_name", "device_name", "die_count", "startup_protected", "aai_mode",
                               "protection_mask", "bottom_value", "sdm_support", "asc_voltage"}) {
        EXPECT_THAT(assumed, Contains(Key(member)));
    }
    for (const char* member : {"device_bit_size", "device_sector_byte", "bulk_erase_time", "sec_erase_time",
                               "program_utime", "flag_status", "memory_id"}) {
        EXPECT_THAT(assumed, Not(Contains(Key(member))));
    }
}

TEST(SfdpRecord, AssumesTimesOfAShortTable) {
    WORDS words = basic_words();
    words.resize(9);
    const SFDP::DERIVED_RECORD derived = read(basic_dump(words)).record(ID);
    EXPECT_EQ(derived.record.sec_erase_time, 5U);
    EXPECT_EQ(derived.record.bulk_erase_time, 512U);
    EXPECT_EQ(derived.record.program_utime, 5000U);
    for (const char* member : {"bulk_erase_time", "sec_erase_time", "program_utime", "flag_status"}) {
        EXPECT_THAT(derived.assumed, Contains(Key(member)));
    }
    words[1] = 0x1FFFFFFF;  // 512 Mbit
    EXPECT_EQ(read(basic_dump(words)).record(ID).record.bulk_erase_time, 900U);
    words[1] = 0x0007FFFF;  // half a Mbit
    EXPECT_EQ(read(basic_dump(words)).record(ID).record.bulk_erase_time, 4U);
}

TEST(SfdpRecord, WithoutIdentificationSaysSo) {
    const SFDP::DERIVED_RECORD derived = read(basic_dump(basic_words())).record({});
    EXPECT_EQ(derived.record.mfc_id, 0);
    EXPECT_EQ(derived.record.device_name, "UNKNOWN");
    EXPECT_THAT(derived.assumed, Contains(Key("memory_id")));
}

TEST(SfdpRecord, LargeChipsTakeFourBytes) {
    const PGMDEV_SFL_FLASH_INFO record = with_words({{1, 0xFFF320E5}, {2, 0x1FFFFFFF}}).record(ID).record;
    EXPECT_TRUE(record.extended_mode);
    EXPECT_TRUE(record.byte4_addressing);
    EXPECT_EQ(record.orvane_id, 32);
    EXPECT_EQ(record.device_bit_size, 536870912U);
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
