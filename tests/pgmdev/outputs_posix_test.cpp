#include "pgmdev/outputs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <thread>

// Compiling into what is no regular file, and into files that cannot be replaced.

namespace {

namespace fs = std::filesystem;

/// Everything that comes out of a pipe.
std::string read_all(int descriptor) {
    std::string text;
    std::array<char, 1000> chunk{};
    for (ssize_t count = 0; (count = ::read(descriptor, chunk.data(), chunk.size())) > 0;) {
        text.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return text;
}

TEST_F(Outputs, APipeReceivesTheDatabase) {
    const SCRATCH scratch;
    const std::string pipe = scratch.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const COMPILE& compile : compilers()) {
        std::string received;
        std::atomic<bool> is_read{false};
        std::thread reader([&] {
            received = read_file(pipe);
            is_read = true;
        });
        EXPECT_REPORT(compile(pipe), "(no report)");
        while (!is_read) {  // whoever has not opened the pipe leaves its reader waiting
            ::close(::open(pipe.c_str(), O_WRONLY | O_NONBLOCK));
            std::this_thread::yield();
        }
        reader.join();
        EXPECT_TRUE(received == expected(compile));
        EXPECT_TRUE(fs::is_fifo(pipe));
        EXPECT_EQ(scratch.file_count(), 0U);
    }
}

TEST_F(Outputs, ADescriptorReceivesTheDatabase) {
    for (const COMPILE& compile : compilers()) {
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe(ends.data()), 0);
        std::string received;
        std::thread reader([&] { received = read_all(ends[0]); });
        EXPECT_REPORT(compile("/dev/fd/" + std::to_string(ends[1])), "(no report)");
        ::close(ends[1]);
        reader.join();
        ::close(ends[0]);
        EXPECT_TRUE(received == expected(compile));
    }
}

TEST_F(Outputs, DevicesAreWritten) {
    for (const COMPILE& compile : compilers()) {
        EXPECT_REPORT(compile("/dev/null"), "(no report)");
        EXPECT_TRUE(fs::is_character_file("/dev/null"));
        EXPECT_REPORT(compile("/dev/full"), "status");
    }
}

TEST_F(Outputs, AWritableFileWhoseDirectoryIsNotIsWrittenInPlace) {
    constexpr uid_t NOBODY = 65534;
    for (const COMPILE& compile : compilers()) {
        const SCRATCH scratch;
        const std::string before = expected(compile);  // and all that is read has been made
        const std::string file = scratch.write("directory/file", std::string(100'000, 'o'));
        fs::permissions(file, fs::perms::all);
        fs::permissions(scratch.path("directory"),
                        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                        fs::perm_options::remove);
        const pid_t child = ::fork();  // somebody whom permissions bind
        if (child == 0) {
            const bool bound = ::geteuid() != 0 || ::setuid(NOBODY) == 0;
            ::_exit(bound && report_of([&] { compile(file); }) == "(no report)" ? 0 : 1);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        fs::permissions(scratch.path("directory"), fs::perms::owner_all);
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(read_file(file) == before);
        EXPECT_EQ(scratch.file_count(), 1U);
    }
}

}  // namespace
