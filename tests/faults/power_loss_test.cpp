#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "faults/both_temporaries.h"
#include "host/replacing.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "run.h"
#include "support/captured_run.h"
#include "support/compiled_pair.h"
#include "support/disk_model.h"
#include "support/recorded_calls.h"
#include "support/unnamed_files_posix.h"

// The power fails between any two calls of a writer, and the disk has kept of what was not synchronised whatever it may:
// every file is the old one or the new one, and a database agrees with what stands beside it. Once the writer has said that it
// is done, they are the new ones.

namespace fs = std::filesystem;
namespace ref = ini_reference;

namespace {

bool is_temporary(const DISK::value_type& file) {
    return fs::path(file.first).filename().string().starts_with(".tessary-");
}

class PowerLoss : public BOTH_TEMPORARIES {
protected:
    DISK files() const {
        DISK all;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_directory.scratch().directory())) {
            all[entry.path().string()] = read_file(entry.path());
        }
        return all;
    }

    /// Carries it out, and calls `judge` with everything that a disk may hold while it is, and when it is done.
    template <class OPERATION, class JUDGE>
    void with_every_power_loss(const OPERATION& operation, const JUDGE& judge) {
        DISK_MODEL disk(files());
        std::vector<RECORDED_CALL> calls;
        {
            const RECORDED_CALLS recorded;
            operation();
            calls = recorded.all();
        }
        std::erase_if(calls, [this](const RECORDED_CALL& call) {
            return !call.path.starts_with(m_directory.scratch().directory().string());
        });
        // At most one has a name at a time where there are files without.
        const bool is_unnamed =
            GetParam() == TEMPORARIES::UNNAMED && has_unnamed_files(m_directory.scratch().directory());
        std::size_t tried = 0;
        for (std::size_t done = 0; done <= calls.size() && !HasFailure(); ++done) {
            SCOPED_TRACE(testing::Message() << done << " of " << calls.size() << " calls");
            for (const DISK& possible : disk.possible()) {
                judge(possible, done == calls.size());
                EXPECT_LE(std::count_if(possible.begin(), possible.end(), is_temporary), is_unnamed ? 1 : 3);
                ++tried;
            }
            if (done < calls.size()) {
                disk.apply(calls[done]);
            }
        }
        EXPECT_TRUE(HasFailure() || disk.seen() == files()) << "something was not recorded";
        EXPECT_GT(tried, 20U);
    }

    /// The same, with every file the old one or the new one.
    template <class OPERATION>
    void expect_old_or_new(const OPERATION& operation) {
        const DISK old_files = files();
        operation();
        const DISK new_files = files();
        ASSERT_NE(new_files, old_files);
        for (const auto& [path, contents] : new_files) {
            fs::remove(path);
        }
        for (const auto& [path, contents] : old_files) {
            m_directory.scratch().write(fs::path(path).filename().string(), contents);
        }
        with_every_power_loss(operation, [&](const DISK& disk, bool done) {
            for (const auto& [path, contents] : new_files) {
                const auto found = disk.find(path);
                const auto old_file = old_files.find(path);
                const bool is_new = found != disk.end() && found->second == contents;
                const bool is_old = old_file == old_files.end()
                                        ? found == disk.end()
                                        : found != disk.end() && found->second == old_file->second;
                EXPECT_TRUE(is_new || (!done && is_old)) << path;
            }
            EXPECT_TRUE(std::all_of(disk.begin(), disk.end(), [&](const auto& file) {
                return new_files.contains(file.first) || is_temporary(file);
            }));
        });
    }

    FLASH_INI_DIRECTORY m_directory;
};

INSTANTIATE_TEST_SUITE_P(Temporaries, PowerLoss, BOTH_KINDS, name_of_kind);

TEST_P(PowerLoss, AFileThatIsReplaced) {
    const std::string file = m_directory.scratch().write("file", "what was there");
    expect_old_or_new([&] { EXPECT_TRUE(replace(file, "what takes its place")); });
}

TEST_P(PowerLoss, AFileThatWasNotThere) {
    expect_old_or_new([&] { EXPECT_TRUE(replace(m_directory.scratch().path("file"), "something")); });
}

/// The container is the old one or the new one, and whatever text is beside it tells of it.
TEST_P(PowerLoss, AContainer) {
    const std::string before = ref::file({"first", "second", "third"});
    const std::string after = ref::file({"first", "another one", "third"});
    const std::string container = m_directory.path().string();
    for (const bool had_a_text : {true, false}) {
        m_directory.write_file(before);
        if (had_a_text) {
            m_directory.scratch().write("pgm_flash.ini.info", ref::info(before));
        } else {
            fs::remove(container + ".info");
        }
        with_every_power_loss([] { EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "another one")); },
                              [&](const DISK& disk, bool done) {
                                  const std::string& found = disk.at(container);
                                  const auto info = disk.find(container + ".info");
                                  EXPECT_TRUE(found == after || (!done && found == before));
                                  EXPECT_TRUE(info != disk.end() || (!done && !had_a_text));
                                  EXPECT_TRUE(info == disk.end() || ref::is_told_of(found, info->second));
                                  EXPECT_TRUE(!done || info->second == ref::info(after));
                              });
    }
}

