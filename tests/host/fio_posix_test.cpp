#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>

#include "fio.h"
#include "host/replacing.h"
#include "support/scratch.h"
#include "support/unnamed_files_posix.h"

// What only exists on systems with permissions, links and signals.

namespace fs = std::filesystem;

namespace {

mode_t mode_of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

/// A process that does something and is waited for at the latest when this object goes.
class CHILD {
public:
    explicit CHILD(const std::function<bool()>& operation) : m_id(::fork()) {
        if (m_id == 0) {
            ::_exit(operation() ? 0 : 1);
        }
    }
    ~CHILD() { wait(); }
    CHILD(const CHILD&) = delete;
    CHILD& operator=(const CHILD&) = delete;

    void kill() const { ::kill(m_id, SIGKILL); }

    /// What waitpid says of its end.
    int wait() {
        if (m_id > 0) {
            ::waitpid(m_id, &m_status, 0);
            m_id = 0;
        }
        return m_status;
    }

    bool succeeded() { return wait() == 0; }
    bool was_killed() { return WIFSIGNALED(wait()) && WTERMSIG(wait()) == SIGKILL; }

private:
    pid_t m_id;
    int m_status = -1;
};

/// Runs `operation` as somebody whom permissions bind.
bool succeeds_without_privileges(const std::function<bool()>& operation) {
    constexpr uid_t NOBODY = 65534;
    CHILD child([&] { return (::geteuid() != 0 || ::setuid(NOBODY) == 0) && operation(); });
    return child.succeeded();
}

constexpr fs::perms NOT_WRITABLE = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                   fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;

}  // namespace

TEST(fio_posix, PathsThroughLinksNameWhatTheSystemNames) {
    const SCRATCH scratch;
    scratch.write("deep/er/file", "x");
    scratch.write("deep/beside", "12345");
    fs::create_directory_symlink(scratch.directory() / "deep" / "er", scratch.directory() / "link");
    const std::string path = scratch.path("link/../beside");
    ASSERT_EQ(read_file(path), "12345");  // ".." is the parent of what the link names
    FIO_STATUS status;
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(path.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::status(path.c_str(), &status));
    EXPECT_EQ(status.size, 5U);
}

TEST(fio_posix, NamesArePlainBytes) {
    const SCRATCH scratch;
    const std::string path = scratch.path("\xFF\xFE\x80.bin");
    EXPECT_TRUE(replace(path, "x"));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(path.c_str()));
    EXPECT_EQ(read_file(path), "x");
}

TEST(fio_posix, StatusFollowsLinks) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "123");
    fs::create_symlink(file, scratch.path("link"));
    fs::create_symlink(scratch.path("none"), scratch.path("dangling"));
    FIO_STATUS status;
    ASSERT_TRUE(FIO_FILE_SYSTEM::status(scratch.path("link").c_str(), &status));
    EXPECT_EQ(status.size, 3U);
    EXPECT_TRUE(status.regular);
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(scratch.path("dangling").c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::status(scratch.path("dangling").c_str(), &status));
}

