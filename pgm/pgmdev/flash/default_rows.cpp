#include "flash/default_rows.h"

#include <algorithm>
#include <bit>

#include "gen.h"

// A table of places instead of a map of nodes: a load takes a quarter of the memory for it, so that fewer pages are made.

namespace {

/// The same for names that differ in the case of ASCII letters, or in characters that ASCII has not.
QWORD hash_of(const std::string& name) {
    constexpr DWORD CASE_OF_LETTERS = 0x20;
    constexpr DWORD NOT_ASCII = 0x80;
    QWORD hash = name.size();
    for (const char character : name) {
        const DWORD folded = static_cast<BYTE>(character) | CASE_OF_LETTERS;
        hash = (hash ^ std::min(folded, NOT_ASCII)) * 0x100000001B3;
    }
    return hash ^ hash >> 32;
}

}  // namespace

DEFAULT_ROWS::DEFAULT_ROWS(std::span<const PGMDEV_SFL_FLASH_INFO> records)
    : m_records(records), m_places(std::bit_ceil(2 * records.size() + 1)) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        PLACE& place = m_places[place_of(records[i].device_name)];
        place.record = std::min(place.record, static_cast<DWORD>(i));
        if (records[i].default_dev) {
            ++place.count;
        }
    }
}

bool DEFAULT_ROWS::one_each() const {
    return std::all_of(m_places.begin(), m_places.end(),
                       [](const PLACE& place) { return place.record == INVALID_DWORD || place.count == 1; });
}

std::size_t DEFAULT_ROWS::place_of(const std::string& name) const {
    for (QWORD hash = hash_of(name);; ++hash) {
        const std::size_t place = hash & (m_places.size() - 1);
        const DWORD record = m_places[place].record;
        if (record == INVALID_DWORD || gen_stricmp(m_records[record].device_name, name) == 0) {
            return place;
        }
    }
}
