#include "names/grammar_parser.h"

#include <cstring>
#include <string_view>

#include "names/text_index.h"
#include "report.h"

namespace {

constexpr DWORD TABLE_COUNT = DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX);

/// A table as far as it has been read.
class READ_TABLE {
public:
    // The entries of a record come first, then its key. What is there already is not added: false.

    bool add_entry(std::string_view key, std::string_view entry) {
        const auto record = static_cast<DWORD>(m_records.size());
        const auto number = static_cast<DWORD>(m_entries.size());
        const DWORD hash = TEXT_INDEX::hash(entry);
        DWORD owner = record;
        if (DWORD* same = m_by_entry.find(entry, hash, [this](DWORD place) { return m_entries[place]; })) {
            if (*same >= first_pending()) {
                return false;
            }
            if (m_records[m_owners[*same]].key < key) {
                owner = m_owners[*same];
            }
            *same = number;
        } else {
            m_by_entry.insert(hash, number);
        }
        m_entries.push_back(entry);
        m_owners.push_back(owner);
        return true;
    }

    bool has_pending_entries() const { return m_entries.size() > first_pending(); }

    bool add_key(std::string_view key) {
        const DWORD hash = TEXT_INDEX::hash(key);
        if (m_by_key.find(key, hash, [this](DWORD place) { return m_records[place].key; }) != nullptr) {
            return false;
        }
        m_by_key.insert(hash, static_cast<DWORD>(m_records.size()));
        m_records.push_back({key, static_cast<DWORD>(m_entries.size())});
        return true;
    }

    /// Where its texts are, from `begin` on.
    GRAMMAR_PLACES places(const char* begin) const {
        const auto place_of = [begin](std::string_view text) { return static_cast<DWORD>(text.data() - begin); };
        GRAMMAR_PLACES places;
        for (DWORD number = 0; number < m_entries.size(); ++number) {
            const std::string_view entry = m_entries[number];
            if (*m_by_entry.find(entry, TEXT_INDEX::hash(entry), [this](DWORD place) { return m_entries[place]; }) ==
                number) {
                places.entries.push_back({place_of(entry), place_of(m_records[m_owners[number]].key)});
            }
        }
        for (const RECORD& record : m_records) {
            places.keys.push_back(place_of(record.key));
        }
        return places;
    }

private:
    struct RECORD {
        std::string_view key;
        DWORD entry_end;
    };

    DWORD first_pending() const { return m_records.empty() ? 0 : m_records.back().entry_end; }

    std::vector<RECORD> m_records;
    std::vector<std::string_view> m_entries;  ///< of all records, one after another
    std::vector<DWORD> m_owners;  ///< per entry: of the records that have it, so far, the first in key order
    TEXT_INDEX m_by_key;          ///< places in m_records
    TEXT_INDEX m_by_entry;        ///< places in m_entries; of equal entries the last, whose owner counts
};

/// Reads the body of a data set: strings that end in a byte of 0. A string, a list of strings and a table that end are
/// always followed by a further byte; only the last byte of the last table may be the last of all.
class GRAMMAR_PARSER {
public:
    GRAMMAR_PARSER(const BYTE* data, DWORD end) : m_data(data), m_end(end) {}

    void parse(std::array<READ_TABLE, TABLE_COUNT>& tables) {
        DWORD pointer_index = 0;
        while (m_index < m_end) {
            PGMDEV_REQUIRE(pointer_index < TABLE_COUNT, "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)",
                           DDB_MGR_FILE);
            parse_record(tables[pointer_index]);
            if (m_data[m_index] == 0) {
                ++m_index;
                ++pointer_index;
            }
        }
        PGMDEV_REQUIRE(pointer_index == TABLE_COUNT, "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)",
                       DDB_MGR_FILE);
    }

private:
    std::string_view read_string() {
        PGMDEV_REQUIRE(m_index < m_end, "index < data_size", DDB_MGR_FILE);
        PGMDEV_REQUIRE(m_data[m_index] != 0, "data[index] != 0", DDB_MGR_FILE);
        const BYTE* first = m_data + m_index;
        const auto* last = static_cast<const BYTE*>(std::memchr(first, 0, m_end - m_index));
        PGMDEV_REQUIRE(last != nullptr, "index < data_size && data[index] == 0", DDB_MGR_FILE);
        const auto length = static_cast<DWORD>(last - first);
        m_index += length + 1;
        PGMDEV_REQUIRE(m_index < m_end, "index < data_size", DDB_MGR_FILE);
        return {reinterpret_cast<const char*>(first), length};
    }

    void parse_record(READ_TABLE& map) {
        const std::string_view key = read_string();
        while (m_index < m_end && m_data[m_index] != 0) {
            const std::string_view content = read_string();
            PGMDEV_REQUIRE(!content.empty(), "content.size()", DDB_MGR_FILE);
            PGMDEV_REQUIRE(map.add_entry(key, content),
                           "std::find(contents.begin(), contents.end(), content) == contents.end()", DDB_MGR_FILE);
        }
        PGMDEV_REQUIRE(map.has_pending_entries(), "contents.size()", DDB_MGR_FILE);
        PGMDEV_REQUIRE(m_index < m_end && m_data[m_index] == 0, "index < data_size && data[index] == 0", DDB_MGR_FILE);
        PGMDEV_REQUIRE(map.add_key(key), "map->find(key) == map->end()", DDB_MGR_FILE);
        ++m_index;
        PGMDEV_REQUIRE(m_index < m_end, "index < data_size", DDB_MGR_FILE);
    }

    const BYTE* m_data;
    DWORD m_end;  ///< the CRC is never read as text
    DWORD m_index = CONTAINER_MAGIC_SIZE;
};

}  // namespace

ALL_GRAMMAR_PLACES parse_grammar(const DATA_CONTAINER& container) {
    std::array<READ_TABLE, TABLE_COUNT> tables;
    GRAMMAR_PARSER(container.data.get(), container.body_end()).parse(tables);
    ALL_GRAMMAR_PLACES places;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        places[i] = tables[i].places(reinterpret_cast<const char*>(container.data.get()));
    }
    return places;
}
