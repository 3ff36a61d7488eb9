#include "faults/every_fault.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "run.h"
#include "support/captured_run.h"

// The command, as a person uses it, on a system that fails.

namespace {

namespace ref = ini_reference;

class CommandFaults : public testing::Test {
protected:
    static constexpr int DONE = 0;
    static constexpr int INTERNAL_ERROR = 3;

    /// Runs the command with a fault, which `arm` makes, behind the redirection of its streams.
    template <class ARM>
    int run_with(const std::vector<std::string>& arguments, const ARM& arm) const {
        std::vector<std::string> all{"--module-dir", m_directory.scratch().directory().string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return run_captured(
                   [&] {
                       const auto fault = arm();
                       int result = INTERNAL_ERROR;
                       try {
                           result = run_pgmdev(all);
                       } catch (const std::bad_alloc&) {  // the program itself makes this exit code of it
                       }
                       m_happened = fault->happened();
                       return result;
                   },
                   "")
            .exit_code;
    }

    /// A container, with the text beside it.
    void lay_out(const std::string& container) const {
        std::filesystem::remove(m_directory.scratch().path("pgm_flash.ini.bak"));
        m_directory.write_file(container);
        m_directory.scratch().write("pgm_flash.ini.info", ref::info(container));
    }

    /// Repeats the command with the first, second, ... fault, until there is none. Done is what it says that it has done;
    /// otherwise the container is the old or the new one.
    template <class ARM_NUMBER>
    void expect_truth(const std::string& before, const std::vector<std::string>& arguments,
                      const ARM_NUMBER& arm_number, std::size_t thinning) {
        lay_out(before);
        ASSERT_EQ(run_with(arguments, [] { return std::make_unique<NO_FAULT>(); }), DONE);
        const std::string after = m_directory.file();
        ASSERT_NE(after, before);
        std::size_t number = 1;
        for (m_happened = true; m_happened && !HasFailure(); number += 1 + number / thinning) {
            SCOPED_TRACE(number);
            lay_out(before);
            const int result = run_with(arguments, [&] { return arm_number(number); });
            const std::string file = m_directory.file();
            EXPECT_TRUE(file == after || (result != DONE && file == before));
            EXPECT_TRUE(ref::is_told_of(file, m_directory.info())) << m_directory.info();
            EXPECT_EQ(m_directory.scratch().file_count(),
                      1U + m_directory.has("pgm_flash.ini.info") + m_directory.has("pgm_flash.ini.bak"));
        }
        EXPECT_GT(number, 2U);
    }

    void expect_truth_of(const std::vector<std::string>& arguments) {
        const std::string before = ref::file({"first", std::nullopt, "third"});
        for (const int error : {EIO, EMFILE, ENOSPC}) {
            expect_truth(
                before, arguments,
                [error](std::size_t number) { return std::make_unique<FAILING_CALL>(number, error); }, 1000);
        }
        expect_truth(
            before, arguments, [](std::size_t number) { return std::make_unique<FAILING_ALLOCATION>(number); }, 16);
        expect_truth(
            before, arguments, [](std::size_t number) { return std::make_unique<FAILING_ALLOCATION>(number, true); },
            16);
    }

    /// Repeats a list of which the container has a part with the first, second, ... call failing: it is whole, or standard
    /// error says that it is not.
    void expect_whole_or_told(const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"--module-dir", m_directory.scratch().directory().string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const std::string whole = run_captured([&] { return run_pgmdev(all); }, "").output;
        std::size_t number = 1;
        for (m_happened = true; m_happened && !HasFailure(); ++number) {
            SCOPED_TRACE(number);
            std::string failed;
            const auto run = run_captured(
                [&] {
                    const FAILING_CALL fault(number, EIO);
                    const int result = run_pgmdev(all);
                    m_happened = fault.happened();
                    failed = fault.name();
                    return result;
                },
                "");
            SCOPED_TRACE(failed);
            EXPECT_TRUE(run.exit_code != DONE || run.output == whole ||
                        run.errors.find("pgm_flash.ini") != std::string::npos)
                << run.errors << run.output;
        }
        EXPECT_GT(number, 2U);
    }

    struct NO_FAULT {
        static bool happened() { return false; }
    };

private:
    FLASH_INI_DIRECTORY m_directory;
    mutable bool m_happened = false;
};

TEST_F(CommandFaults, AnEntryOfBootFlashIsAddedOrNot) {
    expect_truth_of({"hps", "add", "spi", "silicon_id=0x1840C8", "manufacturer_name=A maker", "device_name=A flash",
                     "device_bit_size=0x8000000", "device_sector_byte=65536", "bulk_erase_time=300", "code_a=3",
                     "code_b=11", "sec_erase_time=-1", "flag_a=true", "erase_opcode=0xDC", "program_opcode=0x12",
                     "read_opcode=0x13"});
}

TEST_F(CommandFaults, ABlockIsRemovedOrNot) {
    expect_truth_of({"params", "remove", "0"});
}

TEST_F(CommandFaults, AListIsWholeOrSaidNotToBe) {
    ASSERT_EQ(run_with({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x40000000"},
                       [] { return std::make_unique<NO_FAULT>(); }),
              DONE);
    expect_whole_or_told({"hps", "nand"});
    expect_whole_or_told({"params", "list"});
}

/// A table, and beside it the headings of all the notes that may go with it.
class NotesFaults : public testing::Test {
protected:
    NotesFaults() {
        m_scratch.write("table.csv", flash_reference::table({flash_reference::data_row()}));
        for (const char* name : NOTES) {
            std::ifstream file(std::string(TEST_DATA_DIR "/flash/") + name);
            std::string line;
            while (std::getline(file, line) && line.starts_with('#')) {
            }
            m_scratch.write(name, line + "\n");
        }
    }

    static constexpr std::array<const char*, 4> NOTES{"ambiguities.csv", "identifications.csv", "aliases.csv",
                                                      "sources.csv"};
    SCRATCH m_scratch;
};

TEST_F(NotesFaults, AreTakenAlongOrTheCommandFails) {
    const std::string output = m_scratch.path("out.pcf");
    const auto has_copies = [&] {
        return std::all_of(NOTES.begin(), NOTES.end(), [&](const std::string& name) {
            const std::string copy = output + "." + name;
            return std::filesystem::exists(copy) && read_file(copy) == read_file(m_scratch.path(name));
        });
    };
    bool happened = true;
    for (std::size_t number = 1; happened && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        const PROCESS_RESULT run = run_captured(
            [&] {
                const FAILING_CALL fault(number, EIO);
                const int result = run_pgmdev({"flash", "compile", m_scratch.path("table.csv"), output});
                happened = fault.happened();
                return result;
            },
            "");
        EXPECT_TRUE(run.exit_code != 0 || has_copies()) << run.errors;
        EXPECT_TRUE(happened || run.exit_code == 0) << run.errors;
        for (const char* name : NOTES) {
            std::filesystem::remove(output + "." + name);
        }
    }
}

TEST_F(NotesFaults, AreReadOrSaidNotToBe) {
    const std::vector<std::string> question{"flash", "identify", "C22018"};
    const auto ask = [&question] { return run_pgmdev(question); };
    const std::string whole = run_captured(ask, "").output;
    bool happened = true;
    for (std::size_t number = 1; happened && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        const PROCESS_RESULT run = run_captured(
            [&] {
                const FAILING_CALL fault(number, EIO);
                const int result = ask();
                happened = fault.happened();
                return result;
            },
            "");
        EXPECT_TRUE(run.exit_code > 1 || run.output == whole || !run.errors.empty()) << run.output;
    }
}

}  // namespace
