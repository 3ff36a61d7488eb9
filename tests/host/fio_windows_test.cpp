#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "fio.h"
#include "support/scratch.h"
#include "support/start_line.h"

// Paths and files as only Windows has them.

namespace {

struct SPELLING {
    const char* path;
    const char* full;       ///< as FIO_PATH has it
    const wchar_t* opened;  ///< as streams open it
};

const std::vector<SPELLING> SPELLINGS{
    {R"(C:\a\b)", R"(C:\a\b)", LR"(\\?\C:\a\b)"},
    {R"(c:/a//b\)", R"(c:\a\b\)", LR"(\\?\c:\a\b\)"},
    {R"(C:\a\.\b\..\c)", R"(C:\a\c)", LR"(\\?\C:\a\c)"},
    {R"(C:\a\b. )", R"(C:\a\b)", LR"(\\?\C:\a\b)"},
    {R"(\\server\share\a\..\b)", R"(\\server\share\b)", LR"(\\?\UNC\server\share\b)"},
    {R"(//server/share/b)", R"(\\server\share\b)", LR"(\\?\UNC\server\share\b)"},
    {R"(\\?\C:\a\b)", R"(\\?\C:\a\b)", LR"(\\?\C:\a\b)"},
    {R"(\\?\UNC\server\share\b)", R"(\\?\UNC\server\share\b)", LR"(\\?\UNC\server\share\b)"},
    {R"(\\.\pipe\a)", R"(\\.\pipe\a)", LR"(\\.\pipe\a)"},
};

}  // namespace

TEST(fio_windows, EverySpellingOfAPath) {
    for (const auto& [path, full, opened] : SPELLINGS) {
        EXPECT_EQ(FIO_PATH(path).fullpath(), full);
        EXPECT_EQ(fio_get_unc_full_path(path).native(), opened) << path;
    }
    EXPECT_TRUE(fio_get_unc_full_path("").empty());
}

TEST(fio_windows, AReplacementWaitsForAReader) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    START_LINE opened(2);
    std::thread reader([&] {
        const std::ifstream input(fio_get_unc_full_path(file), std::ios::binary);
        opened.arrive_and_wait();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    });
    opened.arrive_and_wait();
    FIO_REPLACEMENT replacement(file);
    const std::string contents = "new";
    EXPECT_TRUE(replacement.write({reinterpret_cast<const BYTE*>(contents.data()), contents.size()}));
    EXPECT_TRUE(replacement.commit());
    reader.join();
    EXPECT_EQ(read_file(file), "new");
}

TEST(fio_windows, AReplacementGivesUpWhereTheReaderStays) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "old");
    const std::ifstream reader(fio_get_unc_full_path(file), std::ios::binary);
    {
        FIO_REPLACEMENT replacement(file);
        EXPECT_TRUE(replacement.write({}));
        EXPECT_FALSE(replacement.commit());
    }
    EXPECT_EQ(read_file(file), "old");
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(fio_windows, DevicesReceiveWhatIsWritten) {
    for (const char* device : {"NUL", R"(\\.\NUL)", R"(\\.\pipe\none)"}) {
        FIO_REPLACEMENT replacement{FIO_PATH(device)};
        EXPECT_EQ(replacement.temporary().fullpath(), "") << device;
        const std::string contents = "x";
        EXPECT_TRUE(replacement.write({reinterpret_cast<const BYTE*>(contents.data()), contents.size()}));
        EXPECT_EQ(replacement.commit(), std::string(device).ends_with("NUL")) << device;
    }
}
