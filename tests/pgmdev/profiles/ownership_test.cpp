#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <utility>

#include "pgmdev/profiles/probe.h"

// Who frees what a manager's pointer members point at. The address sanitizer is the judge of what is freed twice, read
// after that, or never freed.

namespace {

constexpr DWORD RECORDS = DEV_INFO_PROBE::TOTAL_DATABASE_DEVICE;

/// A manager with records and a part list of its own making.
DEV_INFO_PROBE holder() {
    DEV_INFO_PROBE manager;
    manager.m_device_database = new PGMDEV_DEVICE_INFO[RECORDS];
    manager.m_device_database[2].cfg_dev = "a name too long to lie within the string itself";
    manager.m_device_count = RECORDS;
    manager.m_family_table[5] = 2;
    for (int part = 1; part <= 3; ++part) {
        manager.m_pgm_parts.push_back(
            new PGMDEV_PGM_PART{part, DEV_DEVICE_INVALID, "a file name too long to lie within"});
    }
    return manager;
}

std::string name_of_family(DEV_INFO_PROBE& manager) {
    const std::unique_ptr<PGMDEV_DEVICE_INFO> info(manager.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(5)));
    return info != nullptr ? info->cfg_dev : "";
}

TEST(DevInfoOwnership, ADerivingClassDeletesAndNulls) {
    DEV_INFO_PROBE manager(holder());
    delete[] std::exchange(manager.m_device_database, nullptr);
    delete[] std::exchange(manager.m_part_table, nullptr);
    delete manager.m_pgm_parts.back();
    manager.m_pgm_parts.pop_back();
    EXPECT_EQ(manager.get_device_database(), nullptr);
}

TEST(DevInfoOwnership, ADerivingClassNullsAPart) {
    DEV_INFO_PROBE manager(holder());
    manager.m_device_database[4].pcf = manager.m_pgm_parts[1]->pcf;
    delete std::exchange(manager.m_pgm_parts[0], nullptr);
    const DEV_INFO_PROBE copy(manager);
    EXPECT_TRUE(manager.search_pcf_for_part(2));
    EXPECT_EQ(manager.m_index, 4U);
    EXPECT_FALSE(manager.search_pcf_for_device(static_cast<DEV_DEVICE_ENUM>(1)));
}

TEST(DevInfoOwnership, ADerivingClassHandsOnWhatItHolds) {
    std::optional<DEV_INFO_PROBE> giver(holder());
    DEV_INFO_PROBE taker;
    taker.m_device_database = std::exchange(giver->m_device_database, nullptr);
    delete[] taker.m_family_table;
    taker.m_family_table = std::exchange(giver->m_family_table, nullptr);
    taker.m_pgm_parts.swap(giver->m_pgm_parts);
    giver.reset();
    EXPECT_EQ(name_of_family(taker), "a name too long to lie within the string itself");
    EXPECT_EQ(taker.m_pgm_parts.size(), 3U);
}

TEST(DevInfoOwnership, ArraysOfADerivingClassAreTakenOver) {
    DEV_INFO_PROBE manager;
    manager.m_device_database = new PGMDEV_DEVICE_INFO[78];
    manager.m_device_database[3].family = DEV_FAMILY_HERON;
    delete[] manager.m_family_table;
    manager.m_family_table = new DWORD[73]{};
    manager.m_pgm_parts = {new PGMDEV_PGM_PART{1, static_cast<DEV_DEVICE_ENUM>(2), "x"},
                           new PGMDEV_PGM_PART{2, static_cast<DEV_DEVICE_ENUM>(3), "y"}};
    DEV_INFO_PROBE copy(manager);
    std::swap(manager.m_pgm_parts[0], manager.m_pgm_parts[1]);
    manager.m_pgm_parts.push_back(new PGMDEV_PGM_PART);
    DEV_INFO_PROBE second(manager);
    EXPECT_EQ(copy.m_pgm_parts[1], second.m_pgm_parts[0]);
    EXPECT_TRUE(manager.search_family(DEV_FAMILY_HERON, false));
    EXPECT_EQ(manager.m_index, 3U);
}

