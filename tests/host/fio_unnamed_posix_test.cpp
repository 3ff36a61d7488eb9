#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "directory_lock.h"
#include "file_reader.h"
#include "fio.h"
#include "host/replacing.h"
#include "support/closed_streams_posix.h"
#include "support/scratch.h"
#include "support/unnamed_files_posix.h"

// Files that have no name: temporaries, and what is open in a process after it has been removed.

namespace fs = std::filesystem;

namespace {

/// A file that is open for reading and writing until this goes.
class OPEN_FILE {
public:
    explicit OPEN_FILE(const std::string& path) : m_number(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        EXPECT_GE(m_number, 0) << path;
    }
    ~OPEN_FILE() { ::close(m_number); }
    OPEN_FILE(const OPEN_FILE&) = delete;
    OPEN_FILE& operator=(const OPEN_FILE&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_number); }

private:
    int m_number;
};

nlink_t names_of(const FIO_REPLACEMENT& replacement) {
    struct stat status {};
    EXPECT_EQ(::stat(replacement.temporary().fullpath().c_str(), &status), 0);
    return status.st_nlink;
}

/// Whether `operation` succeeds in a process of its own.
bool succeeds_elsewhere(const std::function<bool()>& operation) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(operation() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

}  // namespace

TEST(fio_unnamed, ARemovedFileIsWrittenInPlace) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old and longer");
    const OPEN_FILE open(file);
    fs::remove(file);
    const std::string another = scratch.write("file (deleted)", "what the system's link seems to name");
    fs::create_symlink(open.path(), scratch.path("link"));
    for (const std::string& path : {open.path(), scratch.path("link")}) {
        FIO_REPLACEMENT replacement(path);
        EXPECT_EQ(replacement.temporary().fullpath(), "");
        EXPECT_TRUE(write(replacement, path));
        EXPECT_NE(read_file(open.path()), path);
        EXPECT_TRUE(replacement.commit());
        EXPECT_EQ(read_file(open.path()), path);
    }
    EXPECT_EQ(read_file(another), "what the system's link seems to name");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_unnamed, AnOpenFileWithANameIsReplaced) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    const OPEN_FILE open(file);
    EXPECT_TRUE(replace(open.path(), "new"));
    EXPECT_EQ(read_file(file), "new");
    EXPECT_EQ(read_file(open.path()), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_unnamed, ATemporaryIsWrittenInPlaceAndGetsTheName) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    FIO_REPLACEMENT outer(file);
    for (const char* contents : {"first and longer", "second", ""}) {
        ASSERT_TRUE(replace(outer.temporary().fullpath(), contents));
        EXPECT_EQ(read_file(outer.temporary().fullpath()), contents);
        EXPECT_EQ(read_file(file), "old");
    }
    ASSERT_TRUE(replace(outer.temporary().fullpath(), "last"));
    ASSERT_TRUE(outer.commit());
    EXPECT_EQ(read_file(file), "last");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(status.st_nlink, 1U);
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_unnamed, ATemporaryThatAnybodyMayWriteHasAName) {
    const SCRATCH scratch;
    const mode_t before = ::umask(0);
    const nlink_t names = names_of(FIO_REPLACEMENT(scratch.path("file")));
    ::umask(before);
    EXPECT_EQ(names, 1U);
}

TEST(fio_unnamed, AForkedProcessTakesNothingAway) {
    const SCRATCH scratch(place_for_unnamed_files());
    FIO_REPLACEMENT replacement(scratch.path("file"));
    ASSERT_TRUE(write(replacement, "of the parent"));
    ASSERT_EQ(names_of(replacement), 0U);
    EXPECT_TRUE(succeeds_elsewhere([&] {
        replacement.~FIO_REPLACEMENT();
        return true;
    }));
    EXPECT_TRUE(replacement.commit());
    EXPECT_EQ(read_file(scratch.path("file")), "of the parent");
}

