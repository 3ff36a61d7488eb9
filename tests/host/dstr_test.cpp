#include "dstr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <limits>
#include <set>
#include <string>

#include "host/shipped_catalog.h"
#include "name_list_digest.h"

namespace {

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

DEV_FAMILY_ENUM family(int number) {
    return static_cast<DEV_FAMILY_ENUM>(number);
}

TEST(DeviceStrings, KnowTheFamiliesThatProgramsName) {
    const std::map<DEV_FAMILY_ENUM, std::string> named{
        {DEV_FAMILY_KESTREL, "KESTREL"}, {DEV_FAMILY_OSPREY, "OSPREY"},  {DEV_FAMILY_HERON, "HERON"},
        {DEV_FAMILY_MERLIN, "MERLIN"},   {DEV_FAMILY_PETREL, "PETREL"},  {DEV_FAMILY_PLOVER, "PLOVER"},
        {DEV_FAMILY_SHRIKE, "SHRIKE"},   {DEV_FAMILY_GENERIC, "GENERIC"}};
    for (const auto& [number, name] : named) {
        EXPECT_EQ(upper(dstr_get_user_string(number)), name);
        EXPECT_EQ(dstr_get_dev_family_enum_by_string(name.c_str()), number);
        EXPECT_TRUE(dstr_is_valid_dev_family_enum(number));
    }
    EXPECT_EQ(dstr_get_user_string(DEV_FAMILY_KESTREL), "Kestrel");
    EXPECT_EQ(dstr_get_user_string(DEV_FAMILY_GENERIC), "Generic");
}

TEST(DeviceStrings, NameEveryFamilyDifferently) {
    std::set<std::string> names;
    for (int number = 1; number < DEV_FAMILY_MAX; ++number) {
        const std::string name = dstr_get_user_string(family(number));
        EXPECT_TRUE(names.insert(upper(name)).second) << name;
        EXPECT_EQ(dstr_get_dev_family_enum_by_string(lower(name).c_str()), number);
        EXPECT_TRUE(dstr_is_valid_dev_family_enum(family(number)));
        if (number != DEV_FAMILY_GENERIC) {
            EXPECT_EQ(name, catalog().families.at(number));
        }
    }
    EXPECT_EQ(names.size(), 72U);
}

TEST(DeviceStrings, NameEveryDeviceDifferently) {
    ASSERT_EQ(catalog().devices.size(), 989U);
    for (const PLAIN_DEVICE& expected : catalog().devices) {
        EXPECT_EQ(dstr_get_user_string(device(expected.number)), expected.name);
        EXPECT_EQ(dstr_get_dev_device_enum_by_string(expected.name.c_str()), expected.number);
        EXPECT_EQ(dstr_get_dev_device_enum_by_string(lower(expected.name).c_str()), expected.number);
        EXPECT_TRUE(dstr_is_valid_dev_device_enum(device(expected.number)));
    }
    EXPECT_EQ(dstr_get_user_string(DEV_DEVICE_GENERIC), "Generic");
    EXPECT_EQ(dstr_get_dev_device_enum_by_string("GENERIC"), DEV_DEVICE_GENERIC);
    EXPECT_TRUE(dstr_is_valid_dev_device_enum(DEV_DEVICE_GENERIC));
}

TEST(DeviceStrings, NameEveryPartDifferently) {
    std::set<int> numbers;
    for (const PLAIN_PART& part : catalog().parts) {
        ASSERT_EQ(dstr_get_dev_part_enum_by_string(part.name.c_str()), part.number) << part.name;
        if (part.number != DEV_PART_INVALID) {
            ASSERT_EQ(dstr_get_user_string(part.number), part.name);
            ASSERT_EQ(dstr_get_dev_part_enum_by_string(upper(part.name).c_str()), part.number);
            ASSERT_EQ(dstr_get_dev_part_enum_by_string(lower(part.name).c_str()), part.number);
            ASSERT_TRUE(numbers.insert(part.number).second) << part.name;
        }
    }
    EXPECT_EQ(*numbers.begin(), 1);
    EXPECT_EQ(*numbers.rbegin(), static_cast<int>(numbers.size())) << "a number between the parts stands for none";
}

TEST(DeviceStrings, KnowWhetherTheNamesOfAllPartsAreThoseOfAList) {
    const auto are_part_names = [](const NAME_LIST_DIGEST& digest) {
        return dstr_are_part_names(dstr_get_user_string, digest.first, digest.second);
    };
    NAME_LIST_DIGEST all;
    NAME_LIST_DIGEST but_the_first;
    NAME_LIST_DIGEST one_more;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const std::string name = dstr_get_user_string(part);
        all.add(upper(name));
        one_more.add(name);
        if (part > DEV_PART_INVALID + 1) {
            but_the_first.add(name);
        }
    }
    one_more.add(dstr_get_user_string(DEV_PART_GENERIC));
    EXPECT_TRUE(are_part_names(all));
    EXPECT_FALSE(are_part_names(but_the_first));
    EXPECT_FALSE(are_part_names(one_more));
    EXPECT_FALSE(are_part_names({all.first, all.second + 1}));
    EXPECT_FALSE(are_part_names({all.first + 1, all.second}));
}

