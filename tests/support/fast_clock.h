#pragma once

/// \file
/// A clock that tests need not wait for. A program that links fast_clock_posix.cpp has its calls and those of all libraries
/// go through it.

/// While it lives, this thread's waits are over at once, and the clock has gone on by as much.
class FAST_CLOCK {
public:
    FAST_CLOCK();
    ~FAST_CLOCK();
    FAST_CLOCK(const FAST_CLOCK&) = delete;
    FAST_CLOCK& operator=(const FAST_CLOCK&) = delete;
};
