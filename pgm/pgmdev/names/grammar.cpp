#include "names/grammar.h"

#include <algorithm>

#include "names/grammar_parser.h"

std::vector<std::string_view> GRAMMAR_TABLE::entries_of(std::string_view key) const {
    const DWORD place = m_index.keys.find(m_text, key);
    std::vector<std::string_view> entries;
    if (place != TEXT_BUCKETS::NOWHERE) {
        constexpr std::size_t MOSTLY = 8;  // entries, or fewer: room for these is taken at once
        entries.reserve(MOSTLY);
        const char* text = m_text + m_index.keys.texts[place] + key.size() + 1;
        for (; *text != '\0'; text += entries.back().size() + 1) {
            entries.emplace_back(text);
        }
    }
    return entries;
}

std::vector<std::string_view> GRAMMAR_TABLE::keys() const {
    std::vector<DWORD> places(m_index.keys.texts.begin(), m_index.keys.texts.end());
    std::sort(places.begin(), places.end());
    std::vector<std::string_view> keys(places.size());
    std::transform(places.begin(), places.end(), keys.begin(), [this](DWORD place) { return m_text + place; });
    return keys;
}

std::string_view GRAMMAR_TABLE::key_of(std::string_view entry) const {
    const DWORD place = m_index.entries.find(m_text, entry);
    return place != TEXT_BUCKETS::NOWHERE ? m_text + m_index.keys_of_entries[place] : "";
}

std::unique_ptr<GRAMMAR_STORE> build_grammar_store(const COMPILED_DATA_SET& set) {
    auto store = std::make_unique<GRAMMAR_STORE>();
    const char* text = set.text;
    std::span<const std::uint32_t> index = set.index;
    const bool is_compiled_in = !index.empty() && is_known(set);
    store->entries_have_one_key = is_compiled_in;
    if (!is_compiled_in) {
        DATA_CONTAINER container = open_container(set);
        text = reinterpret_cast<const char*>(container.data.get());
        for (const GRAMMAR_PLACES& places : parse_grammar(container)) {
            append_table_index(store->index, text, places);
        }
        index = store->index;
        store->text = std::move(container.data);
    }
    for (auto& table : store->tables) {
        table = std::make_unique<GRAMMAR_TABLE>(text, next_table_index(index));
    }
    return store;
}
