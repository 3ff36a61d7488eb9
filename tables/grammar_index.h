#pragma once

/// \file
/// An index over the texts of the grammar, which finds keys and entries at once. It consists of nothing but numbers: the
/// build makes the one of the catalog's grammar and compiles it in; of another grammar the library makes one itself.
///
/// For each table it has, one after another:
/// - the number of buckets of its entries, the number of entries, and the same two numbers of its keys;
/// - where the entries of each bucket begin among the entries, and where those of the last one end;
/// - where the text of each entry begins in the grammar; where that of its key does;
/// - the beginnings of the buckets of keys, and where the text of each key begins.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "text_digest.h"

using INDEX_NUMBERS = std::vector<std::uint32_t>;

inline std::uint32_t text_hash(std::string_view text) {
    return static_cast<std::uint32_t>(text_digest(text));
}

/// The bucket of a text.
inline std::uint32_t text_bucket(std::string_view text, std::size_t buckets) {
    return static_cast<std::uint32_t>(std::uint64_t{text_hash(text)} * buckets >> 32);
}

/// Texts in the order of their buckets.
struct TEXT_BUCKETS {
    std::span<const std::uint32_t> begins;  ///< of each bucket in `texts`, and the end of the last one
    std::span<const std::uint32_t> texts;   ///< where each text begins; it ends with a NUL

    static constexpr std::uint32_t NOWHERE = 0xFFFFFFFF;

    /// The place of a text in `texts`, or NOWHERE.
    std::uint32_t find(const char* grammar, std::string_view text) const {
        const std::uint32_t bucket = text_bucket(text, begins.size() - 1);
        for (std::uint32_t place = begins[bucket]; place < begins[bucket + 1]; ++place) {
            if (std::string_view(grammar + texts[place]) == text) {
                return place;
            }
        }
        return NOWHERE;
    }
};

/// The index of a table.
struct GRAMMAR_TABLE_INDEX {
    TEXT_BUCKETS entries;                            ///< each text once
    std::span<const std::uint32_t> keys_of_entries;  ///< where the key of each entry begins
    TEXT_BUCKETS keys;
};

/// Takes the next table from the numbers of an index, which it moves past.
inline GRAMMAR_TABLE_INDEX next_table_index(std::span<const std::uint32_t>& numbers) {
    const auto take = [&numbers](std::size_t count) {
        const std::span<const std::uint32_t> taken = numbers.first(count);
        numbers = numbers.subspan(count);
        return taken;
    };
    const auto counts = take(4);
    GRAMMAR_TABLE_INDEX index;
    index.entries = {take(counts[0] + std::size_t{1}), take(counts[1])};
    index.keys_of_entries = take(counts[1]);
    index.keys = {take(counts[2] + std::size_t{1}), take(counts[3])};
    return index;
}

/// Where the texts of an entry and of its key begin.
struct ENTRY_PLACE {
    std::uint32_t entry;
    std::uint32_t key;
};

/// Where the texts of a table are: of equal entries only the one that look-ups are to find, and all keys.
struct GRAMMAR_PLACES {
    std::vector<ENTRY_PLACE> entries;
    std::vector<std::uint32_t> keys;
};

/// Items in the order of their buckets, one bucket for two of them. `text_of(item)` is where the text of an item begins.
template <class ITEM, class TEXT_OF>
struct BUCKET_SORT {
    INDEX_NUMBERS begins;
    std::vector<ITEM> items;

    BUCKET_SORT(const char* grammar, const std::vector<ITEM>& unsorted, TEXT_OF text_of)
        : begins(unsorted.size() / 2 + 2), items(unsorted.size()) {
        const auto bucket_of = [&](const ITEM& item) {
            return text_bucket(grammar + text_of(item), begins.size() - 1);
        };
        for (const ITEM& item : unsorted) {
            ++begins[bucket_of(item) + 1];
        }
        for (std::size_t i = 1; i < begins.size(); ++i) {
            begins[i] += begins[i - 1];
        }
        INDEX_NUMBERS next(begins);
        for (const ITEM& item : unsorted) {
            items[next[bucket_of(item)]++] = item;
        }
    }
};

/// Appends the index of a table to the numbers of an index.
inline void append_table_index(INDEX_NUMBERS& numbers, const char* grammar, const GRAMMAR_PLACES& places) {
    const BUCKET_SORT entries(grammar, places.entries, [](const ENTRY_PLACE& place) { return place.entry; });
    const BUCKET_SORT keys(grammar, places.keys, [](std::uint32_t key) { return key; });
    for (const std::size_t count :
         {entries.begins.size() - 1, entries.items.size(), keys.begins.size() - 1, keys.items.size()}) {
        numbers.push_back(static_cast<std::uint32_t>(count));
    }
    numbers.insert(numbers.end(), entries.begins.begin(), entries.begins.end());
    for (const ENTRY_PLACE& place : entries.items) {
        numbers.push_back(place.entry);
    }
    for (const ENTRY_PLACE& place : entries.items) {
        numbers.push_back(place.key);
    }
    numbers.insert(numbers.end(), keys.begins.begin(), keys.begins.end());
    numbers.insert(numbers.end(), keys.items.begin(), keys.items.end());
}
