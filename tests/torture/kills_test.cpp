#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <thread>

#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "run.h"
#include "support/compiled_pair.h"
#include "support/unnamed_files_posix.h"
#include "torture/child.h"
#include "torture/settings.h"

// Writers that are ended at random moments: every file is the old one or the new one, a database agrees with what stands
// beside it, what is left over has the name of a
// temporary and goes with the next writer, which finds no lock.

namespace fs = std::filesystem;
namespace ref = ini_reference;

namespace {

constexpr const char* TEMPORARY_PREFIX = ".tessary-";

/// How many a killed writer may leave. With names from the beginning: a database or container, its .info, and the one before
/// it; otherwise one has a name at a time.
std::size_t most_temporaries(const fs::path& directory) {
    return has_unnamed_files(directory) ? 1 : 3;
}

using FILES = std::map<std::string, std::string>;

/// The files of a directory, temporaries left out. These get old, so that the next writer may take them away.
FILES files_of(const fs::path& directory, std::size_t& temporaries) {
    FILES files;
    temporaries = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(TEMPORARY_PREFIX)) {
            ++temporaries;
            fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(48));
        } else {
            files[name] = read_file(entry.path());
        }
    }
    return files;
}

constexpr const char* CONTAINER = "pgm_flash.ini";
constexpr const char* INFO = "pgm_flash.ini.info";

/// A container, with the text beside it.
FILES container_files(const std::string& container) {
    return {{CONTAINER, container}, {INFO, ref::info(container)}};
}

/// The old or the new container, and a text that tells of it.
bool is_container_told_of(const FILES& files, const FILES& before, const FILES& after) {
    const std::string& container = files.at(CONTAINER);
    return files.size() == 2 && (container == before.at(CONTAINER) || container == after.at(CONTAINER)) &&
           ref::is_told_of(container, files.at(INFO));
}

class Kills : public testing::Test {
protected:
    static constexpr int DONE = 0;

    void TearDown() override {
        if (HasFailure()) {
            const fs::path kept = fs::path(torture::state_directory()) / "killed";
            fs::remove_all(kept);
            fs::copy(m_directory.scratch().directory(), kept, fs::copy_options::recursive);
        }
    }

    /// Whether files may be there while `before` becomes `after`.
    using JUDGE = std::function<bool(const FILES& files, const FILES& before, const FILES& after)>;

    /// Ends `write`, which turns the `before` into something else, again and again.
    void kill_writers(const FILES& before, const std::function<void()>& write, const JUDGE& judge) {
        const fs::path& directory = m_directory.scratch().directory();
        lay_out(before);
        ASSERT_TRUE(torture::CHILD(write).wait());
        std::size_t temporaries = 0;
        const FILES after = files_of(directory, temporaries);
        const std::chrono::microseconds duration = torture::duration_of(write);
        ASSERT_EQ(temporaries, 0U);
        ASSERT_NE(after, before);
        std::uniform_int_distribution<std::chrono::microseconds::rep> moments(0, duration.count() * 6 / 5);
        std::size_t unfinished = 0;
        for (int kill = 0; kill < torture::kills(); ++kill) {
            SCOPED_TRACE(kill);
            lay_out(before);
            torture::CHILD child(write);
            std::this_thread::sleep_for(std::chrono::microseconds(moments(m_random)));
            child.kill();
            unfinished += child.wait() ? 0U : 1U;
            const FILES files = files_of(directory, temporaries);
            ASSERT_LE(temporaries, most_temporaries(directory));
            ASSERT_TRUE(judge(files, before, after));
            put_back(before);
            ASSERT_TRUE(torture::CHILD(write).wait());
            ASSERT_EQ(files_of(directory, temporaries), after);
            ASSERT_EQ(temporaries, 0U);
        }
        std::cout << unfinished << " of " << torture::kills() << " were ended before they had ended" << std::endl;
        EXPECT_GT(unfinished, 0U);
    }

    void lay_out(const FILES& files) const {
        for (const fs::directory_entry& entry : fs::directory_iterator(m_directory.scratch().directory())) {
            fs::remove_all(entry.path());
        }
        put_back(files);
    }

    void put_back(const FILES& files) const {
        for (const auto& [name, contents] : files) {
            m_directory.scratch().write(name, contents);
        }
    }

