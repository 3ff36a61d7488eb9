#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "gen.h"
#include "host_probe.h"
#include "support/scratch.h"

namespace fs = std::filesystem;

namespace {

/// One of the directories, with its three ways of being given.
struct DIRECTORY {
    const char* variable;
    const char* set;
    const char* get;
};

class DIRECTORIES : public testing::TestWithParam<DIRECTORY> {};

std::string line(const fs::path& path) {
    return utf8_from_path(fs::path(path).make_preferred()) + "\n";
}

}  // namespace

TEST_P(DIRECTORIES, ProgramComesBeforeEnvironmentBeforeInstallation) {
    const auto [variable, set, get] = GetParam();
    const SCRATCH scratch;
    const fs::path a = scratch.directory() / "a";
    const fs::path b = scratch.directory() / "b";
    const std::string installed = host_answers({get});
    EXPECT_NE(installed, line(a));
    EXPECT_EQ(host_answers({get}, {{variable, a.string()}}), line(a));
    EXPECT_EQ(host_answers({set, b.string(), get}, {{variable, a.string()}}), line(b));
    EXPECT_EQ(host_answers({set, b.string(), get, set, "", get}, {{variable, a.string()}}), line(b) + line(a));
    EXPECT_EQ(host_answers({set, b.string(), set, "", get}), installed);
}

TEST_P(DIRECTORIES, EmptyEnvironmentIsNone) {
    const auto [variable, set, get] = GetParam();
    EXPECT_EQ(host_answers({get}, {{variable, ""}}), host_answers({get}));
}

TEST_P(DIRECTORIES, AreAbsoluteWithoutTrailingSeparator) {
    const auto [variable, set, get] = GetParam();
    const SCRATCH scratch;
    const std::string expected = line(scratch.directory() / "a b");
    for (const char* spelling : {"a b", "a b/", "./a b//", "a b/"}) {
        const std::string full = (scratch.directory() / spelling).string();
        EXPECT_EQ(host_answers({get}, {{variable, full}}), expected) << spelling;
        EXPECT_EQ(host_answers({set, full, get}), expected) << spelling;
    }
    const std::string relative = line(fs::current_path() / "below");
    EXPECT_EQ(host_answers({get}, {{variable, "below/"}}), relative);
    EXPECT_EQ(host_answers({set, "below", get}), relative);
}

TEST_P(DIRECTORIES, KeepNonAsciiNames) {
    const auto [variable, set, get] = GetParam();
    const std::string name = "Ger\xC3\xA4te \xE6\x97\xA5";
    EXPECT_EQ(host_answers({set, name, get}), line(fs::current_path() / path_from_utf8(name)));
    EXPECT_EQ(host_answers({get}, {{variable, name}}), line(fs::current_path() / path_from_utf8(name)));
}

INSTANTIATE_TEST_SUITE_P(gen, DIRECTORIES,
                         testing::Values(DIRECTORY{"TESSARY_INSTALL_DIR", "set-install", "install"},
                                         DIRECTORY{"TESSARY_DEVICE_DB_DIR", "set-device-db", "device-db"},
                                         DIRECTORY{"TESSARY_MODULE_DIR", "set-module", "module"}),
                         [](const auto& test) {
                             std::string name = test.param.get;
                             std::erase(name, '-');
                             return name;
                         });

TEST(gen_path, DeviceDatabasesAreBelowTheInstallation) {
    const SCRATCH scratch;
    const std::string install = scratch.directory().string();
    const std::string expected = install + "/devices\n";
    EXPECT_EQ(host_answers({"device-db"}, {{"TESSARY_INSTALL_DIR", install}}), expected);
    EXPECT_EQ(host_answers({"set-install", install, "device-db"}), expected);
}

