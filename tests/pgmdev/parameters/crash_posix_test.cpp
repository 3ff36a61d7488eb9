#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <set>
#include <thread>

#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "support/closed_streams_posix.h"
#include "support/unnamed_files_posix.h"

// What a reader finds after a writer was killed, ran out of space, or while it is still at work.

namespace {

namespace ref = ini_reference;

const std::string OLD_BLOCK(3000, 'o');
const std::string NEW_BLOCK(90000, 'n');

/// Replaces block 1 by turns, without end.
[[noreturn]] void write_forever() {
    for (;;) {
        FLASH_INI_DIRECTORY::write(1, NEW_BLOCK);
        FLASH_INI_DIRECTORY::write(1, OLD_BLOCK);
    }
}

bool is_temporary(const std::filesystem::directory_entry& entry) {
    return entry.path().filename().string().starts_with(".tessary-");
}

std::size_t temporaries_in(const SCRATCH& scratch) {
    const std::filesystem::directory_iterator entries(scratch.directory());
    return static_cast<std::size_t>(std::count_if(begin(entries), end(entries), is_temporary));
}

void make_temporaries_old(const SCRATCH& scratch) {
    for (const auto& entry : std::filesystem::directory_iterator(scratch.directory())) {
        if (is_temporary(entry)) {
            std::filesystem::last_write_time(entry,
                                             std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
        }
    }
}

TEST(FlashIniCrash, KilledInTheMiddleOfAWrite) {
    constexpr int KILLS = 150;
    const FLASH_INI_DIRECTORY directory;
    const std::string old_file = ref::file(ref::BLOCKS{"kept", OLD_BLOCK, "kept, too"});
    const std::string new_file = ref::file(ref::BLOCKS{"kept", NEW_BLOCK, "kept, too"});
    directory.write_file(old_file);
    const std::size_t most_left =
        has_unnamed_files(directory.scratch().directory()) ? 1 : 3;  // as they get their names
    std::set<std::string> seen;
    for (int i = 0; i < KILLS; ++i) {
        const std::size_t left_before = temporaries_in(directory.scratch());
        const pid_t writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            write_forever();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(500 + i * 74));
        ASSERT_EQ(kill(writer, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";

        const std::string found = directory.file();
        ASSERT_TRUE(found == old_file || found == new_file) << "kill " << i << ", " << found.size() << " bytes";
        ASSERT_TRUE(ref::is_told_of(found, directory.info())) << directory.info();
        ASSERT_EQ(FLASH_INI_DIRECTORY::read(0), "kept");
        ASSERT_LE(temporaries_in(directory.scratch()), left_before + most_left);
        seen.insert(found);
    }
    // On a fast disk some writers get as far as another container, on a slow one some are killed while theirs has a name.
    EXPECT_TRUE(seen.size() == 2 || temporaries_in(directory.scratch()) > 0) << "the writers were not at work";
    make_temporaries_old(directory.scratch());
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, NEW_BLOCK));
    EXPECT_EQ(temporaries_in(directory.scratch()), 0U);
}

/// The largest file that this process may write, as long as it lives.
class FILE_SIZE_LIMIT {
public:
    explicit FILE_SIZE_LIMIT(rlim_t bytes) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_previous), 0);
        m_previous_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, m_previous.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FILE_SIZE_LIMIT() {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previous_handler);
    }
    FILE_SIZE_LIMIT(const FILE_SIZE_LIMIT&) = delete;
    FILE_SIZE_LIMIT& operator=(const FILE_SIZE_LIMIT&) = delete;

private:
    rlimit m_previous{};
    void (*m_previous_handler)(int) = nullptr;
};

TEST(FlashIniCrash, NoSpaceLeft) {
    const FLASH_INI_DIRECTORY directory;
    const std::string old_file = ref::file(ref::BLOCKS{"kept", OLD_BLOCK, std::nullopt});
    directory.write_file(old_file);
    for (const rlim_t room : {rlim_t{0}, rlim_t{1}, rlim_t{44}, rlim_t{4096}, rlim_t{90047}}) {
        bool written = true;
        {
            const FILE_SIZE_LIMIT limit(room);
            written = FLASH_INI_DIRECTORY::write(1, NEW_BLOCK);
        }
        EXPECT_FALSE(written) << room;
        EXPECT_EQ(directory.file(), old_file) << room;
        EXPECT_EQ(directory.scratch().file_count(), 1U) << room;
    }
    const FILE_SIZE_LIMIT limit(90048);  // exactly enough: 44 + 4 + 90000
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, NEW_BLOCK));
}

