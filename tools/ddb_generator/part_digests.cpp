#include "part_digests.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

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
using KEYS = std::map<std::string, std::string, std::less<>>;

KEYS keys_by_entry(const GRAMMAR& grammar, GRAMMAR_TABLE_ID table) {
    KEYS keys;
    for (const auto& [key, entries] : grammar[table]) {
        for (const std::string& entry : entries) {
            keys.try_emplace(entry, key);
        }
    }
    return keys;
}

std::string key_of(const KEYS& keys, const std::string& entry) {
    const auto found = keys.find(entry);
    return found != keys.end() ? found->second : "";
}

/// The first part that is denoted, by name: the package names and programming names that begin as their parts do.
std::map<std::string, int> denoting_names(const std::vector<std::string>& parts, const GRAMMAR& grammar) {
    const KEYS package_names = keys_by_entry(grammar, GRAMMAR_PACKAGE_NAME);
    const KEYS pgm_names = keys_by_entry(grammar, GRAMMAR_PGM_NAME);
    std::map<std::string, int> first;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::string& part = parts[i];
        const std::string package_name = key_of(package_names, part);
        const std::string own_pgm_name = key_of(pgm_names, part);
        const std::string pgm_name = own_pgm_name.empty() ? key_of(pgm_names, package_name) : own_pgm_name;
        for (const std::string& name : {package_name, pgm_name}) {
            if (name != part && name.size() >= PREFIX_SIZE && name.compare(0, PREFIX_SIZE, part, 0, PREFIX_SIZE) == 0) {
                first.try_emplace(name, static_cast<int>(i) + 1);
            }
        }
    }
    return first;
}

/// Asks for every name, as the library will.
void prove(const DIGEST_TABLES& tables, const std::vector<std::string>& parts,
           const std::map<std::string, int>& denoting) {
    const PART_DIGESTS table = tables.table();
    std::map<std::string, int> first;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        first.try_emplace(parts[i], static_cast<int>(i) + 1);
    }
    for (const auto& [name, number] : first) {
        const auto found = parts_with_hash(table.names, table.name_count, digest_of(name).hash);
        if (std::none_of(found.begin(), found.end(),
                         [&, n = number](HASHED_PART entry) { return number_of_hashed_part(entry) == n; })) {
            throw std::runtime_error("the output does not read back: digest of part \"" + name + "\"");
        }
    }
    for (const auto& [name, number] : denoting) {
        if (denoted_part(table, digest_of(name)) != number) {
            throw std::runtime_error("the output does not read back: digest of \"" + name + "\"");
        }
    }
}

}  // namespace

PART_DIGESTS DIGEST_TABLES::table() const {
    return {all_names,
            parts,
            names.data(),
            static_cast<std::uint32_t>(names.size()),
            denoting.data(),
            checks.data(),
            static_cast<std::uint32_t>(denoting.size())};
}

DIGEST_TABLES build_digest_tables(const CATALOG& catalog, const GRAMMAR& grammar) {
    if (catalog.last_part > LARGEST_HASHED_PART) {
        return {};
    }
    const std::vector<std::string> parts = part_names(catalog);
    const std::map<std::string, int> denoting = denoting_names(parts, grammar);

    DIGEST_TABLES tables;
    tables.parts = catalog.last_part;
    for (const std::string& part : parts) {
        tables.all_names.add(part);
        tables.names.push_back(hashed_part(digest_of(part).hash, static_cast<int>(tables.names.size()) + 1));
    }
    std::sort(tables.names.begin(), tables.names.end());

    std::vector<std::pair<HASHED_PART, std::uint64_t>> checked;
    for (const auto& [name, number] : denoting) {
        const NAME_DIGEST digest = digest_of(name);
        checked.emplace_back(hashed_part(digest.hash, number), digest.check);
    }
    std::sort(checked.begin(), checked.end());
    for (const auto& [entry, check] : checked) {
        tables.denoting.push_back(entry);
        tables.checks.push_back(check);
    }
    prove(tables, parts, denoting);
    return tables;
}
