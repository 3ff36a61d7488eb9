#include "hps_fields.h"

#include <gtest/gtest.h>

// What the values of a boot flash must be, for whoever checks them.

namespace {

constexpr FIELD_CHECK DIE_COUNT_CHECK{.name = "die_count", .lowest = 1, .highest = 0xFF};
constexpr FIELD_CHECK PAGE_CHECK{.name = "page_byte", .power_of_two = true};
constexpr std::array TWO_CHECKS{DIE_COUNT_CHECK, PAGE_CHECK};

TEST(HpsFields, WithoutALimitTheTypeIsTheLimit) {
    constexpr FIELD_CHECK FROM_ONE{.name = "silicon_id", .lowest = 1};
    EXPECT_EQ(FROM_ONE.highest_of(1), 0xFFU);
    EXPECT_EQ(FROM_ONE.highest_of(2), 0xFFFFU);
    EXPECT_EQ(FROM_ONE.highest_of(4), 0xFFFFFFFFU);
    EXPECT_EQ(FROM_ONE.highest_of(8), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(FROM_ONE.fault_of(0x100, 1), FIELD_CHECK::FAULT::OUT_OF_RANGE);
    EXPECT_EQ(FROM_ONE.fault_of(0x100000000, 8), FIELD_CHECK::FAULT::NONE);
    EXPECT_EQ(FROM_ONE.fault_of(0, 8), FIELD_CHECK::FAULT::OUT_OF_RANGE);
}

TEST(HpsFields, ALimitIsThatOfEveryType) {
    EXPECT_EQ(DIE_COUNT_CHECK.highest_of(4), 0xFFU);
    EXPECT_EQ(DIE_COUNT_CHECK.fault_of(0xFF, 4), FIELD_CHECK::FAULT::NONE);
    EXPECT_EQ(DIE_COUNT_CHECK.fault_of(0x100, 4), FIELD_CHECK::FAULT::OUT_OF_RANGE);
    EXPECT_EQ(DIE_COUNT_CHECK.fault_of(0, 4), FIELD_CHECK::FAULT::OUT_OF_RANGE);
}

TEST(HpsFields, PowersOfTwo) {
    EXPECT_EQ(PAGE_CHECK.fault_of(1, 4), FIELD_CHECK::FAULT::NONE);
    EXPECT_EQ(PAGE_CHECK.fault_of(1ULL << 63, 8), FIELD_CHECK::FAULT::NONE);
    EXPECT_EQ(PAGE_CHECK.fault_of(0, 4), FIELD_CHECK::FAULT::NO_POWER_OF_TWO);
    EXPECT_EQ(PAGE_CHECK.fault_of(3, 4), FIELD_CHECK::FAULT::NO_POWER_OF_TWO);
    EXPECT_EQ(PAGE_CHECK.fault_of(1ULL << 32, 4), FIELD_CHECK::FAULT::OUT_OF_RANGE);
}

TEST(HpsFields, WhatIsNotListedMayHaveAnyValue) {
    EXPECT_EQ(field_check(TWO_CHECKS, "page_byte").power_of_two, true);
    const FIELD_CHECK other = field_check(TWO_CHECKS, "code_a");
    EXPECT_EQ(other.name, "code_a");
    for (const std::uint64_t number : {0ULL, 3ULL, 0xFFFFFFFFULL}) {
        EXPECT_EQ(other.fault_of(number, 4), FIELD_CHECK::FAULT::NONE) << number;
    }
}

}  // namespace