TEST(fio_unnamed, ATemporaryIsNotHandedToOtherPrograms) {
    const SCRATCH scratch(place_for_unnamed_files());
    const FIO_REPLACEMENT replacement(scratch.path("file"));
    ASSERT_EQ(names_of(replacement), 0U);
    const int number = std::stoi(fs::path(replacement.temporary().fullpath()).filename().string());
    EXPECT_EQ(::fcntl(number, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

/// What a program prints that has closed its output goes nowhere, and not into the file.
TEST(fio_unnamed, ATemporaryNeverTakesTheNumberOfAStandardStream) {
    const SCRATCH scratch;
    bool refused = false;
    bool committed = false;
    {
        const CLOSED_STREAMS closed;
        FIO_REPLACEMENT replacement(scratch.path("file"));
        refused = write(replacement, "contents");
        for (const int stream : STANDARD_STREAMS) {
            refused = refused && ::write(stream, "printed", 7) < 0;
        }
        committed = replacement.commit();
    }
    EXPECT_TRUE(refused);
    EXPECT_TRUE(committed);
    EXPECT_EQ(read_file(scratch.path("file")), "contents");
}

TEST(fio_unnamed, WhatIsReadAndLockedNeverTakesTheNumberOfAStandardStream) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "contents");
    bool opened = false;
    bool refused = true;
    {
        const CLOSED_STREAMS closed;
        const FILE_READER reader(file);
        const DIRECTORY_LOCK lock(scratch.directory(), std::chrono::milliseconds(0));
        opened = reader.is_open() && !lock.is_refused();
        for (const int stream : STANDARD_STREAMS) {
            refused = refused && ::fcntl(stream, F_GETFD) < 0;
        }
    }
    EXPECT_TRUE(opened);
    EXPECT_TRUE(refused);
}

// While a pipe is full, what writes into it has it open.
TEST(fio_unnamed, AnOutputNeverTakesTheNumberOfAStandardStream) {
    const SCRATCH scratch;
    const std::string pipe = scratch.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string contents(1 << 20, 'x');
    bool refused = false;
    bool committed = false;
    std::string received(contents.size(), ' ');
    std::size_t count = 0;
    {
        const CLOSED_STREAMS closed;
        std::thread writer([&] {
            FIO_REPLACEMENT replacement(pipe);
            committed = write(replacement, contents) && replacement.commit();
        });
        const int low = ::open(pipe.c_str(), O_RDONLY | O_CLOEXEC);
        const int end = ::fcntl(low, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        ::close(low);
        for (ssize_t more = 1; more > 0 && count < received.size(); count += static_cast<std::size_t>(more)) {
            more = std::max<ssize_t>(::read(end, &received.at(count), received.size() - count), 0);
            if (count == 0) {
                refused = more > 0;
                for (const int stream : STANDARD_STREAMS) {
                    refused = refused && ::write(stream, "printed", 7) < 0;
                }
            }
        }
        ::close(end);
        writer.join();
    }
    EXPECT_TRUE(refused);
    EXPECT_TRUE(committed);
    EXPECT_TRUE(received == contents);
}

TEST(fio_unnamed, WhereTheDirectoryIsGoneThereIsNothingToReplace) {
    const SCRATCH scratch;
    const std::string file = scratch.path("directory/file");
    fs::create_directory(scratch.path("directory"));
    FIO_REPLACEMENT replacement(file);
    ASSERT_TRUE(write(replacement, "contents"));
    remove_tree(scratch.path("directory"));
    EXPECT_FALSE(replacement.commit());
    EXPECT_FALSE(fs::exists(scratch.path("directory")));
    fs::create_directory(scratch.path("directory"));
    EXPECT_EQ(replacement.commit(), has_unnamed_files(scratch.directory()));  // what has no name was not removed
    EXPECT_EQ(scratch.file_count(), has_unnamed_files(scratch.directory()) ? 1U : 0U);
}
