#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>

#include "faults/both_temporaries.h"
#include "faults/every_fault.h"
#include "fio.h"
#include "host/replacing.h"
#include "support/ordinary_user_posix.h"
#include "support/scratch.h"

// Files that are replaced on a system that fails, and in places where others have been.

namespace fs = std::filesystem;

namespace {

using ReplacementFaults = BOTH_TEMPORARIES;

INSTANTIATE_TEST_SUITE_P(Temporaries, ReplacementFaults, BOTH_KINDS, name_of_kind);

TEST_P(ReplacementFaults, TheResultIsTheTruth) {
    const SCRATCH scratch;
    for (const int error : {EIO, EMFILE, ENOSPC, EINTR}) {
        with_each_call_failing<bool>(
            error, [&] { scratch.write("file", "old"); }, [&] { return replace(scratch.path("file"), "new"); },
            [&](bool result, const char* call) {
                EXPECT_EQ(read_file(scratch.path("file")), result ? "new" : "old");
                EXPECT_EQ(scratch.file_count(), 1U);
                EXPECT_TRUE(result || *call != '\0');
            });
    }
}

TEST_P(ReplacementFaults, TheResultIsTheTruthThroughALink) {
    const SCRATCH scratch;
    fs::create_symlink("file", scratch.path("link"));
    scratch.write(".tessary-1-1", "left behind");
    with_each_call_failing<bool>(
        EIO, [&] { scratch.write("file", "old"); }, [&] { return replace(scratch.path("link"), "new"); },
        [&](bool result, const char* call) {
            EXPECT_EQ(read_file(scratch.path("file")), result ? "new" : "old");
            EXPECT_TRUE(fs::is_symlink(scratch.path("link")));
            EXPECT_EQ(scratch.file_count(), 2U);
            EXPECT_TRUE(result || *call != '\0');
        });
}

TEST_P(ReplacementFaults, NamesThatAreTakenAreNotTriedForever) {
    const SCRATCH scratch;
    for (std::size_t number = 1; number < 20; ++number) {
        scratch.write("file", "old");
        bool result = false;
        {
            const FAILING_CALL fault(number, EEXIST, true);
            result = replace(scratch.path("file"), "new");
        }
        EXPECT_EQ(read_file(scratch.path("file")), result ? "new" : "old") << number;
        EXPECT_EQ(scratch.file_count(), 1U) << number;
    }
}

TEST_P(ReplacementFaults, AWriteThatFailedIsNotCommitted) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    FIO_REPLACEMENT replacement(file);
    {
        const FAILING_CALLS_OF fault("write", EIO);
        EXPECT_FALSE(write(replacement, "new"));
    }
    EXPECT_FALSE(replacement.commit());
    EXPECT_EQ(read_file(file), "old");
}

/// A file that may be written, where none may be made.
class InPlaceFaults : public testing::Test {
protected:
    InPlaceFaults() {
        fs::create_directory(m_directory);
        prepare();
    }
    ~InPlaceFaults() override { EXPECT_EQ(::chmod(m_directory.c_str(), 0777), 0); }

    void prepare() const {
        ASSERT_EQ(::chmod(m_directory.c_str(), 0777), 0);
        m_scratch.write("closed/file", "old");
        ASSERT_EQ(::chmod(m_file.c_str(), 0666), 0);
        ASSERT_EQ(::chmod(m_directory.c_str(), 0555), 0);
    }
    bool replace_file() const {
        const ORDINARY_USER user;
        return replace(m_file, "the new contents");
    }

    const SCRATCH m_scratch;
    const std::string m_directory = m_scratch.path("closed");
    const std::string m_file = m_scratch.path("closed/file");
};

TEST_F(InPlaceFaults, TheResultIsTheTruth) {
    for (const int error : {EIO, EMFILE, EINTR, EOPNOTSUPP}) {
        with_each_call_failing<bool>(
            error, [this] { prepare(); }, [this] { return replace_file(); },
            [this](bool result, const char* /*call*/) {
                EXPECT_TRUE(!result || read_file(m_file) == "the new contents");
                EXPECT_TRUE(replace_file());
                EXPECT_EQ(read_file(m_file), "the new contents");
                EXPECT_EQ(m_scratch.file_count(), 1U);
            });
    }
}

TEST_F(InPlaceFaults, WithoutRoomTheOldFileStays) {
    for (const int error : {ENOSPC, EDQUOT, EFBIG}) {
        bool was_full = false;
        int reason = 0;
        with_each_call_failing<bool>(
            error, [this] { prepare(); },
            [&] {
                const bool replaced = replace_file();
                reason = errno;
                return replaced;
            },
            [&](bool result, const char* call) {
                if (std::string_view(call) == "posix_fallocate") {
                    was_full = true;
                    EXPECT_EQ(reason, error);
                    EXPECT_FALSE(result);
                    EXPECT_EQ(read_file(m_file), "old");
                }
            });
        EXPECT_TRUE(was_full);
    }
}

TEST_F(InPlaceFaults, FaultsThatStayAreNoSuccess) {
    for (const int error : {EIO, ENOSPC}) {
        for (std::size_t number = 1; number < 30; ++number) {
            prepare();
            bool result = false;
            bool happened = false;
            {
                const FAILING_CALL fault(number, error, true);
                result = replace_file();
                happened = fault.happened();
            }
            EXPECT_EQ(result, !happened) << number;
            EXPECT_TRUE(!result || read_file(m_file) == "the new contents") << number;
        }
    }
}

