#include <gtest/gtest.h>

#include <set>

#include "dev.h"
#include "pgmdev/names/catalog_reference.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "support/reports.h"
#include "support/sha256.h"

namespace {

namespace cat = catalog_reference;

constexpr QWORD NO_HASH = 0xFFFFFFFFFFFFFFFF;

QWORD hash_of(const std::string& name) {
    const auto digest = independent_sha256(name);
    QWORD hash = 0;
    for (std::size_t i = 6; i-- > 0;) {
        hash = hash << 8 | digest[i];
    }
    return hash;
}

std::string lower(std::string text) {
    stl_tolower(text);
    return text;
}

TEST(OrderingCodes, EveryIndexHasItsPart) {
    const auto& list = cat::opn_list();
    ASSERT_GT(list.size(), 18000U);
    for (DWORD index = 0; index < list.size(); ++index) {
        ASSERT_EQ(PGMDEV_MGR::get_opn(index), list[index] == 0 ? "" : cat::parts().at(list[index] - 1));
    }
    const auto size = static_cast<DWORD>(list.size());
    EXPECT_EQ(PGMDEV_MGR::get_opn(size), "");
    EXPECT_EQ(PGMDEV_MGR::get_opn(INVALID_DWORD), "");
}

TEST(OrderingCodes, EveryPartHasItsFirstIndex) {
    const auto& list = cat::opn_list();
    std::size_t found = 0;
    for (std::size_t part = 1; part <= cat::parts().size(); ++part) {
        const auto place = std::find(list.begin(), list.end(), part);
        const DWORD expected = place != list.end() ? static_cast<DWORD>(place - list.begin()) : INVALID_DWORD;
        found += place != list.end() ? 1U : 0U;
        ASSERT_EQ(PGMDEV_MGR::get_opn_enum(lower(cat::parts()[part - 1])), expected);
    }
    EXPECT_GT(found, 2500U);
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum(""), INVALID_DWORD);
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum(" " + cat::parts()[0]), INVALID_DWORD);
}

TEST(OrderingCodes, EveryPartHasItsHash) {
    for (const std::string& part : cat::parts()) {
        const QWORD hash = PGMDEV_MGR::get_opn_hash(part);
        ASSERT_EQ(hash, hash_of(part));
        ASSERT_EQ(PGMDEV_MGR::get_opn_hash(lower(part)), hash);
        ASSERT_LE(hash, 0xFFFFFFFFFFFFU);
    }
    EXPECT_EQ(PGMDEV_MGR::get_opn_hash("no such part"), NO_HASH);
    EXPECT_EQ(PGMDEV_MGR::get_opn_hash(""), NO_HASH);
    EXPECT_EQ(PGMDEV_MGR::get_opn_hash(dstr_get_user_string(DEV_PART_GENERIC)), NO_HASH);
}

TEST(OrderingCodes, AHashLeadsBackToItsPart) {
    for (std::size_t i = 0; i < cat::parts().size(); i += 499) {
        const QWORD hash = hash_of(cat::parts()[i]);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash), cat::parts()[i]);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash | QWORD{0xABCD} << 48), cat::parts()[i]);
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash ^ QWORD{1} << 47), "");
        EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash ^ 1), "");
    }
    EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(cat::parts().back())), cat::parts().back());
    EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(NO_HASH), "");
}

/// The parts that each of the four passes sees.
std::array<std::vector<int>, 4> passes() {
    const DEV_PART_MANAGER manager;
    std::array<std::vector<int>, 4> parts;
    const bool flags[4][2]{{true, true}, {true, false}, {false, true}, {false, false}};
    for (std::size_t pass = 0; pass < 4; ++pass) {
        manager.filter_part_list(&parts[pass], "ANY", "ANY", "ANY", "ANY", "ANY", flags[pass][0], flags[pass][1], false,
                                 "any");
    }
    return parts;
}

TEST(PartNames, OfEveryDevice) {
    const DEV_PART_MANAGER manager;
    const auto all = passes();
    std::array<int, 5> found_in{};  // by pass; the last: in none
    for (int number = DEV_DEVICE_INVALID + 1; number < DEV_DEVICE_GENERIC; ++number) {
        const auto device = static_cast<DEV_DEVICE_ENUM>(number);
        std::string expected;
        std::size_t pass = 0;
        for (; pass < 4 && expected.empty(); ++pass) {
            const auto part = std::find_if(all[pass].begin(), all[pass].end(),
                                           [&](int each) { return manager.get_device_of(each) == device; });
            if (part != all[pass].end()) {
                expected = dstr_get_user_string(*part);
                break;
            }
        }
        ++found_in[pass];
        ASSERT_EQ(PGMDEV_MGR::get_part_name_from_dev(lower(dstr_get_user_string(device))), expected) << number;
    }
    for (std::size_t pass = 0; pass < 4; ++pass) {
        EXPECT_GT(found_in[pass], 0) << "no device has its first part in pass " << pass;
    }
}

