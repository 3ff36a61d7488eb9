#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

/// While it lives, this process is an ordinary user, who may not read and write everywhere.
class ORDINARY_USER {
public:
    ORDINARY_USER() : m_is_root(::geteuid() == 0) {
        constexpr uid_t NOBODY = 65534;
        if (m_is_root && ::seteuid(NOBODY) != 0) {
            ADD_FAILURE() << "still root";
        }
    }
    ~ORDINARY_USER() {
        if (m_is_root && ::seteuid(0) != 0) {
            std::abort();
        }
    }
    ORDINARY_USER(const ORDINARY_USER&) = delete;
    ORDINARY_USER& operator=(const ORDINARY_USER&) = delete;

private:
    bool m_is_root;
};
