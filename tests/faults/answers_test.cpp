#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "faults/every_fault.h"
#include "files/scratch_directory.h"
#include "pgmdev/flash/source_fixture.h"
#include "run.h"
#include "support/captured_run.h"
#include "terminal/json.h"

// Answers of the command on a system that fails: those that it gives otherwise, or it is said that something could not be read.

namespace {

using COMMAND_LINE = std::vector<std::string>;

class AnswerFaults : public testing::TestWithParam<COMMAND_LINE> {
protected:
    static constexpr int FAILED = 3;
    static constexpr std::array SAYINGS{"cannot be read", "unreadable", "expected a file that can be read"};

    AnswerFaults() {
        // What cannot be removed without memory goes with the test.
        ::setenv("TMPDIR", m_scratch.directory().c_str(), 1);
        const std::string table = m_scratch.write("table.csv", flash_reference::table({flash_reference::data_row()}));
        EXPECT_EQ(run_captured(
                      [&] {
                          return run_pgmdev({"flash", "compile", table, m_scratch.path("table.pcf")});
                      },
                      "")
                      .exit_code,
                  0);
        for (const std::string& argument : GetParam()) {
            m_arguments.push_back(argument.starts_with("table.") ? m_scratch.path(argument) : argument);
        }
    }

    ~AnswerFaults() override { ::setenv("TMPDIR", m_former.c_str(), 1); }

    /// Runs the command with a fault that `arm` makes, behind the redirection of the streams.
    template <class ARM>
    PROCESS_RESULT run_with(const ARM& arm) {
        return run_captured(
            [&] {
                const auto fault = arm();
                int result = FAILED;
                try {
                    result = run_pgmdev(m_arguments);
                } catch (const std::bad_alloc&) {  // the program itself makes this of it
                    std::fputs("pgmdev: no memory is left\n", stderr);
                }
                m_happened = fault->happened();
                return result;
            },
            "");
    }

    /// Whether it says that something could not be read.
    static bool tells(const PROCESS_RESULT& run) {
        const std::string all = run.output + run.errors;
        return std::any_of(SAYINGS.begin(), SAYINGS.end(),
                           [&all](const char* saying) { return all.find(saying) != std::string::npos; });
    }

    /// Repeats the command with the first, second, ... fault, until there is none.
    template <class ARM_NUMBER>
    void expect_truth(const ARM_NUMBER& arm_number, std::size_t thinning) {
        const PROCESS_RESULT whole = run_captured([this] { return run_pgmdev(m_arguments); }, "");
        ASSERT_LT(whole.exit_code, FAILED) << whole.errors;
        ASSERT_FALSE(tells(whole)) << whole.errors << whole.output;
        m_happened = true;
        for (std::size_t number = 1; m_happened && !HasFailure(); number += 1 + number / thinning) {
            const PROCESS_RESULT run = run_with([&] { return arm_number(number); });
            const bool is_same = run.exit_code == whole.exit_code && run.output == whole.output;
            const bool is_failure_told = run.exit_code == FAILED && run.errors.size() > whole.errors.size();
            EXPECT_TRUE(is_same || tells(run) || is_failure_told) << number << ", exit code " << run.exit_code << "\n"
                                                                  << run.errors << run.output;
        }
    }

    const std::filesystem::path m_former = std::filesystem::temp_directory_path();
    SCRATCH m_scratch;
    COMMAND_LINE m_arguments;
    bool m_happened = false;
};

TEST_P(AnswerFaults, AreWholeOrSaidNotToBe) {
    for (const int error : {EIO, EMFILE}) {
        expect_truth([error](std::size_t number) { return std::make_unique<FAILING_CALL>(number, error); }, 1000);
    }
    expect_truth([](std::size_t number) { return std::make_unique<FAILING_ALLOCATION>(number); }, 8);
    expect_truth([](std::size_t number) { return std::make_unique<FAILING_MALLOC>(number); }, 8);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AnswerFaults,
    testing::Values(COMMAND_LINE{"doctor"}, COMMAND_LINE{"flash", "show", "W25Q64JV"},
                    COMMAND_LINE{"flash", "verify", "table.pcf", "table.csv"},
                    COMMAND_LINE{"flash", "define", "--like", "W25Q64JV", "--id", "857114", "device_name=MINE"},
                    COMMAND_LINE{"flash", "dump", "--csv", "table.pcf"},
                    COMMAND_LINE{"flash", "diff", "table.pcf", "table.csv"},
                    COMMAND_LINE{"flash", "check", "table.csv"},
                    COMMAND_LINE{"flash", "sfdp", TEST_SFDP_DIR "/AT25FF321A.sfdp"}, COMMAND_LINE{"profile", "list"},
                    COMMAND_LINE{"part", "info", "KES50C6"}, COMMAND_LINE{"--json", "part", "info", "KESTREL_PCF"},
                    COMMAND_LINE{"hps", "spi"}, COMMAND_LINE{"params", "list"}));

TEST(JsonFaults, WithoutMemoryThereIsNoText) {
    const JSON names = std::vector<std::string>(1000, "KESTREL50-C6");
    const std::string whole = readable_json_text(names);
    std::string text;
    std::size_t failures = 0;
    while (text.empty()) {
        const FAILING_ALLOCATION fault(failures + 1);
        try {
            text = readable_json_text(names);
        } catch (const std::bad_alloc&) {
            ++failures;
        }
    }
    EXPECT_EQ(text, whole);
    EXPECT_GT(failures, 5U);  // whenever the text had to grow
}

TEST(VerifyFaults, TheScratchDirectoryGoesWithoutMemory) {
    for (std::size_t number = 1; number <= 20; ++number) {
        auto scratch = std::make_unique<SCRATCH_DIRECTORY>();
        const std::filesystem::path directory = std::filesystem::path(scratch->path("file")).parent_path();
        std::filesystem::create_directory(directory / "outbox");
        std::ofstream(directory / "outbox" / "a message with a name that takes memory") << "text";
        std::filesystem::create_symlink("nowhere", directory / "link");
        const FAILING_ALLOCATION none_left(number, true);
        scratch.reset();
        EXPECT_NE(::access(directory.c_str(), F_OK), 0) << number;
    }
}

}  // namespace