TEST(DeviceStrings, BoundThePartNumbers) {
    EXPECT_EQ(DEV_PART_INVALID, 0);
    EXPECT_EQ(DEV_PART_MAX, DEV_PART_GENERIC + 1);
    EXPECT_LT(DEV_PART_MAX, 16384);
    EXPECT_GT(DEV_PART_MAX, 15500);
    EXPECT_EQ(dstr_get_user_string(DEV_PART_GENERIC), "Generic");
    EXPECT_EQ(dstr_get_dev_part_enum_by_string("generic"), DEV_PART_GENERIC);
    EXPECT_NE(dstr_get_user_string(DEV_PART_GENERIC - 1), "");
}

TEST(DeviceStrings, AnswerNothingForNumbersThatAreNone) {
    for (const int number : {0, -1, 73, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(dstr_get_user_string(family(number)), "");
        EXPECT_FALSE(dstr_is_valid_dev_family_enum(family(number)));
    }
    for (const int number : {0, -1, 991, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(dstr_get_user_string(device(number)), "");
        EXPECT_FALSE(dstr_is_valid_dev_device_enum(device(number)));
    }
    for (const int number : {0, -1, DEV_PART_MAX, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(dstr_get_user_string(number), "");
    }
}

TEST(DeviceStrings, DoNotKnowOtherNames) {
    const std::string part = dstr_get_user_string(1);
    for (const std::string& name : {std::string(), std::string("NO_SUCH_NAME"), part.substr(0, part.size() - 1),
                                    part + "X", " " + part, part + " ", std::string(1 << 20, 'A')}) {
        EXPECT_EQ(dstr_get_dev_part_enum_by_string(name.c_str()), DEV_PART_INVALID);
        EXPECT_EQ(dstr_get_dev_device_enum_by_string(name.c_str()), DEV_DEVICE_INVALID);
        EXPECT_EQ(dstr_get_dev_family_enum_by_string(name.c_str()), DEV_FAMILY_INVALID);
    }
    EXPECT_EQ(dstr_get_dev_part_enum_by_string(nullptr), DEV_PART_INVALID);
    EXPECT_EQ(dstr_get_dev_device_enum_by_string(nullptr), DEV_DEVICE_INVALID);
    EXPECT_EQ(dstr_get_dev_family_enum_by_string(nullptr), DEV_FAMILY_INVALID);
}

TEST(DeviceStrings, FindPartsByFurtherNames) {
    ASSERT_FALSE(catalog().aliases.empty());
    for (const auto& [alias, name] : catalog().aliases) {
        const int part = dstr_get_dev_part_enum_by_string(lower(alias).c_str());
        EXPECT_EQ(dstr_get_user_string(part), name) << alias;
    }
}

}  // namespace
