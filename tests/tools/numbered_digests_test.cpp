#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "part_digests.h"
#include "support/name_digest.h"
#include "support/repeatable_random.h"

// Tables of digests for catalogs whose part numbers have more than 16 bits, and for such that have not.

namespace {

using NAMES_BY_NUMBER = std::map<int, std::string>;

/// A catalog of parts that are called so, in a package that each part's name ends with.
DIGEST_TABLES tables_of(const NAMES_BY_NUMBER& names) {
    CATALOG catalog;
    catalog.devices.emplace_back().programmer_part = "FIN";
    for (const auto& [number, name] : names) {
        CATALOG_PART& part = catalog.parts.emplace_back();
        part.number = number;
        part.name = name;
        part.package_name = part.programming_name = name.substr(0, name.size() - 1);
    }
    catalog.last_part = names.rbegin()->first;
    return build_digest_tables(catalog);
}

void expect_found(const PART_DIGESTS& tables, const NAMES_BY_NUMBER& names) {
    EXPECT_EQ(tables.parts, names.rbegin()->first);
    EXPECT_EQ(tables.names.count, static_cast<std::uint32_t>(tables.parts));
    const auto first = [](std::size_t /*place*/) { return true; };
    for (const auto& [number, name] : names) {
        EXPECT_EQ(tables.names.find(digest_of(name).hash, first), number) << name;
        EXPECT_EQ(denoted_part(tables, digest_of(name.substr(0, name.size() - 1))), number) << name;
        EXPECT_EQ(denoted_part(tables, digest_of(name)), 0) << name;
        EXPECT_EQ(tables.names.find(digest_of(name).hash, [](std::size_t /*place*/) { return false; }), 0) << name;
    }
    const std::uint64_t gap = digest_of("").hash;
    EXPECT_EQ(tables.names.find(gap, first), 2);  // the first number without a part
    EXPECT_EQ(tables.names.find(gap, [&](std::size_t place) { return tables.names.part_at(place) > 2; }), 3);
    EXPECT_EQ(tables.names.find(gap ^ 1, first), 0);
}

TEST(NumberedDigests, NumbersOf16BitsNeedNoMore) {
    const NAMES_BY_NUMBER names{{1, "FINCH1A"}, {4, "FINCH4A"}, {65535, "FINCH65535A"}};
    const DIGEST_TABLES tables = tables_of(names);
    EXPECT_TRUE(tables.names.higher.empty());
    EXPECT_TRUE(tables.denoting.higher.empty());
    expect_found(tables.table(), names);
}

TEST(NumberedDigests, LargerNumbersHaveTheirHigherBitsBesideThem) {
    const NAMES_BY_NUMBER names{
        {1, "FINCH1A"}, {65535, "FINCH65535A"}, {65536, "FINCH65536A"}, {65537, "FINCH65537A"}, {66000, "FINCH7A"}};
    const DIGEST_TABLES tables = tables_of(names);
    EXPECT_EQ(tables.names.higher.size(), 66000U);
    EXPECT_EQ(tables.denoting.higher.size(), 5U);
    expect_found(tables.table(), names);
}

TEST(NumberedDigests, NamesLeadToTheFirstPartThatTheyDenote) {
    CATALOG catalog;
    catalog.devices.resize(2);
    catalog.devices[0].programmer_part = "FIN";
    const auto add = [&catalog](const char* name, const char* package_name, std::size_t device) {
        CATALOG_PART& part = catalog.parts.emplace_back();
        part.number = catalog.last_part = static_cast<int>(catalog.parts.size());
        part.name = name;
        part.package_name = package_name;
        part.programming_name = "Finch";
        part.device = device;
    };
    add("Finch1", "Finch1", 0);
    add("Finch1C6", "Finch1", 0);
    add("Finch2C6", "Finch2", 1);  // of a device that programmer files do not know
    add("Finch1C7", "Finch1", 0);
    add("Finch3C6", "Finch3", 0);
    add("Finch1C8", "Finch1", 0);
    add("FinchC6", "Other", 0);
    const DIGEST_TABLES made = build_digest_tables(catalog);
    const PART_DIGESTS tables = made.table();
    EXPECT_EQ(tables.denoting.count, 3U);
    EXPECT_EQ(denoted_part(tables, digest_of("FINCH")), 1);
    EXPECT_EQ(denoted_part(tables, digest_of("FINCH1")), 2);  // besides the part that is called so
    EXPECT_EQ(denoted_part(tables, digest_of("FINCH3")), 5);
    for (const char* name : {"FINCH2", "OTHER", "FINCH1C6", "Finch1"}) {
        EXPECT_EQ(denoted_part(tables, digest_of(name)), 0) << name;
    }
}

TEST(HashedParts, AreFoundHoweverTheirHashesAreSpread) {
    auto random = repeatable_random<std::mt19937_64>(6);
    constexpr std::uint64_t LARGEST = 0xFFFFFFFFFFFF;
    for (const std::uint64_t spread : {LARGEST, LARGEST >> 20, std::uint64_t{1000}, std::uint64_t{3}}) {
        for (const std::size_t count : {0U, 1U, 2U, 70U, 500U}) {
            std::vector<HASHED_PART> entries;
            std::multimap<std::uint64_t, int> expected;
            for (std::size_t i = 0; i < count; ++i) {
                const std::uint64_t hash = i % 9 == 0 ? LARGEST - random() % 50 : random() & spread;
                entries.push_back(hashed_part(hash, static_cast<int>(i) + 1));
            }
            std::sort(entries.begin(), entries.end());
            const HASHED_PARTS parts{entries.data(), nullptr, static_cast<std::uint32_t>(count)};
            for (std::size_t i = 0; i < count; ++i) {
                expected.emplace(entries[i] >> HASHED_PART_NUMBER_BITS, parts.part_at(i));
            }
            const auto first = [](std::size_t /*place*/) { return true; };
            for (const auto& [hash, part] : expected) {
                EXPECT_EQ(parts.find(hash, first), expected.lower_bound(hash)->second);
                EXPECT_EQ(parts.find(hash, [&, n = part](std::size_t place) { return parts.part_at(place) == n; }),
                          part);
                for (const std::uint64_t other : {hash + 1, hash - 1}) {
                    EXPECT_EQ(parts.find(other & LARGEST, first) != 0, expected.contains(other & LARGEST)) << other;
                }
            }
            EXPECT_EQ(parts.find(0, first) != 0, expected.contains(0));
            EXPECT_EQ(parts.find(LARGEST, first) != 0, expected.contains(LARGEST));
        }
    }
}

}  // namespace
