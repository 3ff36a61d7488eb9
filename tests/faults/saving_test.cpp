#include <cstdlib>

#include "faults/every_fault.h"
#include "run.h"
#include "support/captured_run.h"
#include "support/scratch.h"

// Settings that the command writes into a configuration file on a system that fails: no other line is lost.

namespace {

class SavingFaults : public testing::Test {
protected:
    /// Within run_captured, which takes the variable away and gives it back.
    int save() const {
        ::setenv("TESSARY_CONFIG_FILE", m_file.c_str(), 1);
        return run_pgmdev({"flash", "define", "--like", "W25Q64JV", "--id", "857114", "device_name=MINE", "--save"});
    }

    void lay_out() const { m_scratch.write("tessary.conf", BEFORE); }

    /// The old file, or the new one where saving was not said to have failed; and no other.
    void judge(int result) const {
        const std::string found = read_file(m_file);
        EXPECT_TRUE(found == m_after || (result != 0 && found == BEFORE)) << found;
        EXPECT_EQ(m_scratch.file_count(), 1U);
    }

    static constexpr const char* BEFORE = "# ours\r\nTESSARY_OTHER = a value\r\n";

    SCRATCH m_scratch;
    const std::string m_file = m_scratch.write("tessary.conf", BEFORE);
    std::string m_after;
};

TEST_F(SavingFaults, NoLineIsLost) {
    const auto run = [this] { return run_captured([this] { return save(); }, ""); };
    const PROCESS_RESULT saved = run();
    ASSERT_EQ(saved.exit_code, 0) << saved.errors;
    m_after = read_file(m_file);
    ASSERT_TRUE(m_after.starts_with(BEFORE) && m_after.size() > std::string(BEFORE).size()) << saved.errors << m_after;
    for (const int error : {EIO, ENOSPC}) {
        bool happened = true;
        for (std::size_t number = 1; happened && !HasFailure(); ++number) {
            SCOPED_TRACE(testing::Message() << "call " << number << ", error " << error);
            lay_out();
            judge(run_captured(
                      [&] {
                          const FAILING_CALL fault(number, error);
                          const int result = save();
                          happened = fault.happened();
                          return result;
                      },
                      "")
                      .exit_code);
        }
    }
    int result = 0;
    with_each_allocation_failing(
        [&] {
            lay_out();
            result = -1;
        },
        [&] { result = run().exit_code; }, [&](bool /*ended*/) { judge(result); }, 16);
}

}  // namespace
