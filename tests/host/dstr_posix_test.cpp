#include <gtest/gtest.h>

#include <string>

#include "support/process.h"

namespace {

TEST(DeviceStringsInFront, AreThoseThatPartsAreFoundBy) {
    for (const char* name : {"OWN-1", "OWN-77"}) {
        const PROCESS_RESULT result = run_process({{TEST_NAMES_IN_FRONT, name}, "", {}, {}});
        EXPECT_EQ(result.output, std::string(name) + "\n") << result.errors;
    }
}

}  // namespace
