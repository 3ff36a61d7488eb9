#pragma once

/// \file
/// A hash table over texts that lie elsewhere.

#include <string_view>
#include <utility>
#include <vector>

#include "grammar_index.h"
#include "pgmdev_types.h"

/// Finds the number of a text, such as its place in a list, in constant time. The table holds numbers and parts of
/// hashes only: the caller says which text a number stands for.
class TEXT_INDEX {
public:
    TEXT_INDEX() : m_slots(SMALLEST) {}

    static DWORD hash(std::string_view text) { return text_hash(text); }

    /// The number of `text`, or null. `text_of(number)` is the text that a number in the table stands for.
    template <class TEXT_OF>
    const DWORD* find(std::string_view text, DWORD text_hash, TEXT_OF text_of) const {
        for (std::size_t place = text_hash;; ++place) {
            const SLOT& slot = m_slots[place & (m_slots.size() - 1)];
            if (slot.number == INVALID_DWORD) {
                return nullptr;
            }
            if (slot.hash == text_hash && text_of(slot.number) == text) {
                return &slot.number;
            }
        }
    }
    template <class TEXT_OF>
    DWORD* find(std::string_view text, DWORD text_hash, TEXT_OF text_of) {
        return const_cast<DWORD*>(std::as_const(*this).find(text, text_hash, text_of));
    }

    /// Adds a text that is not in the table.
    void insert(DWORD text_hash, DWORD number) {
        if (2 * (m_count + 1) > m_slots.size()) {
            grow();
        }
        put({text_hash, number});
        ++m_count;
    }

private:
    struct SLOT {
        DWORD hash = 0;
        DWORD number = INVALID_DWORD;  ///< INVALID_DWORD: the slot is free
    };

    static constexpr std::size_t SMALLEST = 64;  ///< slots; always a power of two, at most half of them in use
    static constexpr std::size_t GROWTH = 4;

    void put(const SLOT& slot) {
        std::size_t place = slot.hash & (m_slots.size() - 1);
        while (m_slots[place].number != INVALID_DWORD) {
            place = (place + 1) & (m_slots.size() - 1);
        }
        m_slots[place] = slot;
    }

    void grow() {
        std::vector<SLOT> old(m_slots.size() * GROWTH);
        old.swap(m_slots);
        for (const SLOT& slot : old) {
            if (slot.number != INVALID_DWORD) {
                put(slot);
            }
        }
    }

    std::vector<SLOT> m_slots;
    std::size_t m_count = 0;
};
