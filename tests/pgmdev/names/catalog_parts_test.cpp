#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <thread>
#include <unordered_map>

#include "dev.h"
#include "names/catalog_parts.h"
#include "names/part_indexes.h"
#include "pgmdev/names/catalog_reference.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/settings.h"
#include "support/sha256.h"
#include "support/start_line.h"

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

void expect_way_back(const std::string& part) {
    const QWORD hash = hash_of(part);
    ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash), part);
    ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash | QWORD{0xABCD} << 48), part);
    ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash ^ QWORD{1} << 47), "");
    ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash ^ 1), "");
}

TEST(OrderingCodes, AHashLeadsBackToItsPart) {
    for (std::size_t i = 0; i < cat::parts().size(); i += 499) {
        free_part_indexes();
        ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(cat::parts()[i])), cat::parts()[i]);
        free_part_indexes();
        ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash_of(cat::parts()[i]) ^ 1), "");
    }
    const NUMBER_INDEX& for_other_hosts = *parts_by_hash(INDEX_WANTED::NOW);
    for (std::size_t i = 0; i < cat::parts().size(); ++i) {
        ASSERT_NO_FATAL_FAILURE(expect_way_back(cat::parts()[i]));
        ASSERT_EQ(*for_other_hosts.find(hash_of(cat::parts()[i])), i + 1);
    }
    EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(NO_HASH), "");
}

TEST(OrderingCodes, TheFirstQuestionsGiveTheSameIndexAsManyDo) {
    for (std::size_t i = 0; i < cat::parts().size(); i += 29) {
        const std::string& part = cat::parts()[i];
        free_part_indexes();
        const DWORD walked = PGMDEV_MGR::get_opn_enum(part);
        const DWORD* found = ordering_codes_by_part(INDEX_WANTED::NOW)
                                 ->find(static_cast<DWORD>(dstr_get_dev_part_enum_by_string(part.c_str())));
        ASSERT_EQ(walked, found != nullptr ? *found : INVALID_DWORD) << part;
    }
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
    std::set<std::string> names{"", "NO_SUCH_PART", " "};
    for (const auto& [key, entries] : cat::tables()[cat::PGM_PART_PCF]) {
        names.insert(key);
    }
    const std::string padded = " " + cat::tables()[cat::PGM_PART_PCF].begin()->first;  // is not trimmed
    names.insert(padded);
    const PGMDEV_PART_INDEX index;
    const REPORTS reports;
    std::size_t found = 0;
    std::size_t asked = 0;
    for (const std::string& name : names) {
        const std::string expected = first_part_of_pcf(all, name);
        found += expected.empty() ? 0U : 1U;
        ASSERT_EQ(PGMDEV_MGR::get_part_name_from_pcf(lower(name)), expected) << name;
        ASSERT_EQ(index.get_part_name_from_pcf(lower(name)), expected) << name;
        ASSERT_TRUE(name.empty() || catalog_part_with_programmer_file_name(name) == expected) << name;
        if (asked++ % 11 == 0) {
            free_part_indexes();
            ASSERT_EQ(PGMDEV_MGR::get_part_name_from_pcf(lower(name)), expected) << name;
        }
    }
    EXPECT_GT(found, 0U);
    EXPECT_TRUE(reports.all().empty());
    EXPECT_EQ(PGMDEV_MGR::get_part_name_from_pcf(padded), "");
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

/// What such a walk finds for each of the candidates' names, kept so that a test need not walk for every name.
std::unordered_map<std::string, std::string> first_denoted_by_name(const std::vector<CANDIDATE>& candidates) {
    std::unordered_map<std::string, std::string> first;
    for (const CANDIDATE& each : candidates) {
        first.try_emplace(each.name, each.name);
        for (const std::string& name : {each.package_name, each.pgm_name}) {
            if (each.name.size() >= 5 && name.size() >= 5 && each.name.substr(0, 5) == name.substr(0, 5)) {
                first.try_emplace(name, each.name);
            }
        }
    }
    return first;
}

/// Names that nobody chose: those of the catalog with some characters changed, left out, or added.
std::vector<std::string> random_names() {
    constexpr std::string_view CHARACTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_- ";
    auto random = repeatable_random(11);
    const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
    std::vector<std::string> names;
    for (int i = 0; i < 2000; ++i) {
        std::string name = cat::all_names()[below(cat::all_names().size())];
        for (std::size_t changes = 1 + below(3); changes > 0 && !name.empty(); --changes) {
            name.replace(below(name.size()), below(2), 1, CHARACTERS[below(CHARACTERS.size())]);
            name.resize(name.size() - below(2));
        }
        names.push_back(std::move(name));
    }
    return names;
}

/// Asks for a name; the report says whether there was an answer.
void expect_full_name(const std::string& name, const std::string& expected) {
    const REPORTS reports;
    ASSERT_EQ(PGMDEV_MGR::get_possible_full_name(lower(name)), expected) << name;
    ASSERT_EQ(reports.all().size(), expected.empty() ? 1U : 0U) << name;
}

TEST(PartNames, OfEveryPossibleName) {
    std::vector<CANDIDATE> candidates;
    for (const std::string& part : cat::parts()) {
        candidates.push_back({part, cat::package_name(part, false), cat::pgm_name(part, false, false)});
    }
    std::vector<std::string> names = random_names();
    names.insert(names.end(), cat::all_names().begin(), cat::all_names().end());
    for (std::size_t i = 0; i < cat::all_names().size(); i += 101) {
        names.push_back(cat::all_names()[i] + "0");
        names.push_back(cat::all_names()[i].substr(0, 4));
        names.push_back(" " + cat::all_names()[i]);
    }
    const auto first = first_denoted_by_name(candidates);
    const PGMDEV_PART_INDEX index;
    std::size_t found = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto place = first.find(names[i]);
        const std::string expected = place != first.end() ? place->second : "";
        found += expected.empty() ? 0U : 1U;
        ASSERT_NO_FATAL_FAILURE(expect_full_name(names[i], expected));
        ASSERT_EQ(index.get_possible_full_name(lower(names[i])), expected) << names[i];
        ASSERT_EQ(parts_by_possible_name(INDEX_WANTED::NOW)->find(names[i]).value_or(""), expected)
            << "asked of other hosts: " << names[i];
        if (i % 311 == 0) {
            ASSERT_EQ(first_denoted(candidates, names[i]), expected) << names[i];
            free_part_indexes();
            ASSERT_NO_FATAL_FAILURE(expect_full_name(names[i], expected));
        }
    }
    EXPECT_GT(found, 15000U);
}

