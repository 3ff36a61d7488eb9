#include "support/exports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>

// The library exports classes named PGMDEV_ and nothing else, and what it exports changes only where the list of it does.

namespace {

using NAMES = std::set<std::string>;

const std::string LIST = TEST_EXPORT_LIST;
const std::string FOUND = TEST_EXPORTS_FOUND;

std::string with_short_strings(std::string name) {
    const std::string full = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >";
    for (std::size_t place = 0; (place = name.find(full, place)) != std::string::npos;) {
        name.replace(place, full.size(), "std::string");
    }
    return name;
}

NAMES listed() {
    std::ifstream list(LIST);
    NAMES names;
    for (std::string line; std::getline(list, line);) {
        names.insert(line);
    }
    return names;
}

/// What the library's own sources define. What headers define may be there besides, as the compiler sees fit.
NAMES exported() {
    NAMES names;
    for (const EXPORT& each : exports_of(TEST_LIBRARY)) {
        if (!each.inlined) {
            names.insert(with_short_strings(each.name));
        }
    }
    return names;
}

NAMES without(const NAMES& names, const NAMES& others) {
    NAMES rest;
    std::set_difference(names.begin(), names.end(), others.begin(), others.end(), std::inserter(rest, rest.end()));
    return rest;
}

TEST(Exports, AreMembersOfPgmdevClassesOnly) {
    for (const EXPORT& each : exports_of(TEST_LIBRARY)) {
        EXPECT_TRUE(each.name.starts_with("PGMDEV_") && each.name.find("::") != std::string::npos) << each.name;
    }
}

#if defined(_WIN32)

/// Members by their names alone: the types of parameters differ between the systems.
NAMES without_parameters(const NAMES& names) {
    NAMES members;
    for (const std::string& name : names) {
        members.insert(name.substr(0, name.find('(')));
    }
    return members;
}

TEST(Exports, HaveEveryMemberOfTheList) {
    EXPECT_THAT(without(without_parameters(listed()), without_parameters(exported())), testing::IsEmpty());
}

#else

TEST(Exports, AreThoseOfTheList) {
    std::ofstream found(FOUND, std::ios::binary);
    for (const std::string& name : exported()) {
        found << name << '\n';
    }
    ASSERT_TRUE(found.flush().good());
    const std::string advice =
        "\nIf that is meant (docs/releasing.md says when it may be), make what was found the list:\n    cp " + FOUND +
        " " + LIST;
    EXPECT_THAT(without(exported(), listed()), testing::IsEmpty()) << "is exported, but not in the list" << advice;
    EXPECT_THAT(without(listed(), exported()), testing::IsEmpty()) << "is in the list, but not exported" << advice;
    EXPECT_GT(listed().size(), 150U);
}

TEST(Exports, HaveTheVersionOfTheSoname) {
    for (const EXPORT& each : exports_of(TEST_LIBRARY)) {
        EXPECT_EQ(each.version, "PGMDEV_" TEST_SOVERSION) << each.name;
    }
}

#endif

}  // namespace
