#pragma once

/// \file
/// How copies of a manager share what its pointer members point at.

#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>

#include "pgmdev_types.h"

/// The hidden side of a pointer member of an interface. The member is the truth: what it points at when it is let go is
/// freed, unless the member of a copy points at it, too, and nothing else ever is. A deriving class may thus delete what
/// the member points at and null or replace the member, or hand it to another manager and null it here. Of what copies
/// share, it does so with the members of all of them, or only nulls or replaces its own.
///
/// A copy may be left behind without being destroyed, and its storage used again. The others need nothing in it, but read
/// what is where its member was: it stays memory of the process, and is not written while another thread lets copies go.
///
/// `T` is an array type for what new[] made. Copies of one manager may be used and destroyed by different threads; a
/// deriving class writes a member that copies share while they are not copied or destroyed.
template <class T>
class PGMDEV_SHARES {
public:
    using POINTER = std::remove_extent_t<T>*;

    PGMDEV_SHARES() = default;
    PGMDEV_SHARES(const PGMDEV_SHARES&) = delete;
    PGMDEV_SHARES& operator=(const PGMDEV_SHARES&) = delete;
    ~PGMDEV_SHARES() { leave(nullptr); }

    /// Gets ready for one copy to share what `member` points at, whose hidden side this is.
    void prepare(const POINTER& member) const {
        auto entry = std::make_unique<ENTRY>();
        if (m_group == nullptr) {
            std::unique_ptr<ENTRY> own(new ENTRY{&member, nullptr});
            m_group = new GROUP(own.get());
            m_entry = own.release();
        }
        const LOCK lock(*m_group);
        entry->next = m_group->spare;
        m_group->spare = entry.release();
    }

    /// Shares what the prepared `other` points at; what `member` pointed at so far is let go.
    void share(const PGMDEV_SHARES& other, POINTER& member) noexcept {
        POINTER shared = *other.m_entry->member;
        release(member);
        join(other, member, [&] { member = shared; });
    }

    /// Shares with the prepared `other` what it points at, which `member` does already.
    void accompany(const PGMDEV_SHARES& other, const POINTER& member) noexcept {
        join(other, member, [] {});
    }

    /// Moves what `from` points at, whose hidden side is `other`, to `to`, and nulls `from`. What `to` pointed at must have
    /// been let go.
    void take_over(PGMDEV_SHARES& other, POINTER& from, POINTER& to) noexcept {
        const auto move = [&] { to = std::exchange(from, nullptr); };
        if (other.m_group == nullptr) {
            move();
            return;
        }
        const LOCK lock(*other.m_group);
        other.m_group->forget(&to);
        move();
        m_group = std::exchange(other.m_group, nullptr);
        m_entry = std::exchange(other.m_entry, nullptr);
        m_entry->member = &to;
    }

    /// Lets go what `member` points at, and nulls it.
    void release(POINTER& member) noexcept {
        if (leave(&member)) {
            std::default_delete<T>()(member);
        }
        member = nullptr;
    }

private:
    /// One of the copies.
    struct ENTRY {
        const POINTER* member = nullptr;  ///< that shares
        ENTRY* next = nullptr;
    };

    /// The copies, in a list, and entries for those to come. Whoever looks at it, or writes a member of theirs, has it
    /// locked.
    struct GROUP {
        explicit GROUP(ENTRY* entry) noexcept : first(entry) {}
        ~GROUP() {
            while (spare != nullptr) {
                delete std::exchange(spare, spare->next);
            }
        }
        GROUP(const GROUP&) = delete;
        GROUP& operator=(const GROUP&) = delete;

        /// Drops copies that were left behind where `member` is now.
        void forget(const POINTER* member) noexcept {
            for (ENTRY** place = &first; *place != nullptr;) {
                if ((*place)->member == member) {
                    delete std::exchange(*place, (*place)->next);
                } else {
                    place = &(*place)->next;
                }
            }
        }

        ENTRY* first;
        ENTRY* spare = nullptr;
        std::atomic_flag locked;
    };

    class LOCK {
    public:
        explicit LOCK(GROUP& group) noexcept : m_group(group) {
            while (m_group.locked.test_and_set(std::memory_order_acquire)) {
                std::this_thread::yield();  // for as long as it takes to walk along a list
            }
        }
        ~LOCK() { m_group.locked.clear(std::memory_order_release); }
        LOCK(const LOCK&) = delete;
        LOCK& operator=(const LOCK&) = delete;

    private:
        GROUP& m_group;
    };

    template <class CHANGE>
    void join(const PGMDEV_SHARES& other, const POINTER& member, CHANGE change) noexcept {
        GROUP& group = *other.m_group;
        const LOCK lock(group);
        group.forget(&member);
        change();
        m_group = &group;
        m_entry = std::exchange(group.spare, group.spare->next);
        m_entry->member = &member;
        m_entry->next = std::exchange(group.first, m_entry);
    }

    /// Leaves the group, if there is one. Whether no other member points at what `member` does.
    bool leave(const POINTER* member) const noexcept {
        GROUP* group = std::exchange(m_group, nullptr);
        if (group == nullptr) {
            return true;
        }
        const std::unique_ptr<ENTRY> own(std::exchange(m_entry, nullptr));
        bool alone = true;
        bool last = false;
        {
            const LOCK lock(*group);
            ENTRY** place = &group->first;
            while (*place != own.get()) {
                place = &(*place)->next;
            }
            *place = own->next;
            for (const ENTRY* other = group->first; member != nullptr && other != nullptr; other = other->next) {
                alone = alone && *other->member != *member;
            }
            last = group->first == nullptr;
        }
        if (last) {
            delete group;
        }
        return alone;
    }

    mutable GROUP* m_group = nullptr;  ///< null until a copy shares
    mutable ENTRY* m_entry = nullptr;  ///< in a group, that of the member whose hidden side this is
};