    /// The command, told nothing and asked nothing, in this directory.
    std::function<void()> command(std::vector<std::string> arguments) const {
        const std::string directory = m_directory.scratch().directory().string();
        arguments.insert(arguments.begin(),
                         {"--quiet", "--module-dir", directory, "--set", "TESSARY_OUTBOX_DIR=" + m_outbox.path("")});
        return [arguments] {
            if (run_pgmdev(arguments) != DONE) {
                ::_exit(1);
            }
        };
    }

    FLASH_INI_DIRECTORY m_directory;
    SCRATCH m_outbox;
    std::mt19937 m_random = torture::seeded();
};

/// The first lines of the shipped table.
std::string table_of(std::size_t lines) {
    const std::string all = read_file(std::string(TEST_DATA_DIR "/flash/pgm_flash.csv"));
    std::size_t end = 0;
    for (std::size_t i = 0; i < lines; ++i) {
        end = all.find('\n', end) + 1;
    }
    return all.substr(0, end);
}

TEST_F(Kills, ContainerWrites) {
    kill_writers(
        container_files(ref::file({"first", std::string(100000, 'x'), "third"})),
        [] { FLASH_INI_DIRECTORY::write(1, std::string(200000, 'y')); }, is_container_told_of);
}

TEST_F(Kills, HpsAdd) {
    kill_writers(
        container_files(ref::file({"first", std::nullopt, std::nullopt})),
        command({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x40000000"}),
        is_container_told_of);
}

TEST_F(Kills, FlashCompile) {
    const std::string source = m_outbox.write("table.csv", table_of(40));
    const std::string old = m_outbox.write("old.csv", table_of(20));
    const std::string database = m_directory.scratch().path("pgm_flash.pcf");
    ASSERT_TRUE(torture::CHILD(command({"flash", "compile", old, database})).wait());
    std::size_t temporaries = 0;
    const FILES before = files_of(m_directory.scratch().directory(), temporaries);
    ASSERT_EQ(before.size(), 2U);  // with its .info
    kill_writers(before, command({"flash", "compile", source, database}),
                 [](const FILES& files, const FILES& old_files, const FILES& new_files) {
                     const auto pair_of = [](const FILES& all) {
                         return COMPILED_PAIR{all.at("pgm_flash.pcf"), all.at("pgm_flash.pcf.info")};
                     };
                     return files.size() == 2 && pair_of(files).is_between(pair_of(old_files), pair_of(new_files));
                 });
}

TEST_F(Kills, TwoWritersAtOnce) {
    const std::set<std::optional<std::string>> texts{"one", "other"};
    const auto write_on = [](unsigned which) {
        return [which] {
            for (;;) {
                FLASH_INI_DIRECTORY::write(which, "one");
                FLASH_INI_DIRECTORY::write(which, "other");
            }
        };
    };
    m_directory.write_file(ref::file({"one", "one", "third"}));
    std::uniform_int_distribution<int> moments(0, 20000);
    for (int kill = 0; kill < torture::kills(); ++kill) {
        SCOPED_TRACE(kill);
        torture::CHILD first(write_on(0));
        torture::CHILD second(write_on(1));
        for (torture::CHILD* const child : {&first, &second}) {
            std::this_thread::sleep_for(std::chrono::microseconds(moments(m_random)));
            child->kill();
            child->wait();
        }
        const std::string file = m_directory.file();
        ASSERT_TRUE(texts.contains(ref::read_block(file, 0)));
        ASSERT_TRUE(texts.contains(ref::read_block(file, 1)));
        ASSERT_EQ(ref::read_block(file, 2), "third");
        std::size_t temporaries = 0;
        const FILES files = files_of(m_directory.scratch().directory(), temporaries);
        ASSERT_EQ(files.size(), files.contains(INFO) ? 2U : 1U);
        ASSERT_TRUE(ref::is_told_of(file, m_directory.info())) << m_directory.info();
        ASSERT_LE(temporaries, 2 * most_temporaries(m_directory.scratch().directory()));
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(0, "one"));
        files_of(m_directory.scratch().directory(), temporaries);
        ASSERT_EQ(temporaries, 0U);
    }
}

}  // namespace
