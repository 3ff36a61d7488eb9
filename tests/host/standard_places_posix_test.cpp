#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "fio.h"
#include "gen.h"
#include "pgm_common.h"
#include "support/isolation.h"
#include "support/ordinary_user_posix.h"
#include "support/scratch.h"
#include "support/settings.h"

// Where files are written when the installation belongs to another user.

namespace {

namespace fs = std::filesystem;

class standard_places_posix : public testing::Test {
protected:
    standard_places_posix() {
        ::chmod(m_scratch.directory().c_str(), 0755);
        make("installation", 0555);
        make("home", 0777);
        make("system/var/lib/tessary", 0555);
        ::setenv("XDG_STATE_HOME", m_scratch.path("home/state").c_str(), 1);
        ::setenv("TESSARY_SYSTEM_ROOT", m_scratch.path("system").c_str(), 1);
    }
    ~standard_places_posix() override {
        ::setenv("XDG_STATE_HOME", NOWHERE, 1);
        ::setenv("TESSARY_SYSTEM_ROOT", NOWHERE, 1);
        for (const char* name : {"installation", "system/var/lib/tessary"}) {
            ::chmod(m_scratch.path(name).c_str(), 0755);
        }
    }

    void make(const std::string& name, mode_t mode) const {
        fs::create_directories(m_scratch.directory() / name);
        ::chmod(m_scratch.path(name).c_str(), mode);
    }

    /// Whether a message arrives, and where.
    bool arrives_in(const std::string& outbox) const {
        const INSTALL_DIRECTORY installation(m_scratch.path("installation"));
        const ORDINARY_USER user;
        return PGM_COMMON::send_auto_email_file("title", "text", {}) && fs::exists(m_scratch.path(outbox)) &&
               !fs::is_empty(m_scratch.path(outbox));
    }

    SCRATCH m_scratch;
};

}  // namespace

TEST_F(standard_places_posix, MessagesGoIntoTheInstallationWhileItCanBeWritten) {
    ::chmod(m_scratch.path("installation").c_str(), 0777);
    EXPECT_TRUE(arrives_in("installation/outbox"));
    EXPECT_FALSE(fs::exists(m_scratch.path("home/state")));
}

TEST_F(standard_places_posix, MessagesGoToTheUserOtherwise) {
    EXPECT_TRUE(arrives_in("home/state/tessary/outbox"));
}

TEST_F(standard_places_posix, MessagesGoToTheSystemsPlaceWhereAnAdministratorMadeIt) {
    ::chmod(m_scratch.path("system/var/lib/tessary").c_str(), 0777);
    EXPECT_TRUE(arrives_in("system/var/lib/tessary/outbox"));
    EXPECT_FALSE(fs::exists(m_scratch.path("home/state")));
}

TEST_F(standard_places_posix, TheModulesDirectoryIsKeptWhileItCanBeWritten) {
    const std::string module = gen_get_module_path();
    EXPECT_EQ(module, utf8_from_path(fs::canonical(fs::path(TEST_HOST_LIBRARY).parent_path())));
}

TEST_F(standard_places_posix, TheContainerIsWrittenForTheUserOtherwise) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "the build tree belongs to this user";
    }
    const ORDINARY_USER user;
    const std::string state = m_scratch.path("home/state/tessary");
    ASSERT_EQ(gen_get_module_path(), state);
    EXPECT_FALSE(fs::exists(state)) << "asking makes nothing";
    FIO_REPLACEMENT file(gen_get_module_path() + "/pgm_flash.ini");
    const std::string contents = "container";
    EXPECT_TRUE(file.write({reinterpret_cast<const BYTE*>(contents.data()), contents.size()}) && file.commit());
    EXPECT_EQ(read_file(state + "/pgm_flash.ini"), contents);
    EXPECT_EQ(gen_get_module_path(), state);
}

TEST_F(standard_places_posix, AContainerOfTheSystemIsUsed) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "the build tree belongs to this user";
    }
    m_scratch.write("system/var/lib/tessary/pgm_flash.ini", "");
    const ORDINARY_USER user;
    EXPECT_EQ(gen_get_module_path(), m_scratch.path("system/var/lib/tessary"));
}

TEST_F(standard_places_posix, OtherMissingDirectoriesAreNotMade) {
    const FIO_REPLACEMENT file(m_scratch.path("home/elsewhere/file"));
    EXPECT_EQ(file.temporary().fullpath(), "");
    EXPECT_FALSE(fs::exists(m_scratch.path("home/elsewhere")));
}
