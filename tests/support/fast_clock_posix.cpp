#include "support/fast_clock.h"

#include <ctime>

#include "support/interposed_posix.h"

namespace {

thread_local bool g_is_fast = false;
thread_local timespec g_skipped{};

void add_to(timespec& time, const timespec& more) {
    constexpr long SECOND = 1'000'000'000;
    time.tv_nsec += more.tv_nsec;
    time.tv_sec += more.tv_sec + time.tv_nsec / SECOND;
    time.tv_nsec %= SECOND;
}

}  // namespace

// The names of the parameters in the headers are reserved.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
INTERPOSED int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static auto* const real = next<int(clockid_t, timespec*)>("clock_gettime");
    const int result = real(clock, time);
    if (g_is_fast) {
        add_to(*time, g_skipped);
    }
    return result;
}

INTERPOSED int nanosleep(const timespec* duration, timespec* rest) {
    static auto* const real = next<int(const timespec*, timespec*)>("nanosleep");
    if (!g_is_fast) {
        return real(duration, rest);
    }
    add_to(g_skipped, *duration);
    return 0;
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

FAST_CLOCK::FAST_CLOCK() {
    g_is_fast = true;
}

FAST_CLOCK::~FAST_CLOCK() {
    g_is_fast = false;
}
