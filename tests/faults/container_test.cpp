#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "faults/every_fault.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "support/debug_messages.h"
#include "support/fast_clock.h"
#include "support/ordinary_user_posix.h"

// The parameter container on a system that fails: a block is never lost, and the result is the truth.

namespace {

namespace ref = ini_reference;

const ref::BLOCKS BLOCKS{"first", "second", "third"};
const ref::BLOCKS CHANGED{"first", "new", "third"};

class ContainerFaults : public testing::Test {
protected:
    static constexpr const char* INFO = "pgm_flash.ini.info";
    static constexpr const char* COPY = "pgm_flash.ini.bak";

    /// The container, with the text beside it.
    void prepare() const {
        std::filesystem::remove(m_directory.scratch().path(COPY));
        m_directory.write_file(ref::file(BLOCKS));
        m_directory.scratch().write(INFO, ref::info(ref::file(BLOCKS)));
    }

    /// Old or new, as the result says; the text agrees; no temporary is left; and the next call works.
    void judge(bool result) const {
        const std::string file = m_directory.file();
        EXPECT_EQ(file, ref::file(result ? CHANGED : BLOCKS));
        EXPECT_TRUE(ref::is_told_of(file, m_directory.info())) << m_directory.info();
        EXPECT_EQ(m_directory.scratch().file_count(), 1U + m_directory.has(INFO) + m_directory.has(COPY));
        EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
        EXPECT_EQ(m_directory.file(), ref::file(CHANGED));
        EXPECT_EQ(m_directory.info(), ref::info(ref::file(CHANGED)));
    }

    FLASH_INI_DIRECTORY m_directory;
};

TEST_F(ContainerFaults, NoFailingCallLosesABlock) {
    for (const int error : {EIO, EMFILE, ENOSPC, EACCES, EINTR}) {
        with_each_call_failing<bool>(
            error, [this] { prepare(); }, [] { return FLASH_INI_DIRECTORY::write(1, "new"); },
            [this](bool result, const char* /*call*/) { judge(result); });
    }
}

TEST_F(ContainerFaults, NoFailingAllocationLosesABlock) {
    bool result = false;
    with_each_allocation_failing(
        [&] {
            prepare();
            result = false;
        },
        [&] {
            BYTE bytes[] = {'n', 'e', 'w'};
            result = PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, bytes, sizeof bytes);
        },
        [&](bool /*ended*/) { judge(result); });
}

TEST_F(ContainerFaults, NoDescriptorsFromSomePointOn) {
    for (std::size_t number = 1; number < 40; ++number) {
        prepare();
        bool result = false;
        {
            const FAST_CLOCK clock;  // the lock is waited for
            const FAILING_CALL fault(number, EMFILE, true);
            result = FLASH_INI_DIRECTORY::write(1, "new");
        }
        EXPECT_EQ(m_directory.file(), ref::file(result ? CHANGED : BLOCKS)) << number;
        EXPECT_TRUE(ref::is_told_of(m_directory.file(), m_directory.info())) << number;
    }
}

TEST_F(ContainerFaults, InterruptedAndShortCallsAreContinued) {
    prepare();
    bool written = false;
    std::optional<std::string> read;
    {
        const SLOW_CALLS slow;
        written = FLASH_INI_DIRECTORY::write(1, "new");
        read = FLASH_INI_DIRECTORY::read(2);
    }
    EXPECT_TRUE(written);
    EXPECT_EQ(read, "third");
    EXPECT_EQ(m_directory.file(), ref::file(CHANGED));
    EXPECT_EQ(m_directory.info(), ref::info(ref::file(CHANGED)));
}

TEST_F(ContainerFaults, ABlockIsReadWholeOrNotAtAll) {
    for (const int error : {EIO, EMFILE, EINTR}) {
        with_each_call_failing<std::optional<std::string>>(
            error, [this] { prepare(); }, [] { return FLASH_INI_DIRECTORY::read(1); },
            [](const std::optional<std::string>& block, const char* call) {
                EXPECT_TRUE(!block || block == "second");
                EXPECT_TRUE(*call != '\0' || block.has_value());
            });
    }
}

TEST_F(ContainerFaults, CopyOfADamagedContainerIsKept) {
    const std::string damaged = ref::file(BLOCKS) + "garbage";
    m_directory.write_file(damaged);
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(m_directory.file(), ref::file({std::nullopt, "new", std::nullopt}));
    EXPECT_EQ(read_file(m_directory.scratch().directory() / "pgm_flash.ini.bak"), damaged);
}

TEST_F(ContainerFaults, DamagedContainerWithoutACopyStays) {
    const std::string damaged = ref::file(BLOCKS) + "garbage";
    with_each_call_failing<bool>(
        EIO,
        [&] {
            std::filesystem::remove(m_directory.scratch().directory() / "pgm_flash.ini.bak");
            m_directory.write_file(damaged);
        },
        [] { return FLASH_INI_DIRECTORY::write(1, "new"); },
        [&](bool result, const char* /*call*/) {
            EXPECT_EQ(m_directory.file(), result ? ref::file({std::nullopt, "new", std::nullopt}) : damaged);
            const std::filesystem::path copy = m_directory.scratch().directory() / "pgm_flash.ini.bak";
            EXPECT_TRUE(!result || read_file(copy) == damaged);
        });
}

