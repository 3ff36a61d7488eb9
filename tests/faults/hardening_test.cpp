#include <gtest/gtest.h>

#include "support/process.h"
#include "support/scratch.h"

// How the binaries are protected against what would make a fault of theirs worse.

namespace {

std::string told_of(const std::string& file, const std::string& options) {
    const PROCESS_RESULT result = run_process({{"/usr/bin/env", "readelf", options, file}, "", {}, {}});
    EXPECT_EQ(result.exit_code, 0) << result.errors;
    return result.output;
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

class Hardening : public testing::TestWithParam<const char*> {};

TEST_P(Hardening, AddressesAreFixedBeforeTheProgramRuns) {
    EXPECT_TRUE(has(told_of(GetParam(), "-lW"), "GNU_RELRO"));
    const std::string dynamic = told_of(GetParam(), "-dW");
    EXPECT_TRUE(has(dynamic, "BIND_NOW") || has(dynamic, "NOW")) << dynamic;
    EXPECT_TRUE(has(told_of(GetParam(), "-hW"), "DYN "));  // a library, or a program that can be loaded anywhere
}

TEST_P(Hardening, TheStackIsNotExecutable) {
    const std::string segments = told_of(GetParam(), "-lW");
    const std::size_t stack = segments.find("GNU_STACK");
    ASSERT_NE(stack, std::string::npos);
    EXPECT_FALSE(has(segments.substr(stack, segments.find('\n', stack) - stack), "RWE"));
}

/// An empty element of a run path is the current directory: whoever may write there could be loaded.
TEST_P(Hardening, RunPathsBeginWhereTheBinaryIs) {
    const std::string dynamic = told_of(GetParam(), "-dW");
    const std::size_t begin = dynamic.find("runpath: [");
    if (begin == std::string::npos) {
        return;  // it loads nothing of ours
    }
    std::string path = dynamic.substr(begin + 10, dynamic.find(']', begin) - begin - 10) + ":";
    for (std::size_t end = 0; (end = path.find(':')) != std::string::npos; path.erase(0, end + 1)) {
        EXPECT_EQ(path.compare(0, 7, "$ORIGIN"), 0) << dynamic;
    }
}

TEST_P(Hardening, AnOverwrittenStackEndsTheProgram) {
    EXPECT_TRUE(has(told_of(GetParam(), "-sW"), " __stack_chk_fail"));
}

/// Jumps may go where an instruction of its own marks it: many places, since each function is one that is called so.
TEST_P(Hardening, JumpsHaveMarkedPlaces) {
#if defined(__x86_64__)
    constexpr std::string_view MARK{"\xF3\x0F\x1E\xFA"};
    const std::string binary = read_file(std::string(GetParam()));
    unsigned count = 0;
    for (std::size_t at = binary.find(MARK); at != std::string::npos; at = binary.find(MARK, at + MARK.size())) {
        ++count;
    }
    EXPECT_GT(count, 200U);
#endif
}

/// String functions that know how much room there is: where the compiler can tell, which is not in every binary.
TEST(HardeningOfStrings, IsInTheBinariesThatFormatText) {
    for (const char* const binary : {TEST_COMMAND, TEST_HOST_LIBRARY}) {
        EXPECT_TRUE(has(told_of(binary, "-sW"), "printf_chk")) << binary;
    }
}

INSTANTIATE_TEST_SUITE_P(Shipped, Hardening,
                         testing::Values(TEST_COMMAND, TEST_LIBRARY, TEST_C_LIBRARY, TEST_HOST_LIBRARY,
                                         TEST_GENERATOR));

}  // namespace
