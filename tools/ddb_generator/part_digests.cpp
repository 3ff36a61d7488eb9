#include "part_digests.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "sha256.h"
#include "source_rows.h"
#include "text_filter.h"

namespace {

NAME_DIGEST digest_of(std::string_view name) {
    return name_digest(sha256(name).data());
}

/// The parts by number, from 1 on; null: a number that the catalog leaves out.
using NUMBERED_PARTS = std::vector<const CATALOG_PART*>;

NUMBERED_PARTS parts_by_number(const CATALOG& catalog) {
    NUMBERED_PARTS parts(static_cast<std::size_t>(catalog.last_part));
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.number != 0) {
            parts[static_cast<std::size_t>(part.number) - 1] = &part;
        }
    }
    return parts;
}

/// In upper case; "" for a number that the catalog leaves out.
std::string name_of(const CATALOG_PART* part) {
    return part != nullptr ? upper_case(part->name) : "";
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

bool are_same(const DIGESTED_NAME& left, const DIGESTED_NAME& right) {
    return left.digest.hash == right.digest.hash && left.digest.check == right.digest.check;
}

/// Adds the names of all parts to `all_names`, too.
DIGESTED_NAMES digested_parts(const NUMBERED_PARTS& parts, NAME_LIST_DIGEST& all_names) {
    DIGESTED_NAMES names;
    names.reserve(parts.size());
    for (const CATALOG_PART* part : parts) {
        const std::string name = name_of(part);
        names.push_back({digest_of(name), static_cast<int>(names.size()) + 1});
        all_names.add(name);
    }
    std::sort(names.begin(), names.end(), comes_before);
    return names;
}

/// The programming names of parts, as the grammar converts them.
class PROGRAMMING_NAMES {
public:
    explicit PROGRAMMING_NAMES(const CATALOG& catalog) {
        const CATALOG_PART* previous = nullptr;
        for (const CATALOG_PART& part : catalog.parts) {
            if (is_converted(catalog, part) && (previous == nullptr || previous->package_name != part.package_name)) {
                m_names.try_emplace(upper_case(part.package_name), upper_case(part.programming_name));
                previous = &part;
            }
        }
        std::vector<std::string_view> package_names;
        for (const auto& [package_name, name] : m_names) {
            package_names.push_back(package_name);
        }
        m_package_names = TEXT_FILTER(package_names);
    }

    /// Whether the grammar has the names of the part.
    static bool is_converted(const CATALOG& catalog, const CATALOG_PART& part) {
        return !catalog.devices[part.device].programmer_part.empty();
    }

    /// That of a package name, or null. Most names that are asked for are none.
    const std::string* find(const std::string& package_name) const {
        if (!m_package_names.may_have(package_name)) {
            return nullptr;
        }
        const auto found = m_names.find(package_name);
        return found != m_names.end() ? &found->second : nullptr;
    }

private:
    std::unordered_map<std::string, std::string> m_names;  ///< by package name
    TEXT_FILTER m_package_names{{}};
};

/// The package name and the programming name of a part called `name`; "" for one that it has not.
std::array<std::string, 2> shorter_names_of(const CATALOG& catalog, const CATALOG_PART& part, const std::string& name,
                                            const PROGRAMMING_NAMES& programming_names) {
    std::array<std::string, 2> names;
    if (PROGRAMMING_NAMES::is_converted(catalog, part)) {
        names = {upper_case(part.package_name), upper_case(part.programming_name)};
    }
    if (const std::string* own = programming_names.find(name)) {  // the part's own name is a package name, too
        names[1] = *own;
    }
    return names;
}

/// Of names that are the same only that of the first part stays.
void keep_first_parts(DIGESTED_NAMES& names) {
    std::sort(names.begin(), names.end(), [](const DIGESTED_NAME& left, const DIGESTED_NAME& right) {
        return std::tie(left.digest.hash, left.digest.check, left.part) <
               std::tie(right.digest.hash, right.digest.check, right.part);
    });
    names.erase(std::unique(names.begin(), names.end(), are_same), names.end());
}

/// Package names and programming names that begin as their parts do, each with the first part that it denotes.
DIGESTED_NAMES digested_denoting_names(const CATALOG& catalog, const NUMBERED_PARTS& parts) {
    const PROGRAMMING_NAMES programming_names(catalog);
    DIGESTED_NAMES names;
    std::array<std::string, 2> last;  // parts that follow each other mostly share these names
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (parts[i] == nullptr) {
            continue;
        }
        const std::string part = name_of(parts[i]);
        const std::array<std::string, 2> shorter = shorter_names_of(catalog, *parts[i], part, programming_names);
        for (std::size_t k = 0; k < shorter.size(); ++k) {
            if (shorter[k] != last[k] && shorter[k] != part && share_part_prefix(shorter[k], part)) {
                names.push_back({digest_of(shorter[k]), static_cast<int>(i) + 1});
                last[k] = shorter[k];
            }
        }
    }
    keep_first_parts(names);
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
        const bool repeated = previous != nullptr && are_same(*previous, name);
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
    return {all_names, parts, names.table(), denoting.table(), checks.data()};
}

DIGEST_TABLES build_digest_tables(const CATALOG& catalog) {
    const NUMBERED_PARTS parts = parts_by_number(catalog);
    DIGEST_TABLES tables;
    const DIGESTED_NAMES named = digested_parts(parts, tables.all_names);
    const DIGESTED_NAMES denoting = digested_denoting_names(catalog, parts);
    tables.parts = catalog.last_part;
    tables.names = hashed_numbers(named, catalog.last_part);
    tables.denoting = hashed_numbers(denoting, catalog.last_part);
    for (const DIGESTED_NAME& name : denoting) {
        tables.checks.push_back(name.digest.check);
    }
    prove(tables.table(), named, denoting);
    return tables;
}