TEST_F(ContainerFaults, CopyOfADoubtfulContainerIsKept) {
    const std::string doubtful = ref::file(BLOCKS);
    for (const int error : {EIO, ENOSPC}) {
        with_each_call_failing<bool>(
            error,
            [&] {
                prepare();
                m_directory.scratch().write(INFO, ref::info(ref::file(CHANGED)));
            },
            [] { return FLASH_INI_DIRECTORY::write(1, "another"); },
            [&](bool result, const char* call) {
                EXPECT_EQ(m_directory.file(), result ? ref::file({"first", "another", "third"}) : doubtful);
                if (m_directory.has(COPY)) {
                    EXPECT_EQ(read_file(m_directory.scratch().path(COPY)), doubtful);
                } else {
                    EXPECT_NE(*call, '\0');  // what has failed was the copying
                }
            });
    }
}

TEST_F(ContainerFaults, BlocksThatAreAbsentAreNoneThatAreLost) {
    m_directory.write_file(ref::file_of({"first", "second", "third", std::nullopt, std::nullopt}));
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(m_directory.file(), ref::file(CHANGED));
    EXPECT_FALSE(m_directory.has(COPY));
    const std::string more = ref::file_of({"first", "second", "third", std::nullopt, "fifth", std::nullopt});
    m_directory.write_file(more);
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(m_directory.file(), ref::file(CHANGED));
    EXPECT_EQ(read_file(m_directory.scratch().path(COPY)), more);
}

TEST_F(ContainerFaults, WhatDoesNotFitItsOffsetsIsNotTaken) {
    prepare();
    BYTE byte = 0;
    EXPECT_FALSE(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, &byte, 0xFFFFFFFF));
    EXPECT_EQ(m_directory.file(), ref::file(BLOCKS));
}

TEST_F(ContainerFaults, AContainerThatIsProtectedStays) {
    prepare();
    const std::string file = m_directory.path().string();
    ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(m_directory.scratch().directory().c_str(), 0777), 0);
    {
        const ORDINARY_USER user;
        EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, "new"));
    }
    EXPECT_EQ(m_directory.file(), ref::file(BLOCKS));
    ASSERT_EQ(::chmod(file.c_str(), 0666), 0);
    {
        const ORDINARY_USER user;
        EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    }
    EXPECT_EQ(m_directory.file(), ref::file(CHANGED));
}

/// How many calls of the system a reading takes.
std::size_t calls_of_reading() {
    for (std::size_t number = 1;; ++number) {
        const FAILING_CALL fault(number, EIO);
        FLASH_INI_DIRECTORY::read(1);
        if (!fault.happened()) {
            return number - 1;
        }
    }
}

TEST_F(ContainerFaults, WhereNobodyListensTheTextIsNotRead) {
    m_directory.write_file(ref::file(BLOCKS));
    const std::size_t without = calls_of_reading();
    m_directory.scratch().write(INFO, ref::info(ref::file(CHANGED)));
    EXPECT_EQ(calls_of_reading(), without);
    const DEBUG_MESSAGES messages;
    EXPECT_GT(calls_of_reading(), without);
}

TEST_F(ContainerFaults, DoubtsChangeNothingInWhatIsRead) {
    const DEBUG_MESSAGES messages;
    for (const int error : {EIO, EMFILE, EINTR}) {
        with_each_call_failing<std::optional<std::string>>(
            error, [this] { prepare(); }, [] { return FLASH_INI_DIRECTORY::read(1); },
            [](const std::optional<std::string>& block, const char* call) {
                EXPECT_TRUE(!block || block == "second");
                EXPECT_TRUE(*call != '\0' || block.has_value());
            });
    }
}

/// Processes that write a block each, again and again.
TEST_F(ContainerFaults, TwoWritersKeepEachOthersBlocks) {
    constexpr int ROUNDS = 50;
    std::array<pid_t, 3> writers{};
    for (unsigned which = 0; which < writers.size(); ++which) {
        writers.at(which) = ::fork();
        if (writers.at(which) == 0) {
            bool good = true;
            for (int round = 0; round < ROUNDS; ++round) {
                const std::string block(static_cast<std::size_t>(round % 7 + 1), static_cast<char>('a' + which));
                good = FLASH_INI_DIRECTORY::write(which, block) && FLASH_INI_DIRECTORY::read(which) == block && good;
            }
            ::_exit(good ? 0 : 1);
        }
    }
    for (const pid_t writer : writers) {
        int status = -1;
        EXPECT_EQ(::waitpid(writer, &status, 0), writer);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(m_directory.info(), ref::info(m_directory.file()));
    EXPECT_EQ(m_directory.scratch().file_count(), 2U);
}

TEST_F(ContainerFaults, KilledWritersLeaveOldOrNew) {
    constexpr int KILLS = 60;
    prepare();
    for (int kill = 0; kill < KILLS; ++kill) {
        const pid_t writer = ::fork();
        if (writer == 0) {
            for (;;) {
                FLASH_INI_DIRECTORY::write(1, "new");
                FLASH_INI_DIRECTORY::write(1, "second");
            }
        }
        ::usleep(static_cast<useconds_t>(500 + 137 * kill));
        ::kill(writer, SIGKILL);
        ::waitpid(writer, nullptr, 0);
        const std::string file = m_directory.file();
        ASSERT_TRUE(file == ref::file(BLOCKS) || file == ref::file(CHANGED)) << testing::PrintToString(file);
        ASSERT_TRUE(ref::is_told_of(file, m_directory.info())) << m_directory.info();
    }
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "after"));  // the lock went with its holder
}

}  // namespace
