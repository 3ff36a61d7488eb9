#include "indexed_grammar.h"

#include <stdexcept>
#include <utility>

namespace {

/// Where the texts of all tables are, as encode_grammar writes them.
std::array<GRAMMAR_PLACES, GRAMMAR_TABLE_COUNT> places_of(const GRAMMAR& grammar) {
    std::array<GRAMMAR_PLACES, GRAMMAR_TABLE_COUNT> places;
    std::size_t next = DATA_SET_MAGIC.size();
    const auto step_over = [&next](const std::string& text) {
        const auto place = static_cast<std::uint32_t>(next);
        next += text.size() + 1;
        return place;
    };
    for (std::size_t table = 0; table < grammar.size(); ++table) {
        for (const auto& [key, entries] : grammar[table]) {
            const std::uint32_t key_place = step_over(key);
            places[table].keys.push_back(key_place);
            for (const std::string& entry : entries) {
                places[table].entries.push_back({step_over(entry), key_place});
            }
            ++next;
        }
        ++next;
    }
    return places;
}

void require(bool condition) {
    if (!condition) {
        throw std::runtime_error("the index of the grammar does not find what is in it");
    }
}

void prove(const std::map<std::string, std::vector<std::string>>& table, const char* text,
           const GRAMMAR_TABLE_INDEX& index) {
    std::size_t entry_count = 0;
    for (const auto& [key, entries] : table) {
        const std::uint32_t key_place = index.keys.find(text, key);
        require(key_place != TEXT_BUCKETS::NOWHERE);
        for (const std::string& entry : entries) {
            const std::uint32_t place = index.entries.find(text, entry);
            require(place != TEXT_BUCKETS::NOWHERE);
            require(index.keys_of_entries[place] == index.keys.texts[key_place]);
            ++entry_count;
        }
    }
    require(index.keys.texts.size() == table.size() && index.entries.texts.size() == entry_count);
}

}  // namespace

INDEXED_GRAMMAR proven_index(const GRAMMAR& grammar, const BYTES& body) {
    std::string text(DATA_SET_MAGIC);
    text.append(reinterpret_cast<const char*>(body.data()), body.size());
    INDEX_NUMBERS numbers;
    for (const GRAMMAR_PLACES& places : places_of(grammar)) {
        append_table_index(numbers, text.c_str(), places);
    }
    std::span<const std::uint32_t> rest(numbers);
    for (const auto& table : grammar) {
        prove(table, text.c_str(), next_table_index(rest));
    }
    require(rest.empty());
    return {std::move(text), std::move(numbers)};
}
