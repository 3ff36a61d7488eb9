#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

#include "static_mutex.h"

/// Guards what is read all the time and hardly ever changed. Threads that read lock one of several mutexes each, and so are
/// seldom in each other's way; who changes something locks all of them: std::scoped_lock.
class MOSTLY_READ_MUTEX {
public:
    std::unique_lock<STATIC_MUTEX> lock_for_reading() {
        const std::size_t thread = std::hash<std::thread::id>()(std::this_thread::get_id());
        return std::unique_lock(m_places[thread % m_places.size()].mutex);
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

    std::array<PLACE, 16> m_places;
};
