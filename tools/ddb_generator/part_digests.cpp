#include "part_digests.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "sha256.h"
#include "source_rows.h"

namespace {

/// As long as names must begin alike for one to denote the other, unless they are equal.
constexpr std::size_t PREFIX_SIZE = 5;

NAME_DIGEST digest_of(std::string_view name) {
    return name_digest(sha256(name).data());
}

/// The names of all part numbers, in upper case; "" for one that the catalog leaves out.
std::vector<std::string> part_names(const CATALOG& catalog) {
    std::vector<std::string> names(static_cast<std::size_t>(catalog.last_part));
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.number != 0) {
            names[static_cast<std::size_t>(part.number) - 1] = upper_case(part.name);
        }
    }
    return names;
}

/// The keys of a grammar table by entry; of several the first.
using KEYS = std::unordered_map<std::string_view, std::string_view>;

KEYS keys_by_entry(const GRAMMAR& grammar, GRAMMAR_TABLE_ID table) {
    KEYS keys;
    keys.reserve(entry_count(grammar, table));
    for (const auto& [key, entries] : grammar[table]) {
        for (const std::string& entry : entries) {
            keys.try_emplace(entry, key);
        }
    }
    return keys;
}

std::string_view key_of(const KEYS& keys, std::string_view entry) {
    const auto found = keys.find(entry);
    return found != keys.end() ? found->second : "";
}

/// The digest of a name, and the part that it is to lead to.
struct DIGESTED_NAME {
    NAME_DIGEST digest;
    int part;
};

using DIGESTED_NAMES = std::vector<DIGESTED_NAME>;

bool comes_before(const DIGESTED_NAME& left, const DIGESTED_NAME& right) {
    return std::tie(left.digest.hash, left.part, left.digest.check) <
           std::tie(right.digest.hash, right.part, right.digest.check);
}

DIGESTED_NAMES digested_parts(const std::vector<std::string>& parts) {
    DIGESTED_NAMES names;
    names.reserve(parts.size());
    for (const std::string& part : parts) {
        names.push_back({digest_of(part), static_cast<int>(names.size()) + 1});
    }
    std::sort(names.begin(), names.end(), comes_before);
    return names;
}

/// Package names and programming names that begin as their parts do, each with the first part that it denotes.
DIGESTED_NAMES digested_denoting_names(const std::vector<std::string>& parts, const GRAMMAR& grammar) {
    const KEYS package_names = keys_by_entry(grammar, GRAMMAR_PACKAGE_NAME);
    const KEYS pgm_names = keys_by_entry(grammar, GRAMMAR_PGM_NAME);
    std::unordered_set<std::string_view> seen;
    DIGESTED_NAMES names;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::string_view part = parts[i];
        const std::string_view package_name = key_of(package_names, part);
        const std::string_view own_pgm_name = key_of(pgm_names, part);
        const std::string_view pgm_name = own_pgm_name.empty() ? key_of(pgm_names, package_name) : own_pgm_name;
        for (const std::string_view name : {package_name, pgm_name}) {
            if (name != part && name.size() >= PREFIX_SIZE &&
                name.substr(0, PREFIX_SIZE) == part.substr(0, PREFIX_SIZE) && seen.insert(name).second) {
                names.push_back({digest_of(name), static_cast<int>(i) + 1});
            }
        }
    }
    std::sort(names.begin(), names.end(), comes_before);
    return names;
}

HASHED_NUMBERS hashed_numbers(const DIGESTED_NAMES& names, int last_part) {
    HASHED_NUMBERS numbers;
    for (const auto& [digest, part] : names) {
        numbers.entries.push_back(hashed_part(digest.hash, part));
        if (last_part > LARGEST_HASHED_PART) {
            numbers.higher.push_back(static_cast<std::uint16_t>(part >> HASHED_PART_NUMBER_BITS));
        }
    }
    return numbers;
}

/// Asks for every name, as the library will. Numbers that the catalog leaves out share a name, under which only the first
/// is asked for.
void prove(const PART_DIGESTS& tables, const DIGESTED_NAMES& parts, const DIGESTED_NAMES& denoting) {
    const DIGESTED_NAME* previous = nullptr;
    for (const DIGESTED_NAME& name : parts) {
        const bool repeated = previous != nullptr && previous->digest.hash == name.digest.hash &&
                              previous->digest.check == name.digest.check;
        previous = &name;
        if (!repeated && tables.names.find(name.digest.hash, [&](std::size_t place) {
                return tables.names.part_at(place) == name.part;
            }) != name.part) {
            throw std::runtime_error("the output does not read back: digest of part " + std::to_string(name.part));
        }
    }
    for (const DIGESTED_NAME& name : denoting) {
        if (denoted_part(tables, name.digest) != name.part) {
            throw std::runtime_error("the output does not read back: digest of a name of part " +
                                     std::to_string(name.part));
        }
    }
}

}  // namespace

HASHED_PARTS HASHED_NUMBERS::table() const {
    return {entries.data(), higher.empty() ? nullptr : higher.data(), static_cast<std::uint32_t>(entries.size())};
}

PART_DIGESTS DIGEST_TABLES::table() const {
    PART_DIGESTS table{{}, parts, names.table(), denoting.table(), checks.data()};
    std::copy(all_names.begin(), all_names.end(), std::begin(table.all_names));
    return table;
}

DIGEST_TABLES build_digest_tables(const CATALOG& catalog, const GRAMMAR& grammar) {
    const std::vector<std::string> parts = part_names(catalog);
    const DIGESTED_NAMES named = digested_parts(parts);
    const DIGESTED_NAMES denoting = digested_denoting_names(parts, grammar);

    DIGEST_TABLES tables;
    tables.parts = catalog.last_part;
    std::string all;
    for (const std::string& part : parts) {
        all += part;
        all += '\0';
    }
    tables.all_names = sha256(all);
    tables.names = hashed_numbers(named, catalog.last_part);
    tables.denoting = hashed_numbers(denoting, catalog.last_part);
    for (const DIGESTED_NAME& name : denoting) {
        tables.checks.push_back(name.digest.check);
    }
    prove(tables.table(), named, denoting);
    return tables;
}
