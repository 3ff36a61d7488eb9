#include <gtest/gtest.h>

#include <functional>
#include <iostream>

#include "pgmdev/flash/source_fixture.h"
#include "support/compiled_pair.h"
#include "support/starved_program.h"

// Every allocation that the command makes for an answer fails, one after the other and with all later ones: it says that
// there is no memory, or goes on without, and what it writes is the old or the new.

namespace {

class Starved : public testing::Test {
protected:
    void expect_truth(
        const std::vector<std::string>& arguments, const std::function<void()>& prepare = [] {},
        const std::function<void(const PROCESS_RESULT& result)>& judge = [](const PROCESS_RESULT&) {}) {
        std::vector<std::string> command{TEST_COMMAND};
        command.insert(command.end(), arguments.begin(), arguments.end());
        prepare();
        const STARVED_PROGRAM program(command);
        for (const bool all_later : {false, true}) {
            for (std::size_t number = 1; number <= program.all() && !HasFailure(); ++number) {
                SCOPED_TRACE(testing::Message() << "allocation " << number << (all_later ? " and all later ones" : ""));
                prepare();
                const PROCESS_RESULT result = program.run(number, all_later);
                EXPECT_TRUE(is_truthful(result, program.usual())) << result.exit_code << "\n" << result.errors;
                judge(result);
            }
        }
        std::cout << program.all() << " allocations, " << program.before_main() << " before main" << std::endl;
    }
};

TEST_F(Starved, Identification) {
    expect_truth({"--json", "flash", "identify", "EF4017"});
}

TEST_F(Starved, Part) {
    expect_truth({"--json", "part", "info", "KES50C6"});
}

TEST_F(Starved, BootFlash) {
    expect_truth({"--json", "hps", "nand"});
}

TEST_F(Starved, Doctor) {
    expect_truth({"--json", "doctor"});
}

TEST_F(Starved, Help) {
    expect_truth({"--help"});
}

TEST_F(Starved, FlashCompile) {
    const SCRATCH scratch;
    const std::string database = scratch.path("table.pcf");
    const auto pair = [&] { return COMPILED_PAIR{read_file(database), read_file(database + ".info")}; };
    const auto compiled_from = [&](const std::string& name) {
        flash_reference::CELLS row = flash_reference::data_row();
        row[1] = name;
        const std::string source = scratch.write(name + ".csv", flash_reference::table({row}));
        EXPECT_EQ(run_process({{TEST_COMMAND, "flash", "compile", source, database}, "", {}, {}}).exit_code, 0);
        return pair();
    };
    const COMPILED_PAIR before = compiled_from("BEFORE");
    const COMPILED_PAIR after = compiled_from("AFTER");
    expect_truth(
        {"--json", "flash", "compile", scratch.path("AFTER.csv"), database},
        [&] {
            scratch.write("table.pcf", before.database);
            scratch.write("table.pcf.info", before.info);
        },
        [&](const PROCESS_RESULT& result) {
            EXPECT_TRUE(pair().is_between(before, after));
            EXPECT_TRUE(result.exit_code != 0 || pair().database == after.database);
            EXPECT_EQ(scratch.file_count(), 4U);
        });
}

}  // namespace
