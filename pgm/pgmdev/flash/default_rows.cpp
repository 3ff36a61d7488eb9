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

/// How many places a name may have. Names of chips need few of them; of names that were made to have the same ones, more
/// would be compared with each other than there is time for.
constexpr std::size_t MOST_PLACES = 32;
constexpr std::size_t NO_PLACE = ~std::size_t{0};

}  // namespace

bool DEFAULT_ROWS::COMES_BEFORE::operator()(const std::string* left, const std::string* right) const {
    return gen_stricmp(*left, *right) < 0;
}

DEFAULT_ROWS::DEFAULT_ROWS(std::span<const PGMDEV_SFL_FLASH_INFO> records)
    : m_records(records), m_places(std::bit_ceil(2 * records.size() + 1)) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        const DWORD defaults = records[i].default_dev ? 1 : 0;
        const std::size_t place = place_of(records[i].device_name);
        if (place == NO_PLACE) {
            m_others[&records[i].device_name] += defaults;
        } else {
            m_places[place].record = std::min(m_places[place].record, static_cast<DWORD>(i));
            m_places[place].count += defaults;
        }
    }
}

bool DEFAULT_ROWS::one_each() const {
    return std::all_of(m_places.begin(), m_places.end(),
                       [](const PLACE& place) { return place.record == INVALID_DWORD || place.count == 1; }) &&
           std::all_of(m_others.begin(), m_others.end(), [](const auto& other) { return other.second == 1; });
}

DWORD DEFAULT_ROWS::count(const std::string& name) const {
    const std::size_t place = place_of(name);
    return place == NO_PLACE ? m_others.at(&name) : m_places[place].count;
}

/// Its own place, or a free one; NO_PLACE where all that it may have are those of others. Places that are taken stay so.
std::size_t DEFAULT_ROWS::place_of(const std::string& name) const {
    const QWORD hash = hash_of(name);
    for (std::size_t i = 0; i < MOST_PLACES; ++i) {
        const std::size_t place = (hash + i) & (m_places.size() - 1);
        const DWORD record = m_places[place].record;
        if (record == INVALID_DWORD || gen_stricmp(m_records[record].device_name, name) == 0) {
            return place;
        }
    }
    return NO_PLACE;
}
