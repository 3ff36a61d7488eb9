#include <gtest/gtest.h>

#include "support/starved_program.h"

// Whole programs, from the dynamic linker to the last destructor, while an allocation fails: they say that there is no
// memory, and the exit code is the truth.

namespace {

/// Runs the program with the first allocations failing, up to `all_of_the_first`, and then with some of the later ones.
void expect_truth(const STARVED_PROGRAM& program, std::size_t all_of_the_first, bool all_later) {
    constexpr std::size_t THINNING = 4;
    std::size_t told = 0;
    for (std::size_t number = 1; number <= program.all();) {
        const PROCESS_RESULT result = program.run(number, all_later);
        EXPECT_TRUE(is_truthful(result, program.usual()))
            << "allocation " << number << ": exit code " << result.exit_code << "\n"
            << result.errors;
        told += result.errors.find("no memory is left") != std::string::npos ? 1U : 0U;
        number += number <= all_of_the_first ? 1 : 1 + (number - all_of_the_first) / THINNING;
    }
    EXPECT_GT(told, all_of_the_first / 2);
}

const std::vector<std::string> IDENTIFICATION{TEST_COMMAND, "--json", "flash", "identify", "EF4017"};

TEST(StarvedPrograms, TheCommandSaysSoAlsoBeforeItsMain) {
    const STARVED_PROGRAM program(IDENTIFICATION);
    ASSERT_EQ(program.usual().exit_code, 0) << program.usual().errors;
    ASSERT_GT(program.before_main(), 20U);
    expect_truth(program, program.before_main(), false);
}

TEST(StarvedPrograms, TheCommandSaysSoWhenThereIsNeverAgainMemory) {
    expect_truth(STARVED_PROGRAM(IDENTIFICATION), 3, true);
}

TEST(StarvedPrograms, TheCommandSaysSoWhileItAnswersManyQuestions) {
    expect_truth(STARVED_PROGRAM({TEST_COMMAND, "--json", "part", "info", "-"}, "KES50C6\nno such part\nKES50C7\n"), 3,
                 false);
}

TEST(StarvedPrograms, TheGeneratorSaysSo) {
    const STARVED_PROGRAM program({TEST_GENERATOR, "--check-hps", TEST_DATA_DIR "/hps"});
    ASSERT_EQ(program.usual().exit_code, 0) << program.usual().errors;
    expect_truth(program, 3, false);
    expect_truth(program, 3, true);
}

}  // namespace
