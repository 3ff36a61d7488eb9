#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "dstr.h"
#include "names/catalog_parts.h"
#include "pgmdev/names/reference.h"
#include "pgmdev/names/test_data.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"
#include "support/name_digest.h"
#include "support/reports.h"

// A library whose catalog is not that of its host.

namespace {

namespace ref = ddb_reference;

const std::vector<std::string>& host_parts() {
    static const std::vector<std::string> PARTS = [] {
        std::vector<std::string> parts;
        for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
            stl_toupper(parts.emplace_back(dstr_get_user_string(part)));
        }
        return parts;
    }();
    return PARTS;
}

QWORD hash_of(const std::string& name) {
    return digest_of(name).hash;
}

/// Tables that are wrong about the host's parts: each hash is that of part 2, which each name denotes.
struct WRONG_TABLES {
    std::vector<HASHED_PART> names;
    std::vector<std::uint64_t> checks;

    WRONG_TABLES() {
        std::vector<std::pair<HASHED_PART, std::uint64_t>> entries;
        for (const std::string& part : host_parts()) {
            const NAME_DIGEST digest = digest_of(part);
            entries.emplace_back(hashed_part(digest.hash, 2), digest.check);
        }
        std::sort(entries.begin(), entries.end());
        for (const auto& [name, check] : entries) {
            names.push_back(name);
            checks.push_back(check);
        }
    }

    /// The same as tables about `parts` parts with these names.
    PART_DIGESTS about(std::size_t parts, const std::vector<std::string>& all_names) const {
        const auto count = static_cast<DWORD>(names.size());
        const HASHED_PARTS hashed{names.data(), nullptr, count};
        PART_DIGESTS tables{{}, static_cast<int>(parts), hashed, hashed, checks.data()};
        for (const std::string& name : all_names) {
            tables.all_names.add(name);
        }
        return tables;
    }
};

class OtherParts : public testing::Test {
protected:
    OtherParts() { set_grammar_container(ref::container(ref::grammar_body(ref::example_grammar()))); }
    ~OtherParts() override { set_part_digests({}); }

    void expect_right_answers() {
        for (std::size_t i = 0; i < host_parts().size(); i += i < 3 ? 1 : 97) {
            const std::string& part = host_parts()[i];
            ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(part)), part);
            ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(part) ^ 1), "");
            ASSERT_EQ(PGMDEV_MGR::get_possible_full_name(part), part);
            ASSERT_EQ(PGMDEV_PART_INDEX().get_possible_full_name(part), part);
            ASSERT_EQ(PGMDEV_PART_INDEX().get_possible_full_name(part + "?"), "");
        }
    }

    const WRONG_TABLES m_wrong;
};

TEST_F(OtherParts, APackageNameHasFiveCharactersOrMore) {
    const std::string& part = host_parts().front();
    for (const std::size_t length : {4U, 5U, 6U}) {
        const std::string package = part.substr(0, length);
        std::vector<ref::TABLE> tables = ref::example_grammar();
        tables[0] = {{package, {part}}};
        set_grammar_container(ref::container(ref::grammar_body(tables)));
        const std::string denoted = length < 5 ? "" : part;
        const REPORTS reports;
        EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(package), denoted);
        EXPECT_EQ(PGMDEV_PART_INDEX().get_possible_full_name(package), denoted);
        EXPECT_EQ(reports.all().size(), length < 5 ? 1U : 0U);
    }
}

/// Hosts may tell what their names are; of others the library finds it out.
TEST_F(OtherParts, TheDigestOfTheirNamesIsFoundOutFromEach) {
    EXPECT_EQ(digest_of_host_parts(), m_wrong.about(host_parts().size(), host_parts()).all_names);
}

TEST_F(OtherParts, TablesAboutFewerPartsAreLeftAlone) {
    set_part_digests(m_wrong.about(host_parts().size() - 1, host_parts()));
    EXPECT_FALSE(host_has_catalog_parts());
    expect_right_answers();
}

TEST_F(OtherParts, TablesAboutAnotherNameAreLeftAlone) {
    std::vector<std::string> names = host_parts();
    names[names.size() / 2] += "X";
    set_part_digests(m_wrong.about(names.size(), names));
    EXPECT_FALSE(host_has_catalog_parts());
    expect_right_answers();
}

TEST_F(OtherParts, TablesAboutAnotherOrderAreLeftAlone) {
    std::vector<std::string> names = host_parts();
    std::swap(names.front(), names.back());
    set_part_digests(m_wrong.about(names.size(), names));
    EXPECT_FALSE(host_has_catalog_parts());
    expect_right_answers();
}

TEST_F(OtherParts, TablesAboutTheHostsPartsAreBelieved) {
    set_part_digests(m_wrong.about(host_parts().size(), host_parts()));
    EXPECT_TRUE(host_has_catalog_parts());
    const std::string& last = host_parts().back();
    EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(last)), host_parts()[1]);
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(last), host_parts()[1]);
}

TEST_F(OtherParts, OfEqualHashesTheFirstPartCounts) {
    const std::vector<HASHED_PART> names{hashed_part(7, 3), hashed_part(7, 5), hashed_part(9, 1)};
    PART_DIGESTS tables = m_wrong.about(host_parts().size(), host_parts());
    const std::uint16_t higher[]{0, 0, 0};
    for (const std::uint16_t* further_bits : {static_cast<const std::uint16_t*>(nullptr), higher}) {
        tables.names = {names.data(), further_bits, 3};
        set_part_digests(tables);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(7), host_parts()[2]);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(9), host_parts()[0]);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(8), "");
    }
}

TEST_F(OtherParts, AHashAloneDenotesNoPart) {
    const std::string name = host_parts().front() + "?";
    const NAME_DIGEST digest = digest_of(name);
    const HASHED_PART entry = hashed_part(digest.hash, 4);
    const std::uint64_t checks[]{digest.check, digest.check ^ 1};
    PART_DIGESTS tables = m_wrong.about(host_parts().size(), host_parts());
    tables.names = {&entry, nullptr, 1};  // the name of part 4 is another one
    tables.denoting = tables.names;
    const REPORTS reports;
    for (const std::uint64_t& check : checks) {
        tables.checks = &check;
        set_part_digests(tables);
        EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(name), check == digest.check ? host_parts()[3] : "");
    }
    EXPECT_EQ(reports.all().size(), 1U);
}

}  // namespace
