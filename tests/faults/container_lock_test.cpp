#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "directory_lock.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "run.h"
#include "support/captured_run.h"
#include "support/fast_clock.h"
#include "support/faulty_system.h"
#include "support/settings.h"

// Two that change the parameter container at once: what each writes follows from what it has read.

namespace {

constexpr unsigned WRITERS = 4;
constexpr unsigned CHANGES = 25;

class ContainerLock : public testing::Test {
protected:
    /// Makes a block longer by one byte.
    static bool append(char byte) {
        const PGMDEV_FLASH_INI_LOCK lock;
        const PGMDEV_FLASH_INI_LOCK again;  // of the same thread
        return lock.is_held() && again.is_held() &&
               FLASH_INI_DIRECTORY::write(1, FLASH_INI_DIRECTORY::read(1).value_or("") + byte);
    }

    static bool append_all(char byte) {
        bool good = true;
        for (unsigned i = 0; i < CHANGES; ++i) {
            good = append(byte) && good;
        }
        return good;
    }

    void expect_all() const {
        const std::string block = FLASH_INI_DIRECTORY::read(1).value_or("");
        EXPECT_EQ(block.size(), std::size_t{WRITERS} * CHANGES);
        for (unsigned writer = 0; writer < WRITERS; ++writer) {
            EXPECT_EQ(std::count(block.begin(), block.end(), static_cast<char>('a' + writer)), CHANGES);
        }
        EXPECT_EQ(m_directory.info(), ini_reference::info(m_directory.file()));
        EXPECT_EQ(m_directory.scratch().file_count(), 2U);
    }

    FLASH_INI_DIRECTORY m_directory;
};

/// Runs the operation in a process of its own, which ends with 0 if it was good.
pid_t started(const std::function<bool()>& operation) {
    const pid_t process = ::fork();
    if (process == 0) {
        ::_exit(operation() ? 0 : 1);
    }
    return process;
}

void expect_good_end(pid_t process) {
    int status = -1;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
}

/// Another process that has the lock as long as this object lives.
class HOLDER {
public:
    HOLDER() {
        if (::pipe(m_ready.data()) != 0 || ::pipe(m_end.data()) != 0) {
            ADD_FAILURE() << "no pipe";
        }
        m_process = started([this] {
            ::close(m_end[1]);
            const PGMDEV_FLASH_INI_LOCK lock;
            char byte = 'r';
            return ::write(m_ready[1], &byte, 1) == 1 && ::read(m_end[0], &byte, 1) == 0 && lock.is_held();
        });
        char byte = 0;
        EXPECT_EQ(::read(m_ready[0], &byte, 1), 1);
    }
    ~HOLDER() {
        ::close(m_end[1]);
        expect_good_end(m_process);
        for (const int file : {m_ready[0], m_ready[1], m_end[0]}) {
            ::close(file);
        }
    }
    HOLDER(const HOLDER&) = delete;
    HOLDER& operator=(const HOLDER&) = delete;

private:
    std::array<int, 2> m_ready{};
    std::array<int, 2> m_end{};
    pid_t m_process = 0;
};

TEST_F(ContainerLock, ProcessesKeepWhatTheOthersHaveWritten) {
    std::vector<pid_t> writers;
    for (unsigned writer = 0; writer < WRITERS; ++writer) {
        writers.push_back(started([writer] { return append_all(static_cast<char>('a' + writer)); }));
    }
    for (const pid_t writer : writers) {
        expect_good_end(writer);
    }
    expect_all();
}

TEST_F(ContainerLock, ThreadsKeepWhatTheOthersHaveWritten) {
    std::vector<std::thread> writers;
    std::array<bool, WRITERS> good{};
    for (unsigned writer = 0; writer < WRITERS; ++writer) {
        writers.emplace_back([&good, writer] { good.at(writer) = append_all(static_cast<char>('a' + writer)); });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(good, (std::array<bool, WRITERS>{true, true, true, true}));
    expect_all();
}

TEST_F(ContainerLock, NobodyWaitsForLongerThanTenSeconds) {
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "old"));
    const HOLDER other;
    const FAST_CLOCK clock;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(PGMDEV_FLASH_INI_LOCK().is_held());
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited.count(), 10);
    EXPECT_LT(waited.count(), 11);
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), "old");
}

/// Whether somebody has the lock of the directory.
bool is_locked(const SCRATCH& scratch) {
    return DIRECTORY_LOCK(scratch.directory(), std::chrono::milliseconds(0)).is_refused();
}

TEST_F(ContainerLock, IsGivenBackWithTheLastOneThatAThreadHas) {
    auto first = std::make_unique<PGMDEV_FLASH_INI_LOCK>();
    auto second = std::make_unique<PGMDEV_FLASH_INI_LOCK>();
    first.reset();
    EXPECT_TRUE(second->is_held());
    EXPECT_TRUE(is_locked(m_directory.scratch()));
    const auto third = std::make_unique<PGMDEV_FLASH_INI_LOCK>();
    std::thread([&second] { second.reset(); }).join();
    EXPECT_TRUE(third->is_held());
    EXPECT_TRUE(is_locked(m_directory.scratch()));
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "mine"));
}

