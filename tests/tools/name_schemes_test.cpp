#include "names/name_schemes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "terminal/did_you_mean.h"

// What a name stands for, against a walk over all parts with all their spellings.

namespace {

const std::vector<PART_ENTRY>& all_parts() {
    static const std::vector<PART_ENTRY> PARTS = [] {
        PART_FILTER all;
        all.hidden = true;
        return part_entries(part_numbers(all));
    }();
    return PARTS;
}

/// In the order of SCHEME.
constexpr std::array<std::string PART_ENTRY::*, 9> SPELLINGS{
    &PART_ENTRY::name,           &PART_ENTRY::package_name,   &PART_ENTRY::pgm_name,
    &PART_ENTRY::device,         &PART_ENTRY::pgm_part_pcf,   &PART_ENTRY::dev_part_pcf,
    &PART_ENTRY::pgm_family_pcf, &PART_ENTRY::dev_family_pcf, &PART_ENTRY::family};

/// The numbers of the parts with each spelling, and in which schemes it is one of theirs.
using PARTS = std::map<int, decltype(NAMED_PART::schemes)>;

const std::map<std::string, PARTS>& parts_by_name() {
    static const std::map<std::string, PARTS> ALL = [] {
        std::map<std::string, PARTS> parts;
        for (const PART_ENTRY& part : all_parts()) {
            for (std::size_t scheme = 0; scheme < SPELLINGS.size(); ++scheme) {
                parts[part.*SPELLINGS[scheme]][part.number].set(scheme);
            }
        }
        parts.erase("");
        return parts;
    }();
    return ALL;
}

TEST(NameSchemes, ANameStandsForThePartsThatHaveItAsASpelling) {
    NAME_SCHEMES schemes;
    std::size_t asked = 0;
    for (const auto& [name, parts] : parts_by_name()) {
        if (asked++ % 17 == 0 || parts.size() > 30) {
            const std::vector<NAMED_PART> found = schemes.parts_named(name);
            ASSERT_EQ(found.size(), parts.size()) << name;
            auto expected = parts.begin();
            for (const NAMED_PART& part : found) {
                ASSERT_EQ(part.number, expected->first) << name;
                ASSERT_EQ(part.schemes, expected->second) << name;
                ++expected;
            }
        }
    }
    EXPECT_GT(asked, 20000U);
    for (const std::string name : {"", "NO_SUCH_PART", " ", "GENERIC"}) {
        EXPECT_TRUE(schemes.parts_named(name).empty()) << name;
    }
}

TEST(NameSchemes, APartIsTheSameWhetherAskedForAloneOrInAList) {
    NAME_SCHEMES schemes;  // few questions look at a device, many at all parts
    for (std::size_t i = 0; i < all_parts().size(); i += 401) {
        const PART_ENTRY& expected = all_parts()[i];
        const NAME_MEANING meaning = schemes.meaning_of(expected.name);
        ASSERT_EQ(meaning.part, expected.number);
        ASSERT_EQ(std::count(meaning.parts.begin(), meaning.parts.end(), expected.number), 1);
        const PART_NAMES names = part_names_of(expected.number);
        EXPECT_EQ(names.name, expected.name);
        EXPECT_EQ(names.package_name, expected.package_name) << expected.name;
        EXPECT_EQ(names.pgm_name, expected.pgm_name) << expected.name;
        EXPECT_EQ(names.pgm_part_pcf, expected.pgm_part_pcf) << expected.name;
        EXPECT_EQ(names.pgm_family_pcf, expected.pgm_family_pcf) << expected.name;
        const PART_CHARACTERISTICS characteristics = schemes.entries().common_characteristics({expected.number});
        EXPECT_EQ(characteristics.package, expected.package) << expected.name;
        EXPECT_EQ(characteristics.pins, expected.pins) << expected.name;
        EXPECT_EQ(characteristics.speed, expected.speed) << expected.name;
        EXPECT_EQ(characteristics.temperature, expected.temperature) << expected.name;
        const PART_STATUS status = schemes.entries().status_of(expected.number);
        EXPECT_EQ(status.orderable, expected.orderable) << expected.name;
        EXPECT_EQ(status.production, expected.production) << expected.name;
        EXPECT_EQ(status.hidden, expected.hidden) << expected.name;
    }
}

/// What all of the parts have alike.
std::string common_text(const std::vector<const PART_ENTRY*>& parts, std::string PART_ENTRY::*member) {
    const auto differs = [&](const PART_ENTRY* part) { return part->*member != parts.front()->*member; };
    return std::any_of(parts.begin(), parts.end(), differs) ? "" : parts.front()->*member;
}

TEST(PartEntries, CharacteristicsOfPartsAreThoseThatAllHave) {
    std::map<int, const PART_ENTRY*> entries;
    for (const PART_ENTRY& part : all_parts()) {
        entries[part.number] = &part;
    }
    PART_ENTRIES many;
    std::set<std::string> speeds;
    std::size_t asked = 0;
    for (const auto& [name, parts] : parts_by_name()) {
        if (parts.size() > 1 && asked++ % 29 == 0) {
            std::vector<int> numbers;
            std::vector<const PART_ENTRY*> expected;
            for (const auto& [number, schemes] : parts) {
                numbers.push_back(number);
                expected.push_back(entries.at(number));
            }
            PART_ENTRIES few;
            for (PART_ENTRIES* each : {&few, &many}) {
                const PART_CHARACTERISTICS common = each->common_characteristics(numbers);
                ASSERT_EQ(common.package, common_text(expected, &PART_ENTRY::package)) << name;
                ASSERT_EQ(common.pins, common_text(expected, &PART_ENTRY::pins)) << name;
                ASSERT_EQ(common.speed, common_text(expected, &PART_ENTRY::speed)) << name;
                ASSERT_EQ(common.temperature, common_text(expected, &PART_ENTRY::temperature)) << name;
                speeds.insert(common.speed);
            }
        }
    }
    EXPECT_GT(speeds.size(), 2U);
}

TEST(NameSchemes, AllNamesAreThoseThatPartsHave) {
    const std::vector<std::string> all = NAME_SCHEMES().all_names();
    const std::set<std::string> names(all.begin(), all.end());
    EXPECT_EQ(names.size(), parts_by_name().size());
    for (const std::string& name : names) {
        ASSERT_TRUE(parts_by_name().contains(name)) << name;
    }
}

/// Some of the names, changed.
std::vector<std::string> misspelt(const std::vector<std::string>& names) {
    std::vector<std::string> changed;
    for (std::size_t i = 0; i < names.size(); i += 1 + names.size() / 12) {
        const std::string name = names[i].empty() ? "?" : names[i];  // a number may have no name
        for (const std::string& each : {name + "X", "X" + name, name.substr(1), name}) {
            changed.push_back(each);
        }
    }
    return changed;
}

TEST(NameSchemes, TheNearestAreTheNearestOfAllNames) {
    std::vector<std::string> names;
    for (const auto& [name, parts] : parts_by_name()) {
        names.push_back(name);
    }
    NAME_SCHEMES schemes;
    std::size_t found = 0;
    for (const std::string& name : misspelt(names)) {
        const std::vector<std::string> expected = nearest(name, names);
        EXPECT_EQ(schemes.nearest_to(name), expected) << name;
        found += expected.size();
    }
    EXPECT_GT(found, 50U);
}

TEST(NearestNames, AreTheNearestOfTheListsOfNames) {
    const std::vector<std::pair<NAME_KINDS, std::vector<const std::vector<std::string>*>>> cases{
        {{.part = true}, {&part_names()}},
        {{.device = true}, {&device_names()}},
        {{.programmer_part = true}, {&programmer_part_names()}},
        {{.part = true, .package_or_programming = true}, {&part_names(), &package_and_programming_names()}},
        {{.part = true, .package_or_programming = true, .programmer_part = true, .device = true},
         {&part_names(), &package_and_programming_names(), &programmer_part_names(), &device_names()}}};
    for (const auto& [kinds, lists] : cases) {
        std::vector<std::string> names;
        for (const auto* list : lists) {
            names.insert(names.end(), list->begin(), list->end());
        }
        std::size_t found = 0;
        for (const std::string& name : misspelt(names)) {
            const std::vector<std::string> expected = nearest(name, names);
            EXPECT_EQ(nearest_names(name, kinds), expected) << name;
            found += expected.size();
        }
        EXPECT_GT(found, 10U);
    }
}

}  // namespace
