#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

#include "static_mutex.h"

/// Guards what is read all the time and hardly ever changed. Each of the first threads that read has a mutex of its own, so
/// that they are not in each other's way; those that come when all are given away share them. Who changes something locks all
/// of them: std::scoped_lock.
class MOSTLY_READ_MUTEX {
public:
    static constexpr std::size_t PLACES = 32;

    std::unique_lock<STATIC_MUTEX> lock_for_reading() {
        return std::unique_lock(m_places[place_of_this_thread()].mutex);
    }

    void lock() {
        for (PLACE& place : m_places) {
            place.mutex.lock();
        }
    }

    void unlock() {
        for (PLACE& place : m_places) {
            place.mutex.unlock();
        }
    }

private:
    struct PLACE {
        STATIC_MUTEX mutex;
        std::array<std::byte, 64> apart{};  ///< so that no two mutexes are in one line of a processor's cache
    };

    /// The place that was given to this thread, the first free one from where its number leads, or, when there is none, that.
    /// No thread-local variable remembers it: making one may end a process that has no memory left.
    std::size_t place_of_this_thread() {
        const std::size_t thread = std::max(std::hash<std::thread::id>()(std::this_thread::get_id()), FREE + 1);
        for (std::size_t i = 0; i < PLACES; ++i) {
            const std::size_t place = (thread + i) % PLACES;
            std::size_t owner = m_owners[place].load(std::memory_order_relaxed);
            if (owner == thread ||
                (owner == FREE && m_owners[place].compare_exchange_strong(owner, thread, std::memory_order_relaxed))) {
                return place;
            }
        }
        return thread % PLACES;
    }

    static constexpr std::size_t FREE = 0;

    std::array<PLACE, PLACES> m_places;
    std::array<std::atomic<std::size_t>, PLACES> m_owners{};  ///< numbers of threads, and FREE; of ended threads, too
};
