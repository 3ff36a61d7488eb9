#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "faults/every_fault.h"
#include "fio.h"
#include "host/replacing.h"
#include "support/recorded_calls.h"
#include "support/scratch.h"
#include "support/unnamed_files_posix.h"

// Temporaries on systems that have files without a name, have none, or do not let them have one in the end.

namespace fs = std::filesystem;

namespace {

using KINDS = std::vector<RECORDED_CALL::KIND>;

class TemporaryFaults : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(has_unnamed_files(m_scratch.directory())) << m_scratch.directory(); }

    /// What the system is asked to do while the file is replaced.
    KINDS calls() const {
        const RECORDED_CALLS recorded;
        EXPECT_TRUE(replace(m_file, "new"));
        KINDS kinds;
        for (const RECORDED_CALL& call : recorded.all()) {
            kinds.push_back(call.kind);
        }
        return kinds;
    }

    void expect_the_truth(bool result) const {
        EXPECT_EQ(read_file(m_file), result ? "new" : "old");
        EXPECT_EQ(m_scratch.file_count(), 1U);
    }

    const SCRATCH m_scratch{place_for_unnamed_files()};
    const std::string m_file = m_scratch.write("file", "old");
};

TEST_F(TemporaryFaults, GetTheirNameInTheLastMoment) {
    using CALL = RECORDED_CALL;
    EXPECT_EQ(calls(), (KINDS{CALL::CREATE_UNNAMED, CALL::RESIZE, CALL::WRITE, CALL::LINK, CALL::SYNC, CALL::RENAME,
                              CALL::SYNC}));
    const NO_UNNAMED_FILES names;
    EXPECT_EQ(calls(), (KINDS{CALL::CREATE, CALL::RESIZE, CALL::WRITE, CALL::SYNC, CALL::RENAME, CALL::SYNC}));
}

TEST_F(TemporaryFaults, HaveNamesWhereThePathOfWhatIsOpenLeadsElsewhere) {
    const ALTERED_STATUS elsewhere([](struct stat& status) { ++status.st_ino; });
    FIO_REPLACEMENT replacement(m_file);
    EXPECT_EQ(m_scratch.file_count(), 2U);
    EXPECT_TRUE(write(replacement, "new"));
    EXPECT_TRUE(replacement.commit());
    expect_the_truth(true);
}

/// Where there is no file yet, looking for it must not hide why the temporary cannot be opened.
TEST_F(TemporaryFaults, TheReasonOfAFailureIsTold) {
    const NO_UNNAMED_FILES names;
    FIO_REPLACEMENT replacement(m_scratch.path("another"));
    EXPECT_TRUE(write(replacement, "new"));
    const FAILING_CALLS_OF opening("open", EDQUOT);
    EXPECT_FALSE(replacement.commit());
    EXPECT_EQ(errno, EDQUOT);
}

/// The paths of what is open are in a file system of its own, which a process may not see.
TEST_F(TemporaryFaults, HaveNamesWhereNoPathLeadsToWhatIsOpen) {
    FIO_REPLACEMENT unnamed(m_file);
    EXPECT_EQ(m_scratch.file_count(), 1U);
    bool had_a_name = false;
    with_each_call_failing<bool>(
        ENOENT, [this] { m_scratch.write("file", "old"); },
        [&] {
            FIO_REPLACEMENT replacement(m_file);
            had_a_name = had_a_name || m_scratch.file_count() == 2;
            return write(replacement, "new") && replacement.commit();
        },
        [this](bool result, const char* /*call*/) { expect_the_truth(result); });
    EXPECT_TRUE(had_a_name);
}