TEST(FlashIniCrash, WhatNobodyMayReadIsNotTakenForLost) {
    constexpr uid_t NOBODY = 65534;
    const FLASH_INI_DIRECTORY directory;
    const std::filesystem::path file = directory.scratch().directory() / "pgm_flash.ini";
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, OLD_BLOCK));
    const std::string before = directory.file();
    std::filesystem::permissions(directory.scratch().directory(), std::filesystem::perms::all);
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const pid_t child = ::fork();  // somebody whom permissions bind
    if (child == 0) {
        ::_exit((::geteuid() != 0 || ::setuid(NOBODY) == 0) && !FLASH_INI_DIRECTORY::write(2, NEW_BLOCK) ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    EXPECT_EQ(directory.file(), before);
    EXPECT_EQ(directory.info(), ref::info(before));
    EXPECT_EQ(directory.scratch().file_count(), 2U);
}

/// Writes block 2 as somebody whom permissions bind.
bool nobody_writes() {
    constexpr uid_t NOBODY = 65534;
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit((::geteuid() != 0 || ::setuid(NOBODY) == 0) && FLASH_INI_DIRECTORY::write(2, NEW_BLOCK) ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

TEST(FlashIniCrash, AProtectedContainerIsNotReplacedByWayOfItsDirectory) {
    const FLASH_INI_DIRECTORY directory;
    const std::filesystem::path file = directory.scratch().directory() / "pgm_flash.ini";
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, OLD_BLOCK));
    const std::string before = directory.file();
    std::filesystem::permissions(directory.scratch().directory(), std::filesystem::perms::all);
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::others_read);
    EXPECT_FALSE(nobody_writes());
    EXPECT_EQ(directory.file(), before);
    EXPECT_EQ(directory.info(), ref::info(before));
    EXPECT_EQ(directory.scratch().file_count(), 2U);
}

TEST(FlashIniCrash, AWritableContainerInAProtectedDirectoryIsWritten) {
    using std::filesystem::perms;
    const FLASH_INI_DIRECTORY directory;
    const std::filesystem::path file = directory.scratch().directory() / "pgm_flash.ini";
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, OLD_BLOCK));
    std::filesystem::permissions(file, perms::all);
    std::filesystem::permissions(directory.scratch().directory() / "pgm_flash.ini.info", perms::owner_read);
    std::filesystem::permissions(directory.scratch().directory(), perms::all);
    std::filesystem::permissions(directory.scratch().directory(),
                                 perms::owner_write | perms::group_write | perms::others_write,
                                 std::filesystem::perm_options::remove);
    const std::string info = directory.info();
    EXPECT_TRUE(nobody_writes());
    EXPECT_TRUE(nobody_writes());  // what is beside it cannot be replaced, and nobody is kept from writing by that
    std::filesystem::permissions(directory.scratch().directory(), perms::owner_all);
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{std::nullopt, OLD_BLOCK, NEW_BLOCK}));
    EXPECT_EQ(directory.info(), info);
    EXPECT_EQ(directory.scratch().file_count(), 2U);
}

TEST(FlashIniCrash, APipeIsNeitherReadNorReplaced) {
    const FLASH_INI_DIRECTORY directory;
    ASSERT_EQ(::mkfifo((directory.scratch().directory() / "pgm_flash.ini").c_str(), 0600), 0);
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), std::nullopt);
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, NEW_BLOCK));
}

TEST(FlashIniCrash, ReadersBesideAWriter) {
    constexpr int WRITES = 200;
    const FLASH_INI_DIRECTORY directory;
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, OLD_BLOCK));
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::atomic<int> reads{0};
    std::thread reader([&] {
        do {
            const auto block = FLASH_INI_DIRECTORY::read(1);
            wrong += block == OLD_BLOCK || block == NEW_BLOCK ? 0 : 1;
            ++reads;
        } while (!done);
    });
    for (int i = 0; i < WRITES; ++i) {
        EXPECT_TRUE(FLASH_INI_DIRECTORY::write(1, i % 2 == 0 ? NEW_BLOCK : OLD_BLOCK));
    }
    done = true;
    reader.join();
    EXPECT_EQ(wrong, 0) << "of " << reads << " reads";
}

// A program that has closed its output, and prints all the same, in another thread.
TEST(FlashIniStreams, WhatIsPrintedNeverComesIntoTheContainer) {
    const FLASH_INI_DIRECTORY directory;
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "kept"));
    bool written = true;
    {
        const CLOSED_STREAMS closed;
        std::atomic<bool> ended{false};
        std::thread printing([&ended] {
            while (!ended) {
                for (const int stream : STANDARD_STREAMS) {
                    // Not by `write`: to use a number while it is being opened is the very race that is tried here, and
                    // the thread sanitizer would tell of it.
                    [[maybe_unused]] const long none = ::syscall(SYS_write, stream, "printed", 7);
                }
            }
        });
        for (int i = 0; i < 40; ++i) {
            written = FLASH_INI_DIRECTORY::write(0, std::to_string(i)) && written;
        }
        ended = true;
        printing.join();
    }
    EXPECT_TRUE(written);
    EXPECT_EQ(directory.file(), ini_reference::file({"39", "kept", std::nullopt}));
    EXPECT_FALSE(directory.has("pgm_flash.ini.bak"));  // as there is one of a container that was changed
}

}  // namespace
