#include "names/grammar.h"

#include <algorithm>

#include "report.h"

namespace {

constexpr DWORD TABLE_COUNT = DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX);

/// Reads the body of a data set: strings that end in a byte of 0. A string, a list of strings and a table that end are
/// always followed by a further byte; only the last byte of the last table may be the last of all.
class GRAMMAR_PARSER {
public:
    GRAMMAR_PARSER(const BYTE* data, DWORD end) : m_data(data), m_end(end) {}

    void parse(GRAMMAR_STORE& store) {
        DWORD pointer_index = 0;
        while (m_index < m_end) {
            PGMDEV_REQUIRE(pointer_index < TABLE_COUNT, "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)",
                           DDB_MGR_FILE);
            parse_record(*store.tables[pointer_index]);
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

    void parse_record(GRAMMAR_TABLE& map) {
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

bool GRAMMAR_TABLE::add_entry(std::string_view key, std::string_view entry) {
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

bool GRAMMAR_TABLE::has_pending_entries() const {
    return m_entries.size() > first_pending();
}

bool GRAMMAR_TABLE::add_key(std::string_view key) {
    const DWORD hash = TEXT_INDEX::hash(key);
    if (m_by_key.find(key, hash, [this](DWORD place) { return m_records[place].key; }) != nullptr) {
        return false;
    }
    m_by_key.insert(hash, static_cast<DWORD>(m_records.size()));
    m_records.push_back({key, first_pending(), static_cast<DWORD>(m_entries.size())});
    return true;
}

std::span<const std::string_view> GRAMMAR_TABLE::entries_of(std::string_view key) const {
    const DWORD* record =
        m_by_key.find(key, TEXT_INDEX::hash(key), [this](DWORD place) { return m_records[place].key; });
    if (record == nullptr) {
        return {};
    }
    const RECORD& found = m_records[*record];
    return {m_entries.data() + found.first_entry, m_entries.data() + found.entry_end};
}

std::vector<std::string_view> GRAMMAR_TABLE::keys() const {
    std::vector<std::string_view> keys(m_records.size());
    std::transform(m_records.begin(), m_records.end(), keys.begin(), [](const RECORD& record) { return record.key; });
    return keys;
}

std::string_view GRAMMAR_TABLE::key_of(std::string_view entry) const {
    const DWORD* number =
        m_by_entry.find(entry, TEXT_INDEX::hash(entry), [this](DWORD place) { return m_entries[place]; });
    return number != nullptr ? m_records[m_owners[*number]].key : std::string_view("");
}

std::unique_ptr<GRAMMAR_STORE> build_grammar_store(const COMPILED_DATA_SET& set) {
    DATA_CONTAINER container = open_container(set);
    auto store = std::make_unique<GRAMMAR_STORE>();
    std::generate(store->tables.begin(), store->tables.end(), std::make_unique<GRAMMAR_TABLE>);
    GRAMMAR_PARSER(container.data.get(), container.body_end()).parse(*store);
    store->text = std::move(container.data);
    return store;
}
