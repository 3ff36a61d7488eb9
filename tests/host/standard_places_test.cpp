#include <gtest/gtest.h>

#include "host_probe.h"
#include "support/scratch.h"

// Configuration files of the user and of the system, beside that of the installation.

namespace {

#if defined(_WIN32)
constexpr const char* SYSTEM = "PROGRAMDATA";
constexpr const char* USER = "APPDATA";
constexpr const char* SYSTEM_FILE = "system/tessary/tessary.conf";
#else
constexpr const char* SYSTEM = "TESSARY_SYSTEM_ROOT";
constexpr const char* USER = "XDG_CONFIG_HOME";
constexpr const char* SYSTEM_FILE = "system/etc/tessary/tessary.conf";
#endif

/// A machine with three configuration files.
class MACHINE {
public:
    MACHINE() {
        m_scratch.write(SYSTEM_FILE, "TESSARY_A = system\nTESSARY_B = system\nTESSARY_C = system\n");
        m_scratch.write("user/tessary/tessary.conf", "TESSARY_A = user\nTESSARY_B = user\n");
        m_scratch.write("installation/tessary.conf", "TESSARY_A = installation\n");
    }

    std::string values(std::map<std::string, std::string> environment) const {
        environment[SYSTEM] = m_scratch.path("system");
        environment[USER] = m_scratch.path("user");
        environment["TESSARY_INSTALL_DIR"] = m_scratch.path("installation");
        return host_answers({"value", "TESSARY_A", "value", "TESSARY_B", "value", "TESSARY_C"}, environment);
    }

private:
    SCRATCH m_scratch;
};

}  // namespace

TEST(standard_places, InstallationComesBeforeUserBeforeSystem) {
    EXPECT_EQ(MACHINE().values({}), "[installation]\n[user]\n[system]\n");
}

TEST(standard_places, TheEnvironmentComesBeforeAllFiles) {
    EXPECT_EQ(MACHINE().values({{"TESSARY_A", "environment"}, {"TESSARY_C", "environment"}}),
              "[environment]\n[user]\n[environment]\n");
}

TEST(standard_places, ANamedFileIsTheOnlyOne) {
    const SCRATCH scratch;
    const std::string named = scratch.write("named.conf", "TESSARY_B = named\n");
    EXPECT_EQ(MACHINE().values({{"TESSARY_CONFIG_FILE", named}}), "[]\n[named]\n[]\n");
}
