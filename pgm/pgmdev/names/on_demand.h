#pragma once

/// \file
/// What is built when it is first needed and only read from then on.

#include <atomic>

/// Holds an object that is built when it is first needed. Nobody ever waits: building calls the host, and what the host
/// does then, such as asking the library for something, or having another thread ask, is not ours to know. Threads that
/// come first together build an object each, and the first that is ready is everybody's. A build that fails publishes
/// nothing, and the next one tries again. There is nothing to destroy: a static object that outlives the clean-up may
/// still ask.
template <class OBJECT>
class ON_DEMAND {
public:
    /// `build` returns the new object, as a std::unique_ptr, or throws.
    template <class BUILD>
    const OBJECT* get(BUILD build) {
        if (const OBJECT* object = m_object.load(std::memory_order_acquire)) {
            return object;
        }
        auto built = build();
        const OBJECT* first = nullptr;
        return m_object.compare_exchange_strong(first, built.get(), std::memory_order_acq_rel) ? built.release()
                                                                                               : first;
    }

    /// For an object that one can do without for a while: the first `calls` calls find none unless it is there.
    template <class BUILD>
    const OBJECT* get_after(unsigned calls, BUILD build) {
        const OBJECT* object = m_object.load(std::memory_order_acquire);
        if (object == nullptr && m_calls.fetch_add(1, std::memory_order_relaxed) >= calls) {
            object = get(build);
        }
        return object;
    }

    void free() {
        delete m_object.exchange(nullptr);
        m_calls = 0;
    }

private:
    std::atomic<const OBJECT*> m_object{nullptr};
    std::atomic<unsigned> m_calls{0};  ///< of get_after without an object
};
