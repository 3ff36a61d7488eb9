#include <sys/stat.h>

#include "faults/every_fault.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "run.h"
#include "support/captured_run.h"
#include "support/compiled_pair.h"
#include "tables/table_verbs.h"

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

TEST_F(CommandFaults, ABlockIsWrittenOrNot) {
    const SCRATCH scratch;
    expect_truth_of({"params", "write", "0", scratch.write("block", "another first")});
}

TEST_F(CommandFaults, AListIsWholeOrSaidNotToBe) {
    ASSERT_EQ(run_with({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x40000000"},
                       [] { return std::make_unique<NO_FAULT>(); }),
              DONE);
    expect_whole_or_told({"hps", "nand"});
    expect_whole_or_told({"params", "list"});
}

/// Outputs that are refused without an insisting word stay, whatever cannot be found out about them.
class RefusedOutputFaults : public testing::Test {
protected:
    void expect_kept(const std::string& kept, const std::vector<std::string>& arguments) {
        const std::string before = read_file(kept);
        const auto run = [&arguments] { return run_captured([&] { return run_pgmdev(arguments); }, "").exit_code; };
        const auto judge = [&](int result) {
            EXPECT_NE(result, 0);
            EXPECT_TRUE(read_file(kept) == before);
            EXPECT_FALSE(std::filesystem::exists(kept + ".info"));
        };
        judge(run());
        bool happened = true;
        for (std::size_t number = 1; happened && !HasFailure(); ++number) {
            SCOPED_TRACE(number);
            const PROCESS_RESULT result = run_captured(
                [&] {
                    const FAILING_CALL fault(number, EIO);
                    const int code = run_pgmdev(arguments);
                    happened = fault.happened();
                    return code;
                },
                "");
            judge(result.exit_code);
        }
        int result = 0;
        with_each_allocation_failing([&] { result = -1; }, [&] { result = run(); },
                                     [&](bool /*ended*/) { judge(result); }, 16);
    }

    SCRATCH m_scratch;
    const std::string m_table = m_scratch.write("table.csv", flash_reference::table({flash_reference::data_row()}));
};

TEST_F(RefusedOutputFaults, AnInputIsNeverReplaced) {
    expect_kept(m_table, {"flash", "compile", "--force", m_table,
                          m_scratch.path("../") + m_scratch.directory().filename().string() + "/table.csv"});
}

TEST_F(RefusedOutputFaults, AFileThatIsNoDatabaseIsKept) {
    expect_kept(m_scratch.write("letter.txt", "Dear reader"),
                {"flash", "compile", m_table, m_scratch.path("letter.txt")});
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

    static constexpr std::array<const char*, 5> NOTES{"ambiguities.csv", "identifications.csv", "aliases.csv",
                                                      "left_out.csv", "sources.csv"};
    SCRATCH m_scratch;
};

/// A table with notes, compiled over the database of another one.
class CompilingFaults : public testing::Test {
protected:
    CompilingFaults() {
        m_sources.write("aliases.csv", "alias,device_name,reason\n");
        EXPECT_EQ(compile(m_sources.write("other.csv", table_of("OTHER"))), 0);
        m_before = files();
        m_sources.write("aliases.csv", "alias,device_name,reason\nCHIP-IQ,CHIP,ordering code\n");
        EXPECT_EQ(compile(m_table), 0);
        m_after = files();
    }

    using FILES = std::map<std::string, std::string>;

    static constexpr const char* DATABASE = "out.pcf";
    static constexpr const char* INFO = "out.pcf.info";
    static constexpr const char* NOTES = "out.pcf.aliases.csv";

    static std::string table_of(const std::string& device_name) {
        flash_reference::CELLS row = flash_reference::data_row();
        row[1] = device_name;
        return flash_reference::table({row});
    }

    int compile(const std::string& table) const { return run_pgmdev({"flash", "compile", table, m_database}); }

    /// The database and what stands beside it.
    FILES files() const {
        FILES all;
        for (const auto& entry : std::filesystem::directory_iterator(m_output.directory())) {
            all[entry.path().filename().string()] = read_file(entry.path());
        }
        return all;
    }

    void lay_out_the_other() const {
        for (const auto& [name, contents] : files()) {
            std::filesystem::remove(m_output.path(name));
        }
        for (const auto& [name, contents] : m_before) {
            m_output.write(name, contents);
        }
    }

    /// The text beside the database gives no doubts, and nothing is left over.
    void expect_agreement(const FILES& found) const {
        const auto pair_of = [](const FILES& all) { return COMPILED_PAIR{all.at(DATABASE), all.at(INFO)}; };
        EXPECT_EQ(found.size(), 3U);
        EXPECT_TRUE(pair_of(found).is_between(pair_of(m_before), pair_of(m_after))) << found.at(INFO);
    }

    /// Compiles with that call failing: whether one did.
    bool judge_with(std::size_t number, int error, bool all_later) const {
        lay_out_the_other();
        bool happened = false;
        const PROCESS_RESULT run = run_captured(
            [&] {
                const FAILING_CALL fault(number, error, all_later);
                const int result = compile(m_table);
                happened = fault.happened();
                return result;
            },
            "");
        SCOPED_TRACE(testing::Message() << "call " << number << ", error " << error << "\n" << run.errors);
        const FILES found = files();
        const bool done = run.exit_code == 0;
        expect_agreement(found);
        EXPECT_EQ(found.at(DATABASE), (done ? m_after : m_before).at(DATABASE));
        const bool is_warned_of_notes = run.errors.find("notes of the new table stand beside") != std::string::npos;
        EXPECT_EQ(found.at(NOTES), (done || is_warned_of_notes ? m_after : m_before).at(NOTES));
        EXPECT_FALSE(is_warned_of_notes && !all_later);
        const bool is_warned = run.errors.find("the database is in its place") != std::string::npos;
        EXPECT_EQ(is_warned, done && found.at(INFO) != m_after.at(INFO));
        EXPECT_TRUE(happened || found == m_after);
        return happened;
    }

    SCRATCH m_sources;
    SCRATCH m_output;
    const std::string m_table = m_sources.write("table.csv", table_of("CHIP"));
    const std::string m_database = m_output.path(DATABASE);
    FILES m_before;
    FILES m_after;
};

TEST_F(CompilingFaults, FailureMeansTheOldDatabaseAndSuccessTheNewOneWithItsNotes) {
    for (const auto& [error, all_later] : {std::pair(EIO, false), std::pair(EMFILE, true)}) {
        std::size_t number = 1;
        while (judge_with(number, error, all_later) && !HasFailure()) {
            number += all_later ? 1 + number / 8 : 1;
        }
        EXPECT_GT(number, 40U);
    }
}

TEST_F(CompilingFaults, NoFailingAllocationMakesThemUntrue) {
    int result = 0;
    with_each_allocation_failing(
        [&] {
            lay_out_the_other();
            result = -1;
        },
        [&] { result = run_captured([this] { return compile(m_table); }, "").exit_code; },
        [&](bool /*ended*/) {
            const FILES found = files();
            expect_agreement(found);
            EXPECT_EQ(found.at(NOTES), (found.at(DATABASE) == m_after.at(DATABASE) ? m_after : m_before).at(NOTES));
            EXPECT_TRUE(result != 0 || found.at(DATABASE) == m_after.at(DATABASE));
        });
}

TEST_F(CompilingFaults, NotesThatWereNotThereAreGoneAgain) {
    m_before.erase(NOTES);
    bool happened = true;
    for (std::size_t number = 1; happened && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        lay_out_the_other();
        const PROCESS_RESULT run = run_captured(
            [&] {
                const FAILING_CALL fault(number, EIO);
                const int result = compile(m_table);
                happened = fault.happened();
                return result;
            },
            "");
        EXPECT_EQ(files().contains(NOTES), run.exit_code == 0) << run.errors;
    }
}

TEST_F(CompilingFaults, NoAllocationForTheTextBesideTheDatabaseMakesAFailure) {
    constexpr std::string_view SETTLED = "settled";
    std::size_t number = 1;
    for (bool happened = true; happened && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        lay_out_the_other();
        OUTPUT_FILE lasting({m_output.path(INFO), {}});
        lasting.write({reinterpret_cast<const BYTE*>(SETTLED.data()), SETTLED.size()});
        const PROCESS_RESULT run = run_captured(
            [&] {
                const FAILING_ALLOCATION fault(number);
                settle_info(lasting);
                happened = fault.happened();
                return 0;
            },
            "");
        const bool is_warned = run.errors.find("the database is in its place") != std::string::npos;
        EXPECT_EQ(read_file(m_output.path(INFO)), is_warned ? m_before.at(INFO) : SETTLED);
    }
    EXPECT_GT(number, 2U);
}

TEST_F(CompilingFaults, ATableThatComesThroughAPipeIsRefused) {
    const std::string pipe = m_sources.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const PROCESS_RESULT run = run_captured([&] { return compile(pipe); }, "");
    EXPECT_EQ(run.exit_code, 3);
    EXPECT_NE(run.errors.find("it is read more than once"), std::string::npos) << run.errors;
    EXPECT_EQ(files(), m_after);
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
