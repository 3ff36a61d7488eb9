#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <new>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "pgmdev/flash/probe.h"
#include "support/start_line.h"

// Who frees the arrays that a manager's pointer members point at. The address sanitizer is the judge of what is freed
// twice, read after that, or never freed.

namespace {

constexpr DWORD RECORDS = 3;

/// A manager with records and a map of its own making.
FLASH_PROBE holder() {
    FLASH_PROBE manager;
    manager.m_flash_database = new PGMDEV_SFL_FLASH_INFO[RECORDS];
    manager.m_flash_database[1].device_name = "a name too long to lie within the string itself";
    manager.m_flash_count = RECORDS;
    manager.m_device_to_flash_map = new DWORD[1]{1};
    manager.m_device_count = 1;
    return manager;
}

TEST(FlashOwnership, ADerivingClassDeletesAndNulls) {
    FLASH_PROBE manager(holder());
    delete[] std::exchange(manager.m_flash_database, nullptr);
    delete[] std::exchange(manager.m_device_to_flash_map, nullptr);
    manager.m_flash_count = 0;
    EXPECT_EQ(manager.get_flash_database(), nullptr);
}

TEST(FlashOwnership, ADerivingClassReplacesWhatItDeleted) {
    FLASH_PROBE manager(holder());
    delete[] manager.m_flash_database;
    manager.m_flash_database = new PGMDEV_SFL_FLASH_INFO[1];
    manager.m_flash_database[0].device_name = "another name that does not lie within the string";
    manager.m_flash_count = 1;
    EXPECT_EQ(manager.get_flash_database()->device_name, "another name that does not lie within the string");
}

TEST(FlashOwnership, ADerivingClassHandsAnArrayOn) {
    std::optional<FLASH_PROBE> giver(holder());
    FLASH_PROBE taker;
    taker.m_flash_database = std::exchange(giver->m_flash_database, nullptr);
    taker.m_flash_count = std::exchange(giver->m_flash_count, 0);
    giver.reset();
    EXPECT_EQ(taker.get_flash_database()[1].device_name, "a name too long to lie within the string itself");
}

TEST(FlashOwnership, TheLastOfTheCopiesFrees) {
    std::optional<FLASH_PROBE> first(holder());
    std::optional<FLASH_PROBE> second(*first);
    FLASH_PROBE third(holder());  // what it has itself goes
    third = *second;
    EXPECT_EQ(first->m_flash_database, third.m_flash_database);
    first.reset();
    second.reset();
    EXPECT_EQ(third.get_flash_mapping_index(0, false), 1U);
    EXPECT_EQ(third.sfl_get_device_name(0), "a name too long to lie within the string itself");
}

TEST(FlashOwnership, ACopyThatNullsItsPointersLeavesTheArraysToTheOthers) {
    FLASH_PROBE owner(holder());
    {
        FLASH_PROBE copy(owner);
        copy.m_flash_database = nullptr;  // as callers do who know that copies share
        copy.m_device_to_flash_map = nullptr;
    }
    EXPECT_EQ(owner.sfl_get_device_name(0), "a name too long to lie within the string itself");
}

TEST(FlashOwnership, ACopyThatHasNulledItsPointersSharesNothing) {
    std::optional<FLASH_PROBE> owner(holder());
    FLASH_PROBE copy(*owner);
    copy.m_flash_database = nullptr;
    copy.m_device_to_flash_map = new DWORD[1]{7};
    owner.reset();  // frees what only it points at
    EXPECT_EQ(copy.m_device_to_flash_map[0], 7U);
    owner.emplace(copy);
    EXPECT_EQ(owner->m_device_to_flash_map, copy.m_device_to_flash_map);
    EXPECT_EQ(owner->m_flash_database, nullptr);
}

TEST(FlashOwnership, CopiesComeAndGoOnDifferentThreads) {
    constexpr int THREADS = 3;
    for (int round = 0; round < 50; ++round) {
        std::optional<FLASH_PROBE> owner(holder());
        std::vector<std::optional<FLASH_PROBE>> copies(THREADS, *owner);
        START_LINE line(THREADS + 1);
        std::vector<std::thread> threads;
        threads.reserve(THREADS);
        for (std::optional<FLASH_PROBE>& copy : copies) {
            threads.emplace_back([&copy, &line] {
                line.arrive_and_wait();
                FLASH_PROBE another(*copy);
                copy.reset();
                copy.emplace(another);
                EXPECT_EQ(another.sfl_get_device_name(0), "a name too long to lie within the string itself");
            });
        }
        line.arrive_and_wait();
        owner.reset();
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(copies.front()->m_flash_database, copies.back()->m_flash_database);
    }
}

TEST(FlashOwnership, ACopyThatReplacesItsArrayFreesThatOne) {
    FLASH_PROBE owner(holder());
    {
        FLASH_PROBE copy(owner);
        copy.m_flash_database = new PGMDEV_SFL_FLASH_INFO[RECORDS];
        copy.m_flash_database[0].device_name = "another name that does not lie within the string";
    }
    EXPECT_EQ(owner.sfl_get_device_name(0), "a name too long to lie within the string itself");
}

TEST(FlashOwnership, AnArrayReplacedBetweenTwoCopiesIsShared) {
    FLASH_PROBE owner(holder());
    std::optional<FLASH_PROBE> early(owner);
    early.reset();
    delete[] owner.m_flash_database;
    owner.m_flash_database = new PGMDEV_SFL_FLASH_INFO[RECORDS];
    owner.m_flash_database[1].device_name = "another name that does not lie within the string";
    std::optional<FLASH_PROBE> late(owner);
    EXPECT_EQ(late->m_flash_database, owner.m_flash_database);
    late.reset();
    EXPECT_EQ(owner.sfl_get_device_name(0), "another name that does not lie within the string");
}

TEST(FlashOwnership, ACopyWhoseStorageIsUsedAgainIsForgotten) {
    using STORAGE = std::array<unsigned char, sizeof(FLASH_PROBE)>;
    alignas(FLASH_PROBE) static STORAGE storage;
    static STORAGE kept;  // so that what the copy held is no leak
    std::optional<FLASH_PROBE> owner(holder());
    {
        auto* copy = new (storage.data()) FLASH_PROBE(*owner);
        EXPECT_EQ(copy->m_flash_database, owner->m_flash_database);
        kept = storage;
    }
    storage.fill(0x5A);  // as callers do who destroy only one of the copies
    FLASH_PROBE another(*owner);
    EXPECT_EQ(another.sfl_get_device_name(0), "a name too long to lie within the string itself");
    owner.reset();
    EXPECT_EQ(another.sfl_get_device_name(0), "a name too long to lie within the string itself");
}

TEST(FlashOwnership, TheLastOfTheCopiesFreesAlsoWhereAnotherWasLeftBehind) {
    using STORAGE = std::array<unsigned char, sizeof(FLASH_PROBE)>;
    alignas(FLASH_PROBE) static STORAGE storage;
    static STORAGE kept;  // so that what else the first copy held is no leak
    std::optional<FLASH_PROBE> owner(holder());
    auto* left_behind = new (storage.data()) FLASH_PROBE(*owner);
    left_behind->m_flash_database = nullptr;
    left_behind->m_device_to_flash_map = nullptr;
    kept = storage;
    auto* last = new (storage.data()) FLASH_PROBE(*owner);
    owner.reset();
    EXPECT_EQ(last->sfl_get_device_name(0), "a name too long to lie within the string itself");
    std::destroy_at(last);
    storage.fill(0);
}

TEST(FlashOwnership, AssigningAmongCopiesChangesNothing) {
    FLASH_PROBE owner(holder());
    FLASH_PROBE copy(owner);
    const FLASH_PROBE& same = copy;
    copy = owner;
    owner = copy;
    copy = same;
    EXPECT_EQ(copy.m_flash_database, owner.m_flash_database);
    EXPECT_EQ(owner.sfl_get_device_name(0), "a name too long to lie within the string itself");
}

}  // namespace