TEST_F(ContainerLock, AProcessForkedMeanwhileHasNone) {
    const PGMDEV_FLASH_INI_LOCK lock;
    ASSERT_TRUE(lock.is_held());
    expect_good_end(started([&lock] {
        const FAST_CLOCK clock;
        return !lock.is_held() && !PGMDEV_FLASH_INI_LOCK().is_held() && !FLASH_INI_DIRECTORY::write(1, "forked");
    }));
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), std::nullopt);
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, "mine"));
}

TEST_F(ContainerLock, TheCommandTellsThatAnotherIsAtIt) {
    const HOLDER other;
    const FAST_CLOCK clock;
    const PROCESS_RESULT result = run_captured(
        [this] {
            return run_pgmdev({"--json", "--module-dir", m_directory.scratch().directory().string(), "hps", "add",
                               "nand", "manufacturer_id=1", "device_id=2", "device_byte_size=0x1000"});
        },
        "");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_TRUE(result.output.starts_with(
        R"({"error":{"code":"container_busy","message":"the parameter container cannot be changed, since another program )"
        R"(is changing it","path":")" +
        m_directory.path().string()))
        << result.output;
    EXPECT_EQ(m_directory.scratch().file_count(), 0U);
}

TEST_F(ContainerLock, CommandsAtTheSameMomentAddAnEntryEach) {
    std::vector<std::thread> commands;
    std::array<PROCESS_RESULT, WRITERS> results;
    for (unsigned writer = 0; writer < WRITERS; ++writer) {
        commands.emplace_back([this, &results, writer] {
            const std::string id = "device_id=" + std::to_string(writer + 1);
            results.at(writer) =
                run_process({{TEST_COMMAND, "--module-dir", m_directory.scratch().directory().string(), "hps", "add",
                              "nand", "manufacturer_id=1", id, "device_byte_size=0x1000"},
                             "",
                             {},
                             {}});
        });
    }
    for (std::thread& command : commands) {
        command.join();
    }
    for (const PROCESS_RESULT& result : results) {
        EXPECT_EQ(result.exit_code, 0) << result.errors;
    }
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_HPS_NAND, size));
    constexpr DWORD STAMP_AND_RECORDS = 32 + WRITERS * (4 + 4 + 8);
    EXPECT_EQ(size, STAMP_AND_RECORDS);
}

// As an interpreter makes them that starts workers by forking, whatever its other threads have just locked.
TEST(DirectoryLock, AProcessForkedMeanwhileDoesNotKeepIt) {
    const SCRATCH scratch;
    std::array<int, 2> end{};
    ASSERT_EQ(::pipe(end.data()), 0);
    auto lock = std::make_unique<DIRECTORY_LOCK>(scratch.directory(), std::chrono::milliseconds(0));
    const pid_t forked = started([end] {
        ::close(end[1]);
        char byte = 0;
        return ::read(end[0], &byte, 1) == 0;  // lives until the other end is closed
    });
    EXPECT_TRUE(is_locked(scratch));
    lock.reset();
    EXPECT_FALSE(is_locked(scratch));
    ::close(end[1]);
    expect_good_end(forked);
    ::close(end[0]);
}

TEST(DirectoryLock, AProcessForkedMeanwhileDoesNotGiveItBack) {
    const SCRATCH scratch;
    auto lock = std::make_unique<DIRECTORY_LOCK>(scratch.directory(), std::chrono::milliseconds(0));
    expect_good_end(started([&lock] {
        lock.reset();
        return true;
    }));
    EXPECT_TRUE(is_locked(scratch));
}

TEST(DirectoryLock, ASignalKeepsNobodyFromTakingIt) {
    const SCRATCH scratch;
    for (std::size_t number = 1; number <= 2; ++number) {
        const FAILING_CALL signal(number, EINTR);
        const DIRECTORY_LOCK lock(scratch.directory(), std::chrono::milliseconds(0));
        EXPECT_FALSE(lock.is_refused());
        EXPECT_EQ(signal.happened(), number == 1);
        EXPECT_TRUE(DIRECTORY_LOCK(scratch.directory(), std::chrono::milliseconds(0)).is_refused());
    }
}

// Descriptors that others have used up come back: a writer that went on without the lock would undo what another has done.
TEST(DirectoryLock, WaitsForADescriptorToAskWith) {
    for (const int error : {EMFILE, ENFILE, ENOMEM}) {
        const SCRATCH scratch;
        const FAILING_CALL none_left(1, error);
        const DIRECTORY_LOCK lock(scratch.directory(), std::chrono::seconds(10));
        EXPECT_TRUE(none_left.happened());
        EXPECT_FALSE(lock.is_refused());
        EXPECT_TRUE(DIRECTORY_LOCK(scratch.directory(), std::chrono::milliseconds(0)).is_refused());
    }
}

TEST(DirectoryLock, IsRefusedWhereNoDescriptorComesBack) {
    const SCRATCH scratch;
    const FAST_CLOCK clock;
    const FAILING_CALL none_left(1, EMFILE, true);
    EXPECT_TRUE(DIRECTORY_LOCK(scratch.directory(), std::chrono::seconds(10)).is_refused());
}

TEST(DirectoryLock, IsNotThereWhereTheDirectoryIsNot) {
    const SCRATCH scratch;
    EXPECT_FALSE(DIRECTORY_LOCK(scratch.path("none"), std::chrono::seconds(10)).is_refused());
}

}  // namespace
