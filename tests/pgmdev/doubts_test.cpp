#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "pgmdev/parameters/container_text.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "support/debug_messages.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Databases that are not those which the texts beside them tell of: loaded all the same, and told on the debug channel.

namespace {

struct DATABASE {
    const char* file;
    std::function<std::size_t()> load;  ///< gives what has been loaded
};

const std::vector<DATABASE> DATABASES{
    {"programmer/pgm_flash.pcf",
     [] {
         PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
         return std::size_t{manager.get_flash_count()};
     }},
    {"programmer/pgm_dev_info.pcf",
     [] {
         PGMDEV_DEV_INFO_MANAGER manager(false);
         return manager.get_device_database()[0].pcf.size() + 1;
     }},
};

class Doubts : public testing::TestWithParam<DATABASE> {
protected:
    Doubts() {
        for (const std::string& name : {file(), info_file()}) {
            m_scratch.write(name, read_file(std::string(TEST_DEVICES_DIR) + "/" + name));
        }
    }

    static std::string file() { return GetParam().file; }
    static std::string info_file() { return file() + ".info"; }
    std::string info() const { return read_file(m_scratch.path(info_file())); }

    /// What is said while the database is loaded, without the level of detail.
    std::vector<std::string> said() const {
        const DEBUG_MESSAGES messages;
        EXPECT_GT(GetParam().load(), 0U);
        return messages.all();
    }

    /// The one message that says so.
    std::string doubt(const std::string& why) const {
        const std::string path = m_scratch.path("") + file();
        return "PGMDEV 1 " + path + " is doubtful: " + path + ".info " + why;
    }

    SCRATCH m_scratch;
    DEVICE_DB_DIRECTORY m_directory{m_scratch.directory().string()};
};

TEST_P(Doubts, NothingIsSaidOfTheDatabaseThatTheTextTellsOf) {
    EXPECT_EQ(said(), std::vector<std::string>());
    std::filesystem::remove(m_scratch.path(info_file()));
    EXPECT_EQ(said(), std::vector<std::string>());
}

TEST_P(Doubts, NothingIsSaidWhileADatabaseIsReplaced) {
    std::string text = info();
    const std::string digest = ini_reference::digest(read_file(m_scratch.path(file())));
    text.replace(text.find(digest), digest.size(), std::string(digest.size(), '0'));
    m_scratch.write(info_file(), text + "replaces_sha256 = " + digest + "\n");
    EXPECT_EQ(said(), std::vector<std::string>());
}

TEST_P(Doubts, AnotherDatabaseIsLoadedAndDoubted) {
    std::string bytes = read_file(m_scratch.path(file()));
    bytes.back() = 1;  // of what no reader looks at
    m_scratch.write(file(), bytes);
    EXPECT_EQ(said(), std::vector<std::string>{doubt("tells of another file")});
    m_scratch.write(info_file(), "no text of ours");
    EXPECT_EQ(said(), std::vector<std::string>{doubt("is damaged, or cannot be read")});
}

TEST_P(Doubts, ADatabaseThatCannotBeLoadedIsDoubtedBeforeThat) {
    const std::string bytes = read_file(m_scratch.path(file()));
    m_scratch.write(file(), bytes.substr(0, bytes.size() / 2));
    const REPORTS reports;
    const DEBUG_MESSAGES messages;
    EXPECT_THROW(GetParam().load(), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(messages.all(), std::vector<std::string>{doubt("tells of another file")});
}

INSTANTIATE_TEST_SUITE_P(OfBothDatabases, Doubts, testing::ValuesIn(DATABASES),
                         [](const auto& database) { return std::string(database.index == 0 ? "Flash" : "Profiles"); });

}  // namespace