TEST(fio_posix, DevicesAndPipesAreNoRegularFiles) {
    const SCRATCH scratch;
    ASSERT_EQ(::mkfifo(scratch.path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {std::string("/dev/null"), scratch.path("pipe")}) {
        FIO_STATUS status{77, true};
        ASSERT_TRUE(FIO_FILE_SYSTEM::status(path.c_str(), &status)) << path;
        EXPECT_FALSE(status.regular) << path;
        EXPECT_EQ(status.size, 0U) << path;
    }
}

TEST(fio_posix, DevicesAndPipesReceiveWhatIsWritten) {
    const SCRATCH scratch;
    const std::string pipe = scratch.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = read_file(pipe); });
    EXPECT_TRUE(replace(pipe, "through the pipe"));
    reader.join();
    EXPECT_EQ(received, "through the pipe");
    EXPECT_TRUE(replace("/dev/null", "x"));
    EXPECT_FALSE(replace("/dev/full", "x"));
    struct stat status {};
    ASSERT_EQ(::lstat(pipe.c_str(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    ASSERT_EQ(::lstat("/dev/null", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(fio_posix, ReplacementKeepsPermissions) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    for (const mode_t mode : {0600U, 0644U, 0664U, 0666U, 0640U, 0755U, 0700U, 0606U}) {
        ASSERT_EQ(::chmod(file.c_str(), mode), 0);
        ASSERT_TRUE(replace(file, "new"));
        EXPECT_EQ(mode_of(file), mode);
    }
}

TEST(fio_posix, NewFileGetsThePermissionsOfTheUsersMask) {
    const SCRATCH scratch;
    for (const mode_t mask : {0022U, 0077U, 0027U, 0002U, 0000U}) {
        const mode_t before = ::umask(mask);
        const std::string file = scratch.path("new");
        const bool replaced = replace(file, "x");
        const mode_t after = ::umask(before);
        EXPECT_TRUE(replaced);
        EXPECT_EQ(mode_of(file), 0666 & ~mask);
        EXPECT_EQ(after, mask);
        fs::remove(file);
    }
}

TEST(fio_posix, ReplacementFollowsLinks) {
    const SCRATCH scratch;
    const std::string file = scratch.write("real/file", "old");
    fs::create_symlink("real/file", scratch.path("relative"));
    fs::create_symlink(scratch.path("relative"), scratch.path("chain"));
    for (const char* link : {"relative", "chain"}) {
        ASSERT_TRUE(replace(scratch.path(link), link));
        EXPECT_TRUE(fs::is_symlink(scratch.path(link)));
        EXPECT_FALSE(fs::is_symlink(file));
        EXPECT_EQ(read_file(file), link);
    }
    EXPECT_EQ(fs::read_symlink(scratch.path("relative")), "real/file");
}

TEST(fio_posix, ReplacementThroughALinkToNothingCreatesWhatItNames) {
    const SCRATCH scratch;
    fs::create_symlink("not-yet", scratch.path("link"));
    ASSERT_TRUE(replace(scratch.path("link"), "new"));
    EXPECT_TRUE(fs::is_symlink(scratch.path("link")));
    EXPECT_EQ(read_file(scratch.path("link")), "new");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(scratch.path("not-yet"))));
}

TEST(fio_posix, LinkToADirectoryIsRefused) {
    const SCRATCH scratch;
    fs::create_directory(scratch.path("directory"));
    fs::create_directory_symlink("directory", scratch.path("link"));
    EXPECT_FALSE(replace(scratch.path("link"), "x"));
    EXPECT_TRUE(fs::is_symlink(scratch.path("link")));
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(fio_posix, LinksInACircleAreRefused) {
    const SCRATCH scratch;
    fs::create_symlink("b", scratch.path("a"));
    fs::create_symlink("a", scratch.path("b"));
    EXPECT_FALSE(replace(scratch.path("a"), "x"));
    EXPECT_TRUE(fs::is_symlink(scratch.path("a")));
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(fio_posix, AWritableFileInAnUnwritableDirectoryIsWrittenInPlace) {
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old and longer");
    fs::permissions(file, fs::perms::all);
    fs::permissions(scratch.path("directory"), NOT_WRITABLE);
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    for (const std::string contents : {"new", "new and much longer", ""}) {
        EXPECT_TRUE(succeeds_without_privileges([&] { return replace(file, contents); }));
        EXPECT_EQ(read_file(file), contents);
    }
    struct stat after {};
    ASSERT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(scratch.file_count(), 1U);
    fs::permissions(scratch.path("directory"), fs::perms::owner_all);
}

TEST(fio_posix, InPlaceNothingHappensBeforeTheCommit) {
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old");
    fs::permissions(file, fs::perms::all);
    fs::permissions(scratch.path("directory"), NOT_WRITABLE);
    EXPECT_TRUE(succeeds_without_privileges([&] {
        FIO_REPLACEMENT replacement(file);
        return write(replacement, "new") && read_file(file) == "old" && replacement.temporary().fullpath().empty();
    }));
    EXPECT_EQ(read_file(file), "old");
    fs::permissions(scratch.path("directory"), fs::perms::owner_all);
}

TEST(fio_posix, InPlaceAFullDiskLeavesTheOldFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old");
    fs::permissions(file, fs::perms::all);
    fs::permissions(scratch.path("directory"), NOT_WRITABLE);
    EXPECT_FALSE(succeeds_without_privileges([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        return ::setrlimit(RLIMIT_FSIZE, &limit) != 0 || replace(file, std::string(2000, 'x'));
    }));
    EXPECT_EQ(read_file(file), "old");
    fs::permissions(scratch.path("directory"), fs::perms::owner_all);
}

TEST(fio_posix, AFileKeepsItsOwner) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root has files of several owners";
    }
    constexpr uid_t SOMEBODY = 12345;
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old");
    fs::permissions(file, fs::perms::all);
    fs::permissions(scratch.path("directory"), fs::perms::all);
    ASSERT_EQ(::chown(file.c_str(), SOMEBODY, SOMEBODY), 0);
    const auto owner = [&file] {
        struct stat status {};
        return ::stat(file.c_str(), &status) == 0 ? status.st_uid : 0;
    };
    EXPECT_TRUE(succeeds_without_privileges([&] { return replace(file, "by nobody"); }));
    EXPECT_EQ(read_file(file), "by nobody");
    EXPECT_EQ(owner(), SOMEBODY);
    EXPECT_TRUE(replace(file, "by root"));
    EXPECT_EQ(read_file(file), "by root");
    EXPECT_EQ(owner(), SOMEBODY);
    EXPECT_EQ(scratch.file_count(), 1U);
}

// What a group was allowed to do is not for another one.
TEST(fio_posix, AGroupThatCannotBeKeptIsNotReplacedByAnother) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root makes files of groups that are not its own";
    }
    constexpr uid_t NOBODY = 65534;
    constexpr gid_t STRANGERS = 12345;
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old");
    fs::permissions(scratch.path("directory"), fs::perms::all);
    struct CASE {
        mode_t before;
        mode_t after;
    };
    for (const auto& [before, after] : {CASE{0640, 0600}, CASE{0664, 0644}, CASE{0646, 0646}, CASE{02775, 0755}}) {
        ASSERT_EQ(::chown(file.c_str(), NOBODY, STRANGERS), 0);
        ASSERT_EQ(::chmod(file.c_str(), before), 0);
        EXPECT_TRUE(succeeds_without_privileges([&] { return replace(file, "new"); }));
        struct stat status {};
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, NOBODY);
        EXPECT_NE(status.st_gid, STRANGERS);
        EXPECT_EQ(status.st_mode & 07777, after);

        ASSERT_EQ(::chown(file.c_str(), NOBODY, STRANGERS), 0);
        ASSERT_EQ(::chmod(file.c_str(), before), 0);
        EXPECT_TRUE(replace(file, "by root"));
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_gid, STRANGERS);
        EXPECT_EQ(status.st_mode & 07777, before);
    }
}