TEST_P(PowerLoss, AContainerThatWasNotThere) {
    const std::string after = ref::file({std::nullopt, "first one", std::nullopt});
    const std::string container = m_directory.path().string();
    m_directory.scratch().write("pgm_flash.ini.info", ref::info("of one that is gone"));
    with_every_power_loss(
        [] { EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "first one")); },
        [&](const DISK& disk, bool done) {
            const auto found = disk.find(container);
            EXPECT_TRUE(found == disk.end() ? !done : found->second == after);
            EXPECT_TRUE(found == disk.end() || ref::is_told_of(found->second, disk.at(container + ".info")));
        });
}

/// The copy that is kept of a damaged container is on the disk before the container is another one.
TEST_P(PowerLoss, ADamagedContainerAndItsCopy) {
    const std::string damaged = ref::file({"first", "second", "third"}) + "garbage";
    m_directory.write_file(damaged);
    const std::string container = m_directory.path().string();
    with_every_power_loss(
        [] { EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "new")); },
        [&](const DISK& disk, bool /*done*/) {
            const auto copy = disk.find(container + ".bak");
            EXPECT_TRUE(disk.at(container) == damaged || (copy != disk.end() && copy->second == damaged));
        });
}

TEST_P(PowerLoss, ADatabase) {
    const SCRATCH elsewhere;
    const std::string table = read_file(std::string(TEST_DATA_DIR "/flash/pgm_flash.csv"));
    const std::string source = elsewhere.write("table.csv", table);
    const std::string shorter =
        elsewhere.write("shorter.csv", table.substr(0, table.rfind('\n', table.size() / 2) + 1));
    const std::string outbox = "TESSARY_OUTBOX_DIR=" + elsewhere.path("outbox");
    const std::string database = m_directory.scratch().path("pgm_flash.pcf");
    const auto compile = [&](const std::string& from) {
        const std::vector<std::string> arguments{"--set", outbox, "flash", "compile", from, database};
        const PROCESS_RESULT result = run_captured([&] { return run_pgmdev(arguments); }, "");
        EXPECT_EQ(result.exit_code, 0) << result.errors;
    };
    const auto pair_of = [&database](const DISK& disk) {
        return COMPILED_PAIR{disk.at(database), disk.at(database + ".info")};
    };
    compile(source);
    const COMPILED_PAIR after = pair_of(files());
    m_directory.scratch().write("pgm_flash.pcf", "");
    compile(shorter);
    const COMPILED_PAIR before = pair_of(files());
    with_every_power_loss([&] { compile(source); },
                          [&](const DISK& disk, bool done) {
                              const COMPILED_PAIR found = pair_of(disk);
                              EXPECT_TRUE(found.is_between(before, after));
                              EXPECT_TRUE(!done || (found.database == after.database && found.info == after.info));
                          });
}

/// What it would be like if files took their names before they are on the disk, or names were not synchronised.
TEST(DiskModel, FindsWhatIsNotSynchronised) {
    DISK_MODEL disk(DISK{{"/d/file", "old"}});
    disk.apply({RECORDED_CALL::CREATE, "/d/new", "", 0});
    disk.apply({RECORDED_CALL::WRITE, "/d/new", "new!", 0});
    disk.apply({RECORDED_CALL::RENAME, "/d/new", "/d/file", 0});
    const auto contents_of_file = [&disk] {
        std::set<std::string> contents;
        for (const DISK& possible : disk.possible()) {
            contents.insert(possible.at("/d/file"));
        }
        return contents;
    };
    EXPECT_EQ(contents_of_file(), (std::set<std::string>{"", "ne", std::string(4, '\0'), "new!", "old"}));
    disk.apply({RECORDED_CALL::SYNC, "/d/file", "", 0});
    EXPECT_EQ(contents_of_file(), (std::set<std::string>{"new!", "old"}));
    disk.apply({RECORDED_CALL::SYNC, "/d", "", 0});
    EXPECT_EQ(contents_of_file(), (std::set<std::string>{"new!"}));
}

TEST(DiskModel, HasNothingOfWhatHasNoName) {
    DISK_MODEL disk(DISK{});
    disk.apply({RECORDED_CALL::CREATE_UNNAMED, "/d/#7 (deleted)", "", 0});
    disk.apply({RECORDED_CALL::WRITE, "/d/#7 (deleted)", "text", 0});
    disk.apply({RECORDED_CALL::RESIZE, "/d/#7 (deleted)", "", 2});
    disk.apply({RECORDED_CALL::SYNC, "/d/#7 (deleted)", "", 0});
    EXPECT_EQ(disk.seen(), DISK{});
    disk.apply({RECORDED_CALL::SYNC, "/d", "", 0});
    EXPECT_EQ(disk.possible(), std::vector<DISK>(4));
    disk.apply({RECORDED_CALL::LINK, "/d/#7 (deleted)", "/d/file", 0});
    EXPECT_EQ(disk.seen(), (DISK{{"/d/file", "te"}}));
    disk.apply({RECORDED_CALL::SYNC, "/d", "", 0});
    EXPECT_EQ(disk.possible(), std::vector<DISK>(4, DISK{{"/d/file", "te"}}));
}

}  // namespace