std::string walked_full_name(const std::string& name) {
    free_part_indexes();
    return PGMDEV_MGR::get_possible_full_name(name);
}

TEST(PartNames, TheWalkIsTracedThoughAnIndexKnowsTheAnswer) {
    const std::string part = cat::parts()[cat::parts().size() / 2];
    const std::string package_name = cat::package_name(part, false);
    ASSERT_NE(package_name, part);
    std::string expected;
    std::string walked;
    {
        const SETTING on("PGMDEV_ENABLE_GRAMMAR_DEBUG", "on");
        testing::internal::CaptureStdout();
        expected = walked_full_name(package_name);
        walked = testing::internal::GetCapturedStdout();
    }
    EXPECT_NE(walked.find("    Input  : " + expected + "\n"), std::string::npos);
    {
        testing::internal::CaptureStdout();
        const PGMDEV_PART_INDEX index;
        EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(package_name), expected);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    }
    const SETTING on("PGMDEV_ENABLE_GRAMMAR_DEBUG", "on");
    testing::internal::CaptureStdout();
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(package_name), expected);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), walked);
}

TEST(PartNames, ManyThreadsMayAskFirst) {
    constexpr int THREADS = 8;
    const std::string part = cat::parts().front();
    const QWORD hash = hash_of(part);
    for (int round = 0; round < 5; ++round) {
        free_part_indexes();
        START_LINE line(THREADS);
        std::vector<int> right(THREADS);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < THREADS; ++i) {
            threads.emplace_back([&, i] {
                line.arrive_and_wait();
                for (int question = 0; question < 10; ++question) {
                    right[i] += PGMDEV_MGR::get_possible_full_name(part) == part ? 1 : 0;
                    right[i] += PGMDEV_MGR::get_opn_from_hash(hash) == part ? 1 : 0;
                    right[i] += PGMDEV_MGR::get_part_name_from_pcf(" ").empty() ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(right, std::vector<int>(THREADS, 30));
    }
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
