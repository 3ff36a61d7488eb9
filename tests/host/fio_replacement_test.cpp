#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "fio.h"
#include "host/replacing.h"
#include "support/scratch.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

/// Expects that `target` cannot be replaced.
void expect_refused(const std::string& target) {
    FIO_REPLACEMENT replacement(target);
    EXPECT_EQ(replacement.temporary().fullpath(), "") << target;
    EXPECT_FALSE(write(replacement, "new")) << target;
    EXPECT_FALSE(replacement.commit()) << target;
}

}  // namespace

TEST(fio_replacement, CreatesAFile) {
    const SCRATCH scratch;
    EXPECT_TRUE(replace(scratch.path("file"), "contents"));
    EXPECT_EQ(read_file(scratch.path("file")), "contents");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, ReplacesAFileOnlyWithTheCommit) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old and longer");
    FIO_REPLACEMENT replacement(file);
    EXPECT_EQ(read_file(file), "old and longer");
    ASSERT_TRUE(write(replacement, "new"));
    EXPECT_EQ(read_file(file), "old and longer");
    ASSERT_TRUE(replacement.commit());
    EXPECT_EQ(read_file(file), "new");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, WithoutCommitNothingHappens) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    {
        FIO_REPLACEMENT untouched(file);
        FIO_REPLACEMENT written(file);
        FIO_REPLACEMENT other(scratch.path("never"));
        EXPECT_TRUE(write(written, "new"));
        EXPECT_TRUE(write(other, "new"));
        EXPECT_FALSE(fs::exists(scratch.path("never")));
    }
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, ExceptionLeavesNothingOver) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    try {
        FIO_REPLACEMENT replacement(file);
        EXPECT_TRUE(write(replacement, "new"));
        throw std::runtime_error("on the way");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, TemporaryIsBesideTheTargetOrHasNoName) {
    const SCRATCH scratch;
    const FIO_REPLACEMENT a(scratch.path("file"));
    const FIO_REPLACEMENT b(scratch.path("file"));
    if (fs::hard_link_count(path_from_utf8(a.temporary().fullpath())) == 0) {
        EXPECT_EQ(scratch.file_count(), 0U);
    } else {
        EXPECT_EQ(fs::path(a.temporary().fullpath()).parent_path(), scratch.directory());
        EXPECT_EQ(scratch.file_count(), 2U);
    }
    EXPECT_NE(a.temporary().fullpath(), b.temporary().fullpath());
    EXPECT_EQ(read_file(a.temporary().fullpath()), "");
    EXPECT_FALSE(fs::exists(scratch.path("file")));
}

TEST(fio_replacement, OthersMayWriteTheTemporary) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    FIO_REPLACEMENT outer(file);
    ASSERT_TRUE(replace(outer.temporary().fullpath(), "through the temporary"));
    EXPECT_EQ(read_file(file), "old");
    ASSERT_TRUE(outer.commit());
    EXPECT_EQ(read_file(file), "through the temporary");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, LastWriteCounts) {
    const SCRATCH scratch;
    FIO_REPLACEMENT replacement(scratch.path("file"));
    EXPECT_TRUE(write(replacement, "first and longer"));
    EXPECT_TRUE(write(replacement, "last"));
    EXPECT_TRUE(replacement.commit());
    EXPECT_EQ(read_file(scratch.path("file")), "last");
}

TEST(fio_replacement, OneCommitOnly) {
    const SCRATCH scratch;
    FIO_REPLACEMENT replacement(scratch.path("file"));
    EXPECT_TRUE(write(replacement, "once"));
    EXPECT_TRUE(replacement.commit());
    EXPECT_EQ(replacement.temporary().fullpath(), "");
    EXPECT_FALSE(write(replacement, "twice"));
    EXPECT_FALSE(replacement.commit());
    EXPECT_EQ(read_file(scratch.path("file")), "once");
}

