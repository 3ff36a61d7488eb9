#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "dev.h"
#include "gen.h"
#include "host/shipped_catalog.h"

namespace {

/// The numbers of the parts for which a condition holds, ascending.
std::vector<int> parts_where(const std::function<bool(const PLAIN_PART&)>& condition) {
    std::vector<int> numbers;
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.number != 0 && condition(part)) {
            numbers.push_back(part.number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

struct FILTERS {
    std::string family = "ANY";
    std::string device = "ANY";
    std::string package = "ANY";
    std::string pin_count = "ANY";
    std::string speed_grade = "ANY";
    bool orderable_only = false;
    bool production_only = false;
    bool include_hidden = true;
    std::string temperature_grade = "any";
};

std::vector<int> filtered(const FILTERS& f) {
    std::vector<int> parts{-1, -2};  // whatever was there goes
    const bool found =
        DEV_PART_MANAGER().filter_part_list(&parts, f.family, f.device, f.package, f.pin_count, f.speed_grade,
                                            f.orderable_only, f.production_only, f.include_hidden, f.temperature_grade);
    EXPECT_EQ(found, !parts.empty());
    return parts;
}

bool same(const std::string& left, const std::string& right) {
    return gen_stricmp(left, right) == 0;
}

TEST(PartManager, KnowsTheFamilyOfEveryDevice) {
    const DEV_PART_MANAGER manager;
    for (const PLAIN_DEVICE& expected : catalog().devices) {
        EXPECT_EQ(dstr_get_user_string(manager.get_family_of(device(expected.number))), expected.family);
    }
    EXPECT_EQ(manager.get_family_of(DEV_DEVICE_GENERIC), DEV_FAMILY_GENERIC);
}

TEST(PartManager, KnowsTheDeviceOfEveryPart) {
    const DEV_PART_MANAGER manager;
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.number != 0) {
            ASSERT_EQ(dstr_get_user_string(manager.get_device_of(part.number)), part.device) << part.name;
        }
    }
    EXPECT_EQ(manager.get_device_of(DEV_PART_GENERIC), DEV_DEVICE_GENERIC);
}

TEST(PartManager, AcceptsInvalidIdentifiers) {
    const DEV_PART_MANAGER manager;
    for (const int number : {0, -1, 991, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(manager.get_family_of(device(number)), DEV_FAMILY_INVALID);
    }
    for (const int number : {0, -1, DEV_PART_MAX, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(manager.get_device_of(number), DEV_DEVICE_INVALID);
    }
}

TEST(PartManager, ListsAllPartsWithoutFilters) {
    EXPECT_EQ(filtered({}), parts_where([](const PLAIN_PART&) { return true; }));
}

TEST(PartManager, FiltersByEveryText) {
    for (const std::string text : {"Kestrel", "KESTREL", "kestrel"}) {
        EXPECT_EQ(filtered({.family = text}), parts_where([](const PLAIN_PART& p) { return p.family == "Kestrel"; }));
    }
    const std::string name = catalog().devices[70].name;
    EXPECT_EQ(filtered({.device = name}), parts_where([&](const PLAIN_PART& p) { return p.device == name; }));
    EXPECT_EQ(filtered({.package = "fbga"}), parts_where([](const PLAIN_PART& p) { return p.package == "FBGA"; }));
    EXPECT_EQ(filtered({.pin_count = "144"}), parts_where([](const PLAIN_PART& p) { return p.pins == "144"; }));
    EXPECT_EQ(filtered({.speed_grade = "6"}), parts_where([](const PLAIN_PART& p) { return p.speed == "6"; }));
    EXPECT_EQ(filtered({.temperature_grade = "Industrial"}),
              parts_where([](const PLAIN_PART& p) { return p.temperature == "INDUSTRIAL"; }));
    for (const std::string any : {"ANY", "any", "Any"}) {
        EXPECT_EQ(filtered({any, any, any, any, any, false, false, true, any}).size(), filtered({}).size());
    }
}

TEST(PartManager, CombinesFilters) {
    const FILTERS filters{"Heron", "ANY", "FBGA", "ANY", "7", true, true, false, "COMMERCIAL"};
    const std::vector<int> expected = parts_where([](const PLAIN_PART& p) {
        return p.family == "Heron" && p.package == "FBGA" && p.speed == "7" && p.temperature == "COMMERCIAL" &&
               p.ordering_index >= 0 && p.status == "production" && !p.hidden;
    });
    EXPECT_EQ(filtered(filters), expected);
}

TEST(PartManager, FindsNothingForTextsThatAreNone) {
    for (const std::string text : {"", "NO_SUCH", "GENERIC", "ANY "}) {
        EXPECT_TRUE(filtered({.family = text}).empty()) << text;
        EXPECT_TRUE(filtered({.device = text}).empty()) << text;
        EXPECT_TRUE(filtered({.package = text}).empty()) << text;
        EXPECT_TRUE(filtered({.pin_count = text}).empty()) << text;
        EXPECT_TRUE(filtered({.speed_grade = text}).empty()) << text;
        EXPECT_TRUE(filtered({.temperature_grade = text}).empty()) << text;
    }
}

TEST(PartManager, FiltersByEveryCombinationOfFlags) {
    for (int flags = 0; flags < 8; ++flags) {
        const FILTERS filters{.orderable_only = (flags & 1) != 0,
                              .production_only = (flags & 2) != 0,
                              .include_hidden = (flags & 4) != 0};
        const std::vector<int> expected = parts_where([&](const PLAIN_PART& part) {
            return (!filters.orderable_only || part.ordering_index >= 0) &&
                   (!filters.production_only || part.status == "production") &&
                   (filters.include_hidden || !part.hidden);
        });
        EXPECT_EQ(filtered(filters), expected) << flags;
        EXPECT_FALSE(expected.empty()) << flags;
    }
}

/// Whoever wants a part of a device asks with ever weaker flags; in the catalog every step is the first to find one for
/// some device, and none finds one for some.
TEST(PartManager, NeedsEveryPassForSomeDevice) {
    constexpr bool FLAGS[][2] = {{true, true}, {true, false}, {false, true}, {false, false}};
    std::map<int, int> devices_by_pass;
    for (const PLAIN_DEVICE& expected : catalog().devices) {
        int pass = 0;
        while (pass < 4 && filtered({.device = expected.name,
                                     .orderable_only = FLAGS[pass][0],
                                     .production_only = FLAGS[pass][1],
                                     .include_hidden = false})
                               .empty()) {
            ++pass;
        }
        ++devices_by_pass[pass];
    }
    EXPECT_EQ(devices_by_pass.size(), 5U);
    EXPECT_TRUE(std::any_of(catalog().parts.begin(), catalog().parts.end(),
                            [](const PLAIN_PART& part) { return same(part.status, "sample"); }));
}

}  // namespace