TEST(PartNames, AnUnknownDeviceIsReportedAndHasNone) {
    for (const std::string name : {"NO_SUCH_DEVICE", "", " "}) {
        REPORTS reports;
        EXPECT_EQ(PGMDEV_MGR::get_part_name_from_dev(name), "");
        ASSERT_EQ(reports.all().size(), 1U);
        EXPECT_EQ(reports.all()[0].condition, "Device is not valid in DEV database");
        EXPECT_EQ(reports.all()[0].module, "PGMDEV");
        EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_mgr");
    }
}

/// By passes and parts in order, as PGMDEV_MGR is to do it.
std::string first_part_of_pcf(const std::array<std::vector<int>, 4>& all, const std::string& pcf) {
    for (const auto& pass : all) {
        for (const int part : pass) {
            const std::string& name = cat::parts()[static_cast<std::size_t>(part) - 1];
            if (cat::key_of(cat::PGM_PART_PCF, name) == pcf) {
                return name;
            }
        }
    }
    return {};
}

TEST(PartNames, OfEveryProgrammerFilePart) {
    const auto all = passes();
    const PGMDEV_PART_INDEX index;
    std::set<std::string> names{"", "NO_SUCH_PART", " "};
    for (const auto& [key, entries] : cat::tables()[cat::PGM_PART_PCF]) {
        names.insert(key);
    }
    std::size_t found = 0;
    std::size_t asked = 0;
    for (const std::string& name : names) {
        const std::string expected = first_part_of_pcf(all, name);
        found += expected.empty() ? 0U : 1U;
        ASSERT_EQ(index.get_part_name_from_pcf(lower(name)), expected) << name;
        if (asked++ % 11 == 0) {
            const REPORTS reports;
            ASSERT_EQ(PGMDEV_MGR::get_part_name_from_pcf(lower(name)), expected) << name;
            ASSERT_TRUE(reports.all().empty());
        }
    }
    EXPECT_GT(found, 0U);
    const auto& some = *cat::tables()[cat::PGM_PART_PCF].begin();
    EXPECT_EQ(PGMDEV_MGR::get_part_name_from_pcf(" " + some.first), "");  // not trimmed
}

/// A part and what it may be asked for by.
struct CANDIDATE {
    std::string name;
    std::string package_name;
    std::string pgm_name;
};

std::string first_denoted(const std::vector<CANDIDATE>& candidates, const std::string& name) {
    for (const CANDIDATE& each : candidates) {
        if (each.name == name) {
            return each.name;
        }
        if (each.name.size() < 5 || name.size() < 5 || each.name.substr(0, 5) != name.substr(0, 5)) {
            continue;
        }
        if (name == each.package_name || name == each.pgm_name) {
            return each.name;
        }
    }
    return {};
}

TEST(PartNames, OfEveryPossibleName) {
    std::vector<CANDIDATE> candidates;
    for (const std::string& part : cat::parts()) {
        candidates.push_back({part, cat::package_name(part, false), cat::pgm_name(part, false, false)});
    }
    std::vector<std::string> names = cat::all_names();
    for (std::size_t i = 0; i < cat::all_names().size(); i += 101) {
        names.push_back(cat::all_names()[i] + "0");
        names.push_back(cat::all_names()[i].substr(0, 4));
        names.push_back(" " + cat::all_names()[i]);
    }
    const PGMDEV_PART_INDEX index;
    std::size_t found = 0;
    for (std::size_t i = 0; i < names.size(); i += 5) {
        const std::string expected = first_denoted(candidates, names[i]);
        found += expected.empty() ? 0U : 1U;
        ASSERT_EQ(index.get_possible_full_name(lower(names[i])), expected) << names[i];
        if (i % 115 == 0) {
            const REPORTS reports;
            ASSERT_EQ(PGMDEV_MGR::get_possible_full_name(lower(names[i])), expected) << names[i];
            ASSERT_EQ(reports.all().size(), expected.empty() ? 1U : 0U);
        }
    }
    EXPECT_GT(found, 3000U);
}

TEST(PartNames, ANameThatDenotesNoneIsReportedInUpperCase) {
    const REPORTS reports;
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("no_such%s"), "");
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, "Unable to retrieve full device name from database for NO_SUCH%S");
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_mgr");
    EXPECT_EQ(PGMDEV_PART_INDEX().get_possible_full_name("no_such%s"), "");
    EXPECT_EQ(reports.all().size(), 1U);
}

}  // namespace
