#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>

#include "faults/every_fault.h"
#include "fio.h"
#include "host/replacing.h"
#include "support/scratch.h"

// Files that are replaced on a system that fails, and in places where others have been.

namespace fs = std::filesystem;

namespace {

TEST(ReplacementFaults, TheResultIsTheTruth) {
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

TEST(ReplacementFaults, AllocationsLeaveNothingOver) {
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

TEST(ReplacementFaults, NobodyReadsTheTemporaryOfAPrivateFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "secret");
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    const FIO_REPLACEMENT replacement(file);
    struct stat status {};
    ASSERT_EQ(::stat(replacement.temporary().fullpath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(ReplacementFaults, NamesOfTemporariesDoNotRunOut) {
    const SCRATCH scratch;
    for (int i = 1; i <= 300; ++i) {
        scratch.write(".tessary-" + std::to_string(::getpid()) + "-" + std::to_string(i), "");
    }
    EXPECT_TRUE(replace(scratch.path("file"), "new"));
}

TEST(ReplacementFaults, LinkOfSomebodyElseWhereEverybodyWritesIsRefused) {
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
}

}  // namespace
