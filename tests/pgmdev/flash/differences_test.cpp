#include <gtest/gtest.h>

#include "pgmdev/flash/fixture.h"
#include "pgmdev_flash_candidates.h"

// What differs between two records, and what taking one for the other does.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using RISK = PGMDEV_FLASH_DIFFERENCE::RISK;

TEST(FlashDifferences, TellTheWorstHarmFirst) {
    RECORD taken = flash_reference::sample("TAKEN");
    taken.half_size = false;
    RECORD other = taken;
    other.program_utime = 9000;
    other.asc_voltage = "1.8V";
    other.device_sector_byte = 0x40000;
    other.protection_mask = 0x1C;
    other.bulk_erase_time = 10;
    const auto found = PGMDEV_FLASH_CANDIDATES::differences(taken, other);
    ASSERT_EQ(found.size(), 5U);
    EXPECT_EQ(found[0].member, "device_sector_byte");
    EXPECT_EQ(found[0].risk, RISK::DATA);
    EXPECT_EQ(found[0].taken, "65536 bytes");
    EXPECT_EQ(found[0].other, "262144 bytes");
    EXPECT_EQ(found[0].harm, "256 KiB sectors: erasing by 64 KiB would wipe the neighbours");
    EXPECT_EQ(found[1].harm, "a part for 1.8V: 3.3V on it may destroy it");
    // NOLINTNEXTLINE(readability-suspicious-call-argument): the other way round
    EXPECT_EQ(PGMDEV_FLASH_CANDIDATES::differences(other, taken)[1].harm,
              "a part for 3.3V: at 1.8V it neither reads nor writes reliably");
    EXPECT_EQ(found[2].harm, "status-register bits 0x40 mean something else: writing the protection would change that");
    EXPECT_EQ(found[3].harm, "takes longer: the operation may be given up before its end");
    EXPECT_EQ(found[4].member, "bulk_erase_time");
    EXPECT_EQ(found[4].risk, RISK::NONE) << "shorter than is waited for";
    EXPECT_EQ(found[4].harm, "");
}

TEST(FlashDifferences, OfWhatDoesNotMatterAreNone) {
    RECORD taken = flash_reference::sample("TAKEN");
    RECORD other = flash_reference::sample("OTHER");
    other.manufacturer_name = "Another";
    other.orvane_id = 3;
    other.memory_id = 0x77;
    EXPECT_TRUE(PGMDEV_FLASH_CANDIDATES::differences(taken, other).empty());
}

TEST(FlashDifferences, EachWayRoundHasItsHarm) {
    const std::string unasked =
        "protected and unprotected by other values: blocks may stay protected, or be unprotected unasked";
    const std::string flow = "driven in another way: the operation may fail, or its failure may go unnoticed";
    const std::string longer = "takes longer: the operation may be given up before its end";
    const struct {
        std::string member;
        void (*change)(RECORD&);
        RISK risk;
        std::string harm;       ///< to the changed one, when it is driven as the other one
        std::string harm_back;  ///< to the other one, when it is driven as the changed one
    } cases[]{
        {"device_sector_byte", [](RECORD& r) { r.device_sector_byte = 0x1000; }, RISK::DATA,
         "4 KiB sectors: erasing by 64 KiB would leave the rest of each sector as it was",
         "64 KiB sectors: erasing by 4 KiB would wipe the neighbours"},
        {"device_bit_size", [](RECORD& r) { r.device_bit_size *= 2; }, RISK::DATA,
         "32768 KiB of capacity: what is beyond 16384 KiB would be out of reach",
         "16384 KiB of capacity: what is written beyond it, as if there were 32768 KiB, would overwrite the beginning"},
        {"die_count", [](RECORD& r) { r.die_count = 1; }, RISK::DATA,
         "1 die: erasing 3 dies would end in errors, or erase a die twice",
         "3 dies: erasing 1 die would leave the others as they were, or out of reach"},
        {"byte4_addressing", [](RECORD& r) { r.byte4_addressing = false; }, RISK::DATA,
         "3-byte addresses: with others, data would land in wrong places",
         "4-byte addresses: with others, data would land in wrong places"},
        {"half_size", [](RECORD& r) { r.half_size = false; }, RISK::DATA,
         "all of it may be used: half would be out of reach",
         "only half of it may be used: what is beyond would be lost"},
        {"aai_mode", [](RECORD& r) { r.aai_mode = false; }, RISK::DATA,
         "programmed by pages: programming by address increment would write nothing",
         "programmed by address increment: programming by pages would write the first byte only"},
        {"asc_voltage", [](RECORD& r) { r.asc_voltage = "1.8V"; }, RISK::VOLTAGE,
         "a part for 1.8V: 3.3V on it may destroy it", "a part for 3.3V: at 1.8V it neither reads nor writes reliably"},
        {"protection_mask", [](RECORD& r) { r.protection_mask = 0x1C; }, RISK::PROTECTION,
         "status-register bits 0x40 mean something else: writing the protection would change that",
         "protected by status-register bits 0x40, too: blocks may stay protected"},
        {"protection_value", [](RECORD& r) { r.protection_value = 0; }, RISK::PROTECTION, unasked, unasked},
        {"unprotect_value", [](RECORD& r) { r.unprotect_value = 0; }, RISK::PROTECTION, unasked, unasked},
        {"protection_division", [](RECORD& r) { r.protection_division = 0; }, RISK::PROTECTION, unasked, unasked},
        {"bottom_value", [](RECORD& r) { r.bottom_value = 0; }, RISK::PROTECTION, unasked, unasked},
        {"startup_protected", [](RECORD& r) { r.startup_protected = false; }, RISK::PROTECTION, "",
         "protected after power-up: erasing and programming would do nothing"},
        {"micron_flow", [](RECORD& r) { r.micron_flow = false; }, RISK::FLOW, flow, flow},
        {"spansion_flow", [](RECORD& r) { r.spansion_flow = false; }, RISK::FLOW, flow, flow},
        {"flag_status", [](RECORD& r) { r.flag_status = false; }, RISK::FLOW, flow, flow},
        {"bulk_erase_time", [](RECORD& r) { ++r.bulk_erase_time; }, RISK::TIME, longer, ""},
        {"sec_erase_time", [](RECORD& r) { ++r.sec_erase_time; }, RISK::TIME, longer, ""},
        {"program_utime", [](RECORD& r) { ++r.program_utime; }, RISK::TIME, longer, ""},
        {"extended_mode", [](RECORD& r) { r.extended_mode = false; }, RISK::NONE, "", ""},
        {"sdm_support", [](RECORD& r) { r.sdm_support = false; }, RISK::NONE, "", ""},
    };
    const RECORD other = flash_reference::sample();
    const auto expect_one = [](const RECORD& taken, const RECORD& driven, const auto& each, const std::string& harm) {
        const auto found = PGMDEV_FLASH_CANDIDATES::differences(taken, driven);
        ASSERT_EQ(found.size(), 1U) << each.member;
        EXPECT_EQ(found[0].member, each.member);
        EXPECT_EQ(found[0].harm, harm);
        EXPECT_EQ(found[0].risk, harm.empty() ? RISK::NONE : each.risk) << each.member;
    };
    for (const auto& each : cases) {
        RECORD changed = other;
        each.change(changed);
        expect_one(other, changed, each, each.harm);
        expect_one(changed, other, each, each.harm_back);
    }
}

}  // namespace