TEST(fio_replacement, EmptyAndLargeContents) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    std::string large_contents(5000000, '\0');
    for (std::size_t i = 0; i < large_contents.size(); ++i) {
        large_contents[i] = static_cast<char>(i * 31 >> 3);
    }
    EXPECT_TRUE(replace(file, large_contents));
    EXPECT_TRUE(read_file(file) == large_contents);
    EXPECT_TRUE(replace(file, ""));
    EXPECT_EQ(read_file(file), "");
    FIO_REPLACEMENT unwritten(scratch.path("unwritten"));
    EXPECT_TRUE(unwritten.commit());
    EXPECT_EQ(read_file(scratch.path("unwritten")), "");
}

TEST(fio_replacement, NamesOfEveryKind) {
    const SCRATCH scratch;
    for (const char* name : {"with blank", "Ger\xC3\xA4te/\xE6\x97\xA5\xE6\x9C\xAC.pcf", "%s%n", "XXXXXX", "-"}) {
        fs::create_directories(path_from_utf8(scratch.path(name)).parent_path());
        EXPECT_TRUE(replace(scratch.path(name), name)) << name;
        EXPECT_EQ(read_file(fio_get_unc_full_path(scratch.path(name))), name);
    }
    EXPECT_EQ(scratch.file_count(), 5U);
}

TEST(fio_replacement, DirectoryIsRefused) {
    const SCRATCH scratch;
    fs::create_directory(scratch.path("directory"));
    expect_refused(scratch.path("directory"));
    EXPECT_TRUE(fs::is_directory(scratch.path("directory")));
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(fio_replacement, NoDirectoryToWriteIn) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "x");
    expect_refused(scratch.path("none/file"));
    expect_refused(file + "/below");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, EmptyPathIsRefused) {
    const SCRATCH scratch;
    const fs::path before = fs::current_path();
    fs::current_path(scratch.directory());
    expect_refused("");
    fs::current_path(before);
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(fio_replacement, ReadersSeeOneOfTheFilesWhole) {
    const SCRATCH scratch;
    const std::string a(50000, 'a');
    const std::string b(70000, 'b');
    const std::string file = scratch.write("file", a);
    std::vector<std::thread> writers;
    writers.reserve(2);
    for (int writer = 0; writer < 2; ++writer) {
        writers.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_TRUE(replace(file, round % 2 == 0 ? b : a));
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        const std::string seen = read_file(file);
        EXPECT_TRUE(seen == a || seen == b) << seen.size() << " bytes";
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_replacement, SweepsStaleTemporariesAndLeavesOthers) {
    const SCRATCH scratch;
    const std::string young = scratch.write(".tessary-1", "young");
    const std::string foreign = scratch.write("tessary-old", "not ours");
    const std::string lock = scratch.write(".tessary-lock", "no temporary");
    const std::string stale = scratch.write(".tessary-2", "left behind");
    const std::string ended = scratch.write(".tessary-3", "left behind");
    const std::string no_file = scratch.path(".tessary-4");
    fs::create_directories(no_file);
    const FIO_REPLACEMENT live(scratch.path("other"));
    fs::last_write_time(stale, fs::file_time_type::clock::now() - std::chrono::hours(25));
    fs::last_write_time(ended, fs::file_time_type::clock::now() - std::chrono::hours(1000));
    for (const std::string& other : {foreign, lock}) {
        fs::last_write_time(other, fs::file_time_type::clock::now() - std::chrono::hours(1000));
    }
    std::error_code no_time;  // Windows gives none to directories
    fs::last_write_time(no_file, fs::file_time_type::clock::now() - std::chrono::hours(1000), no_time);
    ASSERT_TRUE(replace(scratch.path("file"), "new"));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(stale.c_str()));
    EXPECT_FALSE(FIO_FILE_SYSTEM::exists(ended.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(young.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(foreign.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(lock.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(no_file.c_str()));
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(live.temporary().fullpath().c_str()));
}