TEST(fio_posix, UnwritableDirectoryIsRefused) {
    const SCRATCH scratch;
    const std::string file = scratch.write("directory/file", "old");
    fs::permissions(file, fs::perms::all);
    fs::permissions(file, fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(scratch.path("directory"), NOT_WRITABLE);
    EXPECT_FALSE(succeeds_without_privileges([&] { return replace(file, "new"); }));
    EXPECT_FALSE(succeeds_without_privileges([&] { return replace(scratch.path("directory/other"), "new"); }));
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
    fs::permissions(scratch.path("directory"), fs::perms::owner_all);
}

TEST(fio_posix, WritableDirectoryIsEnough) {  // so that the refusal above has no other reason
    const SCRATCH scratch;
    fs::create_directory(scratch.path("directory"));
    fs::permissions(scratch.path("directory"), fs::perms::all);
    EXPECT_TRUE(succeeds_without_privileges([&] { return replace(scratch.path("directory/file"), "new"); }));
    EXPECT_EQ(read_file(scratch.path("directory/file")), "new");
}

TEST(fio_posix, FailedWriteLeavesTheOldFileAndNothingElse) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    CHILD child([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && !replace(file, std::string(5000, 'x'));
    });
    EXPECT_TRUE(child.succeeded());
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_posix, ReaderKeepsTheFileThatItOpened) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    std::ifstream reader(file, std::ios::binary);
    ASSERT_TRUE(replace(file, "new"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
    EXPECT_EQ(read_file(file), "new");
}

TEST(fio_posix, KilledAtEveryStep) {
    for (const int step : {0, 1, 2, 3}) {
        const SCRATCH scratch;
        const std::string file = scratch.write("file", "old");
        CHILD child([&] {
            FIO_REPLACEMENT replacement(file);
            for (int done = 0; done < step; ++done) {
                if (!(done == 2 ? replacement.commit() : write(replacement, std::string(1000, 'n')))) {
                    return false;
                }
            }
            ::raise(SIGKILL);
            return false;
        });
        ASSERT_TRUE(child.was_killed());
        EXPECT_EQ(read_file(file), step == 3 ? std::string(1000, 'n') : "old") << step;
        EXPECT_EQ(scratch.file_count(), has_unnamed_files(scratch.directory()) || step == 3 ? 1U : 2U) << step;
        ASSERT_TRUE(replace(file, "later"));  // and what the dead left behind is in nobody's way
        EXPECT_EQ(read_file(file), "later");
    }
}

TEST(fio_posix, KilledAtAnyTime) {
    const std::string a(200000, 'a');
    const std::string b(300000, 'b');
    for (int round = 0; round < 30; ++round) {
        const SCRATCH scratch;
        const std::string file = scratch.write("file", a);
        CHILD child([&] {
            while (replace(file, b) && replace(file, a)) {
            }
            return false;
        });
        std::this_thread::sleep_for(std::chrono::microseconds(500 + round * 311));
        child.kill();
        ASSERT_TRUE(child.was_killed());
        const std::string seen = read_file(file);
        ASSERT_TRUE(seen == a || seen == b) << seen.size() << " bytes";
        EXPECT_LE(scratch.file_count(), 2U);
    }
}