TEST_P(ReplacementFaults, AllocationsLeaveNothingOver) {
    const SCRATCH scratch;
    bool result = false;
    const std::string path = scratch.path("file");
    with_each_allocation_failing(
        [&] {
            scratch.write("file", "old");
            result = false;
        },
        [&] { result = replace(path, "new"); },
        [&](bool /*ended*/) {
            EXPECT_EQ(read_file(path), result ? "new" : "old");
            EXPECT_EQ(scratch.file_count(), 1U);
        });
}

TEST_P(ReplacementFaults, NobodyReadsTheTemporaryOfAPrivateFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "secret");
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    const FIO_REPLACEMENT replacement(file);
    struct stat status {};
    ASSERT_EQ(::stat(replacement.temporary().fullpath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_P(ReplacementFaults, NamesOfTemporariesDoNotRunOut) {
    const SCRATCH scratch;
    for (int i = 1; i <= 300; ++i) {
        scratch.write(".tessary-" + std::to_string(::getpid()) + "-" + std::to_string(i), "");
    }
    EXPECT_TRUE(replace(scratch.path("file"), "new"));
}

TEST_P(ReplacementFaults, WhatOthersHaveLeftIsNotSwept) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can make somebody else's file";
    }
    const SCRATCH scratch;
    const std::string others = scratch.write(".tessary-1", "somebody else's");
    const std::string own = scratch.write(".tessary-2", "one's own");
    for (const std::string& file : {others, own}) {
        fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(25));
    }
    ASSERT_EQ(::chown(others.c_str(), 65534, 65534), 0);
    EXPECT_TRUE(replace(scratch.path("file"), "new"));
    EXPECT_TRUE(fs::exists(others));
    EXPECT_FALSE(fs::exists(own));
}

/// A file of somebody else keeps its owner where it may be written; in a directory in which one may write, another one may
/// take its place.
TEST_P(ReplacementFaults, AFileOfSomebodyElse) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can make somebody else's file";
    }
    const SCRATCH scratch;
    ASSERT_EQ(::chmod(scratch.directory().c_str(), 0777), 0);
    const auto owner_after = [&scratch](mode_t mode) {
        const std::string file = scratch.write("file", "old");
        EXPECT_EQ(::chmod(file.c_str(), mode), 0);
        {
            const ORDINARY_USER user;
            EXPECT_TRUE(replace(file, "new"));
        }
        struct stat status {};
        EXPECT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(read_file(file), "new");
        EXPECT_EQ(status.st_mode & 0777U, mode);
        return status.st_uid;
    };
    EXPECT_EQ(owner_after(0666), 0U);
    EXPECT_EQ(owner_after(0644), 65534U);
    const ORDINARY_USER user;
    EXPECT_TRUE(replace(scratch.path("file"), "one's own"));
    EXPECT_EQ(read_file(scratch.path("file")), "one's own");
}

/// Where everybody may make files, nobody may replace somebody else's.
TEST_P(ReplacementFaults, AFileOfSomebodyElseStaysInAStickyDirectory) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can make somebody else's file";
    }
    const SCRATCH scratch;
    ASSERT_EQ(::chmod(scratch.directory().c_str(), 01777), 0);
    const std::string file = scratch.write("file", "old");
    const ORDINARY_USER user;
    EXPECT_FALSE(replace(file, "new"));
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST_P(ReplacementFaults, LinkOfSomebodyElseWhereEverybodyWritesIsRefused) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can make somebody else's link";
    }
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    fs::create_directory(scratch.path("open"));
    ASSERT_EQ(::chmod(scratch.path("open").c_str(), 01777), 0);
    const std::string link = scratch.path("open/link");
    fs::create_symlink(file, link);
    EXPECT_TRUE(replace(link, "through one's own link"));
    ASSERT_EQ(::lchown(link.c_str(), 65534, 65534), 0);
    EXPECT_FALSE(replace(link, "through a trap"));
    EXPECT_EQ(read_file(file), "through one's own link");
    EXPECT_TRUE(fs::is_symlink(link));
    ASSERT_EQ(::chmod(scratch.path("open").c_str(), 0775), 0);
    EXPECT_TRUE(replace(link, "through a link that not everybody could have made"));
    ASSERT_EQ(::chmod(scratch.path("open").c_str(), 01777), 0);
    ASSERT_EQ(::chown(scratch.path("open").c_str(), 65534, 65534), 0);
    EXPECT_TRUE(replace(link, "through a link of the directory's owner"));
}

TEST_P(ReplacementFaults, AsManyLinksAreFollowedAsTheSystemFollows) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    std::string last = "file";
    for (int i = 1; i <= 41; ++i) {
        const std::string link = "link" + std::to_string(i);
        fs::create_symlink(last, scratch.path(link));
        last = link;
    }
    EXPECT_TRUE(replace(scratch.path("link40"), "new"));
    EXPECT_EQ(read_file(file), "new");
    EXPECT_FALSE(std::ifstream(scratch.path("link41")).is_open());
    EXPECT_FALSE(replace(scratch.path("link41"), "too many"));
    EXPECT_EQ(read_file(file), "new");
}

}  // namespace
