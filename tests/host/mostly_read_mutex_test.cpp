#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <cstddef>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "mostly_read_mutex.h"

// The mutex of what is read all the time: whom it keeps from whom.

namespace {

constexpr std::size_t OWN = MOSTLY_READ_MUTEX::PLACES;

/// What each of so many threads, all of which live at the same time, locks at its first and at its second reading.
std::vector<std::vector<const void*>> locked_by_threads(MOSTLY_READ_MUTEX& mutex, std::size_t count) {
    std::vector<std::vector<const void*>> locked(count);
    std::barrier all_have_read(static_cast<std::ptrdiff_t>(count));
    std::vector<std::thread> threads;
    for (std::vector<const void*>& own : locked) {
        threads.emplace_back([&] {
            own.push_back(mutex.lock_for_reading().mutex());
            all_have_read.arrive_and_wait();
            own.push_back(mutex.lock_for_reading().mutex());
            all_have_read.arrive_and_wait();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return locked;
}

TEST(MOSTLY_READ_MUTEX, GivesEachOfTheFirstThreadsOneOfItsOwn) {
    MOSTLY_READ_MUTEX mutex;
    std::set<const void*> all;
    for (const std::vector<const void*>& own : locked_by_threads(mutex, OWN)) {
        EXPECT_EQ(own[0], own[1]);
        all.insert(own[0]);
    }
    EXPECT_EQ(all.size(), OWN);
}

TEST(MOSTLY_READ_MUTEX, IsSharedByThreadsThatComeWhenAllAreGivenAway) {
    MOSTLY_READ_MUTEX mutex;
    std::set<const void*> all;
    for (const std::vector<const void*>& own : locked_by_threads(mutex, 2 * OWN)) {
        EXPECT_EQ(own[0], own[1]);
        all.insert(own[0]);
    }
    EXPECT_EQ(all.size(), OWN);
}

/// A count of two halves, which differ only while somebody changes it.
TEST(MOSTLY_READ_MUTEX, LetsNobodyReadWhatIsBeingChanged) {
    constexpr int CHANGES = 100;
    constexpr int TURNS = 20;  // left to the others in the middle of a change
    MOSTLY_READ_MUTEX mutex;
    int first = 0;
    int second = 0;
    std::atomic<int> torn = 0;
    std::barrier all_are_there(4);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread) {
        threads.emplace_back([&] {
            all_are_there.arrive_and_wait();
            for (int i = 0; i < CHANGES; ++i) {
                const std::scoped_lock lock(mutex);
                ++first;
                for (int turn = 0; turn < TURNS; ++turn) {
                    std::this_thread::yield();
                }
                ++second;
            }
        });
        threads.emplace_back([&] {
            all_are_there.arrive_and_wait();
            for (int seen = 0; seen < 2 * CHANGES;) {
                {
                    const auto lock = mutex.lock_for_reading();
                    seen = first;
                    torn += first != second;
                }
                std::this_thread::yield();  // so that those who change get all locks
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(first, 2 * CHANGES);
}

}  // namespace
