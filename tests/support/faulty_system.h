#pragma once

/// \file
/// A system that fails when a test wants it: calls and allocations of this thread, by their number. A program that links
/// faulty_system_posix.cpp and faulty_memory_posix.cpp has its calls and those of all libraries go through them.

#include <sys/stat.h>

#include <cstddef>

/// While it lives, the call with that number, from 1, of those that have to do with files fails with that `errno`.
class FAILING_CALL {
public:
    FAILING_CALL(std::size_t number, int error, bool all_later = false);
    ~FAILING_CALL();
    FAILING_CALL(const FAILING_CALL&) = delete;
    FAILING_CALL& operator=(const FAILING_CALL&) = delete;

    /// Whether as many calls were made.
    bool happened() const;
    /// The call that failed; "" when none has.
    const char* name() const;
};

/// While it lives, this thread's system has no files without a name.
class NO_UNNAMED_FILES {
public:
    NO_UNNAMED_FILES();
    ~NO_UNNAMED_FILES();
    NO_UNNAMED_FILES(const NO_UNNAMED_FILES&) = delete;
    NO_UNNAMED_FILES& operator=(const NO_UNNAMED_FILES&) = delete;
};

/// While it lives, `stat` tells this thread something else.
class ALTERED_STATUS {
public:
    explicit ALTERED_STATUS(void (*alter)(struct stat& status));
    ~ALTERED_STATUS();
    ALTERED_STATUS(const ALTERED_STATUS&) = delete;
    ALTERED_STATUS& operator=(const ALTERED_STATUS&) = delete;
};

/// While it lives, every call of that name of this thread fails with that `errno`. A write that fails with 0
/// has written nothing, and says no more.
class FAILING_CALLS_OF {
public:
    FAILING_CALLS_OF(const char* name, int error);
    ~FAILING_CALLS_OF();
    FAILING_CALLS_OF(const FAILING_CALLS_OF&) = delete;
    FAILING_CALLS_OF& operator=(const FAILING_CALLS_OF&) = delete;

    /// How often it was called.
    std::size_t count() const;
};

/// While it lives, every read and write moves at most one byte, and every other one is interrupted before it begins.
class SLOW_CALLS {
public:
    SLOW_CALLS();
    ~SLOW_CALLS();
    SLOW_CALLS(const SLOW_CALLS&) = delete;
    SLOW_CALLS& operator=(const SLOW_CALLS&) = delete;
};

/// While it lives, the allocation with that number, from 1, fails, or all from that one on.
class FAILING_ALLOCATION {
public:
    explicit FAILING_ALLOCATION(std::size_t number, bool all_later = false);
    ~FAILING_ALLOCATION();
    FAILING_ALLOCATION(const FAILING_ALLOCATION&) = delete;
    FAILING_ALLOCATION& operator=(const FAILING_ALLOCATION&) = delete;

    bool happened() const;
};

/// The same with those that libraries in C make.
class FAILING_MALLOC {
public:
    explicit FAILING_MALLOC(std::size_t number, bool all_later = false);
    ~FAILING_MALLOC();
    FAILING_MALLOC(const FAILING_MALLOC&) = delete;
    FAILING_MALLOC& operator=(const FAILING_MALLOC&) = delete;

    bool happened() const;
};

/// While it lives, counts what this thread takes by `new`.
class COUNTED_MEMORY {
public:
    COUNTED_MEMORY();
    ~COUNTED_MEMORY();
    COUNTED_MEMORY(const COUNTED_MEMORY&) = delete;
    COUNTED_MEMORY& operator=(const COUNTED_MEMORY&) = delete;

    /// The most bytes that were taken at once, besides those from before.
    long long most() const;
};
