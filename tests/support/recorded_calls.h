#pragma once

/// \file
/// What a program has the system do to its files, in order. A program that links faulty_system_posix.cpp has its calls
/// recorded while somebody wants them.

#include <cstddef>
#include <string>
#include <vector>

struct RECORDED_CALL {
    enum KIND {
        CREATE,
        CREATE_UNNAMED,  ///< `path` is what the system calls it
        RESIZE,          ///< to `offset` bytes
        WRITE,
        SYNC,  ///< of a file or a directory
        LINK,  ///< gives what has no name one
        RENAME,
        UNLINK
    };

    KIND kind;
    std::string path;
    std::string other;       ///< what is written, or the new name
    std::size_t offset = 0;  ///< where it is written, or the new size
};

/// While it lives, the calls of this thread are recorded; one at a time.
class RECORDED_CALLS {
public:
    RECORDED_CALLS();
    ~RECORDED_CALLS();
    RECORDED_CALLS(const RECORDED_CALLS&) = delete;
    RECORDED_CALLS& operator=(const RECORDED_CALLS&) = delete;

    const std::vector<RECORDED_CALL>& all() const { return m_calls; }

    void add(const RECORDED_CALL& call) { m_calls.push_back(call); }

private:
    std::vector<RECORDED_CALL> m_calls;
};
