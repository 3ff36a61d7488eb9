#include <gtest/gtest.h>

#include <string>

#include "support/process.h"

// What the library makes of services that are a program's own.

namespace {

std::string output_of(const std::string& what) {
    const PROCESS_RESULT result = run_process({{TEST_SERVICES_IN_FRONT, what}, "", {}, {}});
    EXPECT_EQ(result.errors, "");
    return result.output;
}

TEST(ServicesInFront, NumbersInAListOfPartsThatAreNoneDoNoHarm) {
    EXPECT_EQ(output_of("parts"), "1\n");  // the first part of the list is found
}

TEST(ServicesInFront, TheVersionIsAskedForToCompareThePasswordOfAPlausibleDescriptionOnly) {
    EXPECT_EQ(output_of("descriptions"), "1 0\n");
}

}  // namespace