TEST(DevInfoOwnership, TheLastOfTheCopiesFrees) {
    std::optional<DEV_INFO_PROBE> first(holder());
    std::optional<DEV_INFO_PROBE> second(*first);
    DEV_INFO_PROBE third;
    third = *second;
    third.m_pgm_parts.push_back(new PGMDEV_PGM_PART{4, DEV_DEVICE_INVALID, "the third manager's own file name"});
    const DEV_INFO_PROBE fourth(third);
    first.reset();
    second.reset();
    EXPECT_EQ(name_of_family(third), "a name too long to lie within the string itself");
    EXPECT_EQ(fourth.m_pgm_parts, third.m_pgm_parts);
    EXPECT_EQ(fourth.m_pgm_parts.back()->pcf, "the third manager's own file name");
}

TEST(DevInfoOwnership, ACopyThatNullsItsPointersLeavesTheRestToTheOthers) {
    DEV_INFO_PROBE owner(holder());
    {
        DEV_INFO_PROBE copy(owner);
        copy.m_device_database = nullptr;  // as callers do who know that copies share
        copy.m_family_table = copy.m_device_table = copy.m_part_table = nullptr;
        copy.m_pgm_parts.clear();
    }
    EXPECT_EQ(name_of_family(owner), "a name too long to lie within the string itself");
    EXPECT_EQ(owner.m_pgm_parts.front()->pcf, "a file name too long to lie within");
}

TEST(DevInfoOwnership, ACopyThatHasNulledItsPointersSharesNothing) {
    std::optional<DEV_INFO_PROBE> owner(holder());
    DEV_INFO_PROBE copy(*owner);
    copy.m_device_database = nullptr;
    copy.m_family_table = copy.m_device_table = nullptr;
    copy.m_part_table = new DWORD[1]{7};
    owner.reset();  // frees what only it points at
    EXPECT_EQ(copy.m_part_table[0], 7U);
    EXPECT_EQ(copy.m_pgm_parts.front()->pcf, "a file name too long to lie within");
}

TEST(DevInfoOwnership, ACopyWhoseStorageIsUsedAgainIsForgotten) {
    using STORAGE = std::array<unsigned char, sizeof(DEV_INFO_PROBE)>;
    alignas(DEV_INFO_PROBE) static STORAGE storage;
    static STORAGE kept;  // so that what the copy held is no leak
    std::optional<DEV_INFO_PROBE> owner(holder());
    {
        auto* copy = new (storage.data()) DEV_INFO_PROBE(*owner);
        EXPECT_EQ(name_of_family(*copy), "a name too long to lie within the string itself");
        kept = storage;
    }
    storage.fill(0x5A);  // as callers do who destroy only one of the copies
    DEV_INFO_PROBE another(*owner);
    owner.reset();
    EXPECT_EQ(name_of_family(another), "a name too long to lie within the string itself");
    EXPECT_EQ(another.m_pgm_parts.front()->pcf, "a file name too long to lie within");
}

TEST(DevInfoOwnership, IndexTablesAreRefilledInPlace) {
    DEV_INFO_PROBE manager;
    const DEV_INFO_PROBE copy(manager);
    const DWORD* const table = manager.m_family_table;
    manager.m_family_table[5] = 7;
    BYTE nothing[16] = {};
    EXPECT_THROW(manager.parse_database(nothing, true), std::runtime_error);
    EXPECT_EQ(manager.m_family_table, table);
    EXPECT_EQ(copy.m_family_table, table);
}

TEST(DevInfoOwnership, ALoadThatFailsLeavesTheTablesThatCopiesShare) {
    DEV_INFO_PROBE owner(holder());
    DEV_INFO_PROBE copy(owner);
    copy.m_device_database = nullptr;                             // so that it may load
    BYTE nothing[16] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 99};  // no tag
    EXPECT_THROW(copy.parse_database(nothing, false), std::runtime_error);
    EXPECT_EQ(copy.get_device_database(), nullptr);
    EXPECT_EQ(name_of_family(owner), "a name too long to lie within the string itself");
}

}  // namespace
