#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "names/compiled_in_digests.h"
#include "support/name_digest.h"
#include "tools/shipped_catalog.h"

namespace {

/// The parts by number, and what names of theirs the catalog has for the grammar.
std::map<int, const PLAIN_PART*> parts_by_number() {
    std::map<int, const PLAIN_PART*> parts;
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.number != 0) {
            parts[part.number] = &part;
        }
    }
    return parts;
}

NAME_LIST_DIGEST list_digest(const std::vector<std::string>& names) {
    NAME_LIST_DIGEST digest;
    for (const std::string& name : names) {
        digest.add(name);
    }
    return digest;
}

TEST(NameListDigest, TakesATextWithoutAnAddressForTheEmptyOne) {
    NAME_LIST_DIGEST digest;
    digest.add(std::string_view());
    EXPECT_EQ(digest, list_digest({""}));
}

TEST(NameListDigest, IsOfTheNamesInTheirOrderInAnyCase) {
    const std::vector<std::string> names{"KES50", "", "A[z]{@`", "longer than sixteen characters", "eight898"};
    const NAME_LIST_DIGEST digest = list_digest(names);
    std::vector<std::string> same = names;
    for (std::string& name : same) {
        name = upper(name);
    }
    EXPECT_EQ(list_digest(same), digest);
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t at = 0; at < names[i].size(); ++at) {
            for (const int changed : {1, 2, 4, 8, 16, 64, 128}) {  // not the bit of the case
                std::vector<std::string> other = names;
                other[i][at] = static_cast<char>(other[i][at] ^ changed);
                EXPECT_NE(list_digest(other), digest) << i << ", " << at << ", " << changed;
            }
        }
        std::vector<std::string> longer = names;
        longer[i] += '\0';
        EXPECT_NE(list_digest(longer), digest) << i;
        std::vector<std::string> swapped = names;
        std::swap(swapped[i], swapped[(i + 1) % names.size()]);
        EXPECT_NE(list_digest(swapped), digest) << i;
        std::vector<std::string> shorter = names;
        shorter.erase(shorter.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_NE(list_digest(shorter), digest) << i;
    }
    EXPECT_NE(list_digest({"AB", "C"}), list_digest({"A", "BC"}));
}

TEST(GeneratedDigests, AreAboutTheNamesOfAllNumbers) {
    const auto parts = parts_by_number();
    std::vector<std::string> names;
    for (int number = 1; number <= parts.rbegin()->first; ++number) {
        names.push_back(parts.contains(number) ? upper(parts.at(number)->name) : "");
    }
    EXPECT_EQ(PGMDDB_PART_DIGESTS.parts, parts.rbegin()->first);
    EXPECT_EQ(PGMDDB_PART_DIGESTS.all_names, list_digest(names));
}

TEST(GeneratedDigests, HaveEveryPartByItsHash) {
    const PART_DIGESTS& tables = PGMDDB_PART_DIGESTS;
    const HASHED_PARTS& names = tables.names;
    EXPECT_EQ(names.higher, nullptr);
    EXPECT_TRUE(std::is_sorted(names.entries, names.entries + names.count));
    std::vector<HASHED_PART> expected;
    const auto parts = parts_by_number();
    for (int number = 1; number <= tables.parts; ++number) {
        expected.push_back(
            hashed_part(digest_of(parts.contains(number) ? upper(parts.at(number)->name) : "").hash, number));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(std::vector<HASHED_PART>(names.entries, names.entries + names.count), expected);
}

TEST(GeneratedDigests, HaveTheFirstPartThatANameDenotes) {
    std::map<std::string, int> expected;
    for (const auto& [number, part] : parts_by_number()) {
        if (part->pcf == "-") {
            continue;  // not in the grammar
        }
        const std::string name = upper(part->name);
        for (const std::string& denoting : {upper(part->package_name), upper(part->pgm_name)}) {
            if (denoting != name && denoting.size() >= 5 && denoting.substr(0, 5) == name.substr(0, 5)) {
                expected.try_emplace(denoting, number);
            }
        }
    }
    const PART_DIGESTS& tables = PGMDDB_PART_DIGESTS;
    EXPECT_GT(expected.size(), 5000U);
    EXPECT_EQ(tables.denoting.count, expected.size());
    for (const auto& [name, number] : expected) {
        ASSERT_EQ(denoted_part(tables, digest_of(name)), number) << name;
        ASSERT_EQ(denoted_part(tables, digest_of(name + "?")), 0) << name;
    }
}

}  // namespace
