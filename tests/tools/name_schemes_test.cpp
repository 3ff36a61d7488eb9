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
        return part_entries(all);
    }();
    return PARTS;
}

constexpr std::array SPELLINGS{&PART_ENTRY::name,           &PART_ENTRY::package_name,   &PART_ENTRY::pgm_name,
                               &PART_ENTRY::device,         &PART_ENTRY::pgm_part_pcf,   &PART_ENTRY::dev_part_pcf,
                               &PART_ENTRY::pgm_family_pcf, &PART_ENTRY::dev_family_pcf, &PART_ENTRY::family};

/// The numbers of the parts with each spelling.
const std::map<std::string, std::set<int>>& parts_by_name() {
    static const std::map<std::string, std::set<int>> PARTS = [] {
        std::map<std::string, std::set<int>> parts;
        for (const PART_ENTRY& part : all_parts()) {
            for (const auto spelling : SPELLINGS) {
                parts[part.*spelling].insert(part.number);
            }
        }
        parts.erase("");
        return parts;
    }();
    return PARTS;
}

std::set<int> numbers(const std::vector<PART_ENTRY>& parts) {
    std::set<int> all;
    for (const PART_ENTRY& part : parts) {
        all.insert(part.number);
    }
    return all;
}

TEST(NameSchemes, ANameStandsForThePartsThatHaveItAsASpelling) {
    NAME_SCHEMES schemes;
    std::size_t asked = 0;
    for (const auto& [name, parts] : parts_by_name()) {
        if (asked++ % 17 == 0 || parts.size() > 30) {
            const std::vector<PART_ENTRY> found = schemes.parts_named(name);
            ASSERT_EQ(numbers(found), parts) << name;
            ASSERT_TRUE(std::is_sorted(found.begin(), found.end(), [](const PART_ENTRY& left, const PART_ENTRY& right) {
                return left.number < right.number;
            })) << name;
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
        const auto part = std::find_if(meaning.parts.begin(), meaning.parts.end(), [&](const PART_ENTRY& candidate) {
            return candidate.number == expected.number;
        });
        ASSERT_NE(part, meaning.parts.end());
        for (const auto spelling : SPELLINGS) {
            EXPECT_EQ(*part.*spelling, expected.*spelling) << expected.name;
        }
        EXPECT_EQ(part->package, expected.package) << expected.name;
        EXPECT_EQ(part->pins, expected.pins) << expected.name;
        EXPECT_EQ(part->speed, expected.speed) << expected.name;
        EXPECT_EQ(part->temperature, expected.temperature) << expected.name;
        EXPECT_EQ(part->orderable, expected.orderable) << expected.name;
        EXPECT_EQ(part->production, expected.production) << expected.name;
        EXPECT_EQ(part->hidden, expected.hidden) << expected.name;
        EXPECT_EQ(part->device_number, expected.device_number) << expected.name;
        EXPECT_EQ(part->family_number, expected.family_number) << expected.name;
    }
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
        const std::string& name = names[i];
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
        {{true, true, true, true},
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