TEST_F(TemporaryFaults, AreCopiedWhereTheyMayHaveNoName) {
    const mode_t mask = ::umask(027);
    for (const int error : {EPERM, EXDEV, ENOENT, EEXIST}) {
        for (const std::string& contents : {std::string(), std::string("new"), std::string(100000, 'n')}) {
            fs::remove(m_file);
            const FAILING_CALLS_OF link("linkat", error);
            EXPECT_TRUE(replace(m_file, contents));
            EXPECT_EQ(link.count(), error == EEXIST ? 100U : 1U);
            EXPECT_EQ(read_file(m_file), contents);
            EXPECT_EQ(m_scratch.file_count(), 1U);
            struct stat status {};
            EXPECT_EQ(::stat(m_file.c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777U, 0640U);
        }
    }
    ::umask(mask);
}

TEST_F(TemporaryFaults, WhatFailsWhileTheyAreCopiedLeavesTheOldFile) {
    const FAILING_CALLS_OF link("linkat", EPERM);
    for (const int error : {EIO, EMFILE, ENOSPC, EINTR, EEXIST}) {
        bool failed = false;
        with_each_call_failing<bool>(
            error, [this] { m_scratch.write("file", "old"); }, [this] { return replace(m_file, "new"); },
            [&](bool result, const char* /*call*/) {
                expect_the_truth(result);
                failed = failed || !result;
            });
        EXPECT_TRUE(failed);
    }
}

/// A second attempt begins where the first one has failed.
TEST_F(TemporaryFaults, ACommitThatFailedCanBeRepeated) {
    for (const char* call : {"linkat", "stat", "fchmod", "fsync", "rename"}) {
        m_scratch.write("file", "old");
        FIO_REPLACEMENT replacement(m_file);
        ASSERT_TRUE(write(replacement, "new"));
        bool result = false;
        {
            const FAILING_CALLS_OF fault(call, EIO);
            result = replacement.commit();
            EXPECT_GT(fault.count(), 0U) << call;
        }
        EXPECT_EQ(result, std::string_view(call) == "linkat") << call;
        EXPECT_EQ(read_file(m_file), result ? "new" : "old") << call;
        EXPECT_EQ(replacement.commit(), !result) << call;
        expect_the_truth(true);
    }
}

TEST_F(TemporaryFaults, ADeviceThatFailsWhenItIsClosedHasFailed) {
    EXPECT_TRUE(replace("/dev/null", "new"));
    const FAILING_CALLS_OF fault("close", EIO);
    EXPECT_FALSE(replace("/dev/null", "new"));
}

/// A disk far away may tell only when a file is closed that something has not arrived.
TEST_F(TemporaryFaults, AWriteThatFailsWhenTheFileIsClosedIsNotCommitted) {
    const NO_UNNAMED_FILES names;
    FIO_REPLACEMENT replacement(m_file);
    {
        const FAILING_CALLS_OF fault("close", EDQUOT);
        EXPECT_FALSE(write(replacement, "new"));
    }
    EXPECT_FALSE(replacement.commit());
    EXPECT_EQ(read_file(m_file), "old");
}

TEST_F(TemporaryFaults, AWriteThatWritesNothingIsNotTriedForever) {
    FIO_REPLACEMENT replacement(m_file);
    {
        const FAILING_CALLS_OF fault("write", 0);
        EXPECT_FALSE(write(replacement, "new"));
        EXPECT_EQ(errno, EIO);
        EXPECT_EQ(fault.count(), 1U);
    }
    EXPECT_FALSE(replacement.commit());
    expect_the_truth(false);
}

/// Its status may have been taken in the very moment in which it loses its name to another writer's.
TEST_F(TemporaryFaults, AFileThatIsBeingReplacedIsNotWrittenInPlace) {
    const std::string kept = m_scratch.path("kept");
    fs::create_hard_link(m_file, kept);
    {
        const ALTERED_STATUS nameless([](struct stat& status) { status.st_nlink = 0; });
        EXPECT_TRUE(replace(m_file, "new"));
    }
    EXPECT_EQ(read_file(m_file), "new");
    EXPECT_EQ(read_file(kept), "old");
}

/// What is open and has lost its name is found by the system's link to it. When the system says there that it is gone, too,
/// there is a new file of the name that the link shows.
TEST_F(TemporaryFaults, InPlaceOfWhatHasNoNameTheResultIsTheTruth) {
    const int open = ::open(m_file.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(open, 0);
    fs::remove(m_file);
    const std::string path = "/proc/self/fd/" + std::to_string(open);
    const std::string shown = m_file + " (deleted)";
    for (const int error : {EIO, ENOENT}) {
        with_each_call_failing<bool>(
            error,
            [&] {
                fs::remove(shown);
                EXPECT_EQ(::ftruncate(open, 0), 0);
                EXPECT_EQ(::pwrite(open, "old", 3, 0), 3);
            },
            [&] { return replace(path, "new"); },
            [&](bool result, const char* call) {
                const bool is_told_gone = error == ENOENT && std::string_view(call) == "stat";
                const bool is_shown = is_told_gone && fs::exists(shown);
                EXPECT_TRUE(!result || read_file(is_shown ? shown : path) == "new");
                EXPECT_EQ(m_scratch.file_count(), is_shown ? 1U : 0U);
            });
    }
    ::close(open);
}

}  // namespace
