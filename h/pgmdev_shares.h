#pragma once

/// \file
/// How copies of a manager share what its pointer members point at.

#include <atomic>
#include <memory>
#include <type_traits>
#include <utility>

#include "pgmdev_types.h"

/// The hidden side of a pointer member of an interface. The member is the truth: what it points at when it is let go is
/// freed, unless copies still share it, and nothing else ever is. A deriving class may thus delete what the member
/// points at and null or replace the member, or hand it to another manager and null it here.
///
/// What copies share is theirs together. Who deletes it, or hands it on, does so for all of them, and nulls the member of
/// each. A copy whose member was nulled shares until it goes: should it be the last to go, nobody frees.
///
/// `T` is an array type for what new[] made. Copies of one manager may be destroyed by different threads.
template <class T>
class PGMDEV_SHARES {
public:
    using POINTER = std::remove_extent_t<T>*;

    PGMDEV_SHARES() = default;
    PGMDEV_SHARES(PGMDEV_SHARES&& other) noexcept : m_shared(std::exchange(other.m_shared, nullptr)) {}
    PGMDEV_SHARES(const PGMDEV_SHARES&) = delete;
    PGMDEV_SHARES& operator=(const PGMDEV_SHARES&) = delete;
    ~PGMDEV_SHARES() { leave(); }

    /// Gets ready for a copy to share what `member` points at.
    void prepare(POINTER member) const {
        if (m_shared == nullptr || m_shared->pointer != member) {
            auto* shared = new SHARED{member, {1}};
            leave();
            m_shared = shared;
        }
    }

    /// Shares what the prepared `other` points at; what `member` pointed at so far is let go.
    void share(const PGMDEV_SHARES& other, POINTER& member) noexcept {
        SHARED* shared = other.m_shared;
        ++shared->holders;
        release(member);
        m_shared = shared;
        member = shared->pointer;
    }

    /// Shares from now on what `other` has shared so far; what was shared here must have been let go.
    void take_over(PGMDEV_SHARES& other) noexcept { m_shared = std::exchange(other.m_shared, nullptr); }

    /// Lets go what `member` points at, and nulls it.
    void release(POINTER& member) noexcept {
        const bool never_shared = m_shared == nullptr || m_shared->pointer != member;
        if (leave() || never_shared) {
            std::default_delete<T>()(member);
        }
        member = nullptr;
    }

private:
    struct SHARED {
        POINTER pointer;
        std::atomic<DWORD> holders;
    };

    /// Whether this was the last holder.
    bool leave() const noexcept {
        SHARED* shared = std::exchange(m_shared, nullptr);
        const bool last = shared != nullptr && --shared->holders == 0;
        if (last) {
            delete shared;
        }
        return last;
    }

    mutable SHARED* m_shared = nullptr;  ///< null until a copy shares
};
