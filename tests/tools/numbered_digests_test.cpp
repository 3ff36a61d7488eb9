#include <gtest/gtest.h>

#include <map>
#include <string>

#include "part_digests.h"
#include "support/sha256.h"

// Tables of digests for catalogs whose part numbers have more than 16 bits, and for such that have not.

namespace {

using NAMES_BY_NUMBER = std::map<int, std::string>;

NAME_DIGEST digest_of(const std::string& name) {
    return name_digest(independent_sha256(name).data());
}

/// A catalog of parts that are called so, in a package that each part's name ends with.
DIGEST_TABLES tables_of(const NAMES_BY_NUMBER& names) {
    CATALOG catalog;
    GRAMMAR grammar;
    for (const auto& [number, name] : names) {
        CATALOG_PART& part = catalog.parts.emplace_back();
        part.number = number;
        part.name = name;
        grammar[GRAMMAR_PACKAGE_NAME][name.substr(0, name.size() - 1)].push_back(name);
    }
    catalog.last_part = names.rbegin()->first;
    return build_digest_tables(catalog, grammar);
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

}  // namespace