TEST(gen_path, BuildTreeIsLaidOutAsAnInstallation) {
    EXPECT_EQ(host_answers({"install"}), line(fs::absolute(TEST_INSTALL_DIR)));
    std::string device_db = host_answers({"device-db"});
    device_db.pop_back();
    EXPECT_TRUE(fs::equivalent(device_db, TEST_DEVICES_DIR)) << device_db;
    EXPECT_EQ(host_answers({"module"}), line(fs::absolute(TEST_HOST_LIBRARY).parent_path()));
}

namespace {

/// Where an installation has its libraries. Windows looks for them beside the program.
#if defined(_WIN32)
constexpr const char* LIBRARIES = "bin";
#else
constexpr const char* LIBRARIES = "lib";
#endif

/// A copy of the host library and of the probe below the root of an installation.
std::string installed_probe(const fs::path& root) {
    fs::create_directories(root / "bin");
    fs::create_directories(root / LIBRARIES);
    fs::copy_file(TEST_HOST_LIBRARY, root / LIBRARIES / TEST_HOST_LIBRARY_NAME);
    fs::copy_file(TEST_HOST_PROBE, root / "bin" / "probe");
    return utf8_from_path(root / "bin" / "probe");
}

/// What the probe of an installation answers. Other libraries that it needs are found where they are built.
std::string installed_answers(const std::string& probe, const std::vector<std::string>& operations) {
    return host_answers(operations, {{"PATH", fs::path(TEST_HOST_LIBRARY).parent_path().string()}}, probe);
}

}  // namespace

TEST(gen_path, InstallationMovesWithItsFiles) {
    const SCRATCH scratch;
    const fs::path root = scratch.directory() / path_from_utf8("a moved \xC3\xBC installation");
    const std::string probe = installed_probe(root);
    fs::create_directories(root / "share" / "tessary");
    const fs::path install = root / "share" / "tessary";
    EXPECT_EQ(installed_answers(probe, {"install", "device-db", "module"}),
              line(install) + utf8_from_path(install) + "/devices\n" + line(root / LIBRARIES));
}

TEST(gen_path, NearestDirectoryWithTheDataWins) {
    const SCRATCH scratch;
    const fs::path root = scratch.directory() / "outer" / "inner";
    const std::string probe = installed_probe(root);
    fs::create_directories(scratch.directory() / "outer" / "share" / "tessary");
    EXPECT_EQ(installed_answers(probe, {"install"}), line(scratch.directory() / "outer" / "share" / "tessary"));
    fs::create_directories(root / "share" / "tessary");
    EXPECT_EQ(installed_answers(probe, {"install"}), line(root / "share" / "tessary"));
    fs::create_directories(root / LIBRARIES / "share" / "tessary");
    EXPECT_EQ(installed_answers(probe, {"install"}), line(root / LIBRARIES / "share" / "tessary"));
}

TEST(gen_path, WithoutDataTheInstallationIsWhereTheyWouldBe) {
    const SCRATCH scratch;
    const fs::path root = scratch.directory() / "somewhere";
    const std::string probe = installed_probe(root);
    scratch.write("somewhere/share/tessary", "a file, not a directory");
    EXPECT_EQ(installed_answers(probe, {"install", "module"}),
              line(root / "share" / "tessary") + line(root / LIBRARIES));
}

#if !defined(_WIN32)

// A library that was looked for from the current directory is where it was, whatever that is by now.
TEST(gen_path, StaysWhereItWasLoadedFrom) {
    const SCRATCH scratch;
    const fs::path root = scratch.directory() / "somewhere";
    const std::string probe = installed_probe(root);
    fs::create_directories(root / "share" / "tessary");
    fs::create_directories(scratch.directory() / "elsewhere");
    const PROCESS_RESULT result = run_process(
        {{probe, "enter", scratch.path("elsewhere"), "install", "module"}, "", {{"LD_LIBRARY_PATH", LIBRARIES}}, root});
    EXPECT_EQ(result.output, line(root / "share" / "tessary") + line(root / LIBRARIES)) << result.errors;
}

#endif
