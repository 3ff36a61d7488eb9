#include "names/part_indexes.h"

#include <memory>

#include "names/catalog_parts.h"
#include "names/conversions.h"
#include "names/on_demand.h"
#include "names/parts.h"
#include "names/stores.h"
#include "part_digests_table.h"
#include "text_filter.h"

namespace {

using TABLE = PGMDEV_DDB_GRAMMAR_ENUM;

/// An index, and how many walks take about as long as making it.
template <class INDEX, unsigned WALKS>
class INDEX_ON_DEMAND : public ON_DEMAND<INDEX> {
public:
    template <class BUILD>
    const INDEX* get(INDEX_WANTED wanted, BUILD build) {
        return this->get_after(wanted == INDEX_WANTED::NOW ? 0 : WALKS, build);
    }
};

constinit INDEX_ON_DEMAND<PART_NAME_INDEX, 20> by_programmer_file_name;
constinit INDEX_ON_DEMAND<PART_NAME_INDEX, 20> by_possible_name;
constinit INDEX_ON_DEMAND<NUMBER_INDEX, 1> by_hash;
constinit INDEX_ON_DEMAND<NUMBER_INDEX, 20> codes_by_part;

/// A name as a conversion leaves it.
std::string normal(std::string name) {
    normalize_name(name);
    return name;
}

/// All entries of a table.
std::vector<std::string_view> all_entries_of(const GRAMMAR_STORE* grammar, TABLE table) {
    std::vector<std::string_view> all;
    for (const std::string_view key : keys_of(grammar, table)) {
        const std::vector<std::string_view> entries = entries_of(grammar, table, key);
        all.insert(all.end(), entries.begin(), entries.end());
    }
    return all;
}

std::unique_ptr<PART_NAME_INDEX> index_programmer_file_names(const GRAMMAR_STORE* grammar) {
    auto index = std::make_unique<PART_NAME_INDEX>();
    const TEXT_FILTER converted(all_entries_of(grammar, TABLE::PGM_PART_PCF));  // few parts are called as these
    std::vector<bool> seen(static_cast<std::size_t>(DEV_PART_MAX));  // most parts pass the filters of several passes
    DEV_PART_MANAGER manager;
    for_each_preferred_part(manager, "ANY", [&](int part) {
        if (const auto place = static_cast<std::size_t>(part); place < seen.size()) {  // else it is no part's number
            if (seen[place]) {
                return false;
            }
            seen[place] = true;
        }
        std::string name = normal(dstr_get_user_string(part));
        const std::string_view part_pcf =
            converted.may_have(name) ? key_of(grammar, TABLE::PGM_PART_PCF, name) : std::string_view("");
        if (!index->has(part_pcf)) {
            index->add(part_pcf, index->keep(std::move(name)));
        }
        return false;
    });
    return index;
}

std::unique_ptr<PART_NAME_INDEX> index_possible_names(const GRAMMAR_STORE* grammar) {
    auto index = std::make_unique<PART_NAME_INDEX>();
    for_each_part([&](int part) {
        const std::string_view candidate = index->keep(upper_part_name(part));
        index->add(candidate, candidate);
        const std::string normal_name = normal(std::string(candidate));
        const std::string_view part_name = normal_name == candidate ? candidate : index->keep(normal_name);
        const std::string_view package_name = key_of(grammar, TABLE::PACKAGE_NAME, part_name);
        const std::string_view pgm_name = pgm_name_of(grammar, part_name, false).pgm_name;
        for (const std::string_view found : {package_name, pgm_name}) {
            // What a conversion is asked for and does not find, it takes for the answer.
            const std::string_view name = found.empty() ? part_name : found;
            if (share_part_prefix(candidate, name)) {
                index->add(name, part_name);
            }
        }
        return false;
    });
    return index;
}

std::unique_ptr<NUMBER_INDEX> index_hashes() {
    std::vector<NUMBER_INDEX::PAIR> pairs;
    for_each_part([&](int part) {
        pairs.emplace_back(part_name_hash(upper_part_name(part)), static_cast<DWORD>(part));
        return false;
    });
    return std::make_unique<NUMBER_INDEX>(std::move(pairs));
}

std::unique_ptr<NUMBER_INDEX> index_ordering_codes(std::span<const DWORD> list) {
    std::vector<NUMBER_INDEX::PAIR> pairs;
    for (DWORD index = 0; index < list.size(); ++index) {
        if (is_usable_part(static_cast<int>(list[index]))) {
            pairs.emplace_back(list[index], index);
        }
    }
    return std::make_unique<NUMBER_INDEX>(std::move(pairs));
}

}  // namespace

const DWORD* PART_NAME_INDEX::place_of(std::string_view name) const {
    return m_places.find(name, TEXT_INDEX::hash(name), [this](DWORD place) { return m_entries[place].name; });
}

std::optional<std::string> PART_NAME_INDEX::find(std::string_view name) const {
    const DWORD* place = place_of(name);
    return place != nullptr ? std::optional<std::string>(m_entries[*place].part_name) : std::nullopt;
}

void PART_NAME_INDEX::add(std::string_view name, std::string_view part_name) {
    if (!has(name)) {
        m_places.insert(TEXT_INDEX::hash(name), static_cast<DWORD>(m_entries.size()));
        m_entries.push_back({name, part_name});
    }
}

const PART_NAME_INDEX* parts_by_programmer_file_name(INDEX_WANTED wanted) {
    return by_programmer_file_name.get(wanted, [] { return index_programmer_file_names(get_grammar_store()); });
}

const PART_NAME_INDEX* parts_by_possible_name(INDEX_WANTED wanted) {
    return by_possible_name.get(wanted, [] { return index_possible_names(get_grammar_store()); });
}

const NUMBER_INDEX* parts_by_hash(INDEX_WANTED wanted) {
    return by_hash.get(wanted, index_hashes);
}

const NUMBER_INDEX* ordering_codes_by_part(INDEX_WANTED wanted) {
    return codes_by_part.get(wanted, [] { return index_ordering_codes(opn_list(get_opn_store())); });
}

void free_part_indexes() {
    by_programmer_file_name.free();
    by_possible_name.free();
    by_hash.free();
    codes_by_part.free();
    forget_host_parts();
}
