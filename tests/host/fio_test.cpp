#include "fio.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/scratch.h"

namespace fs = std::filesystem;

namespace {

// Names that trip careless code: blanks, dots, bytes of several scripts, what a shell would take apart.
const std::vector<std::string> NAMES {
    "plain.csv", "with blank.csv",
#if !defined(_WIN32)  // there, names do not end in a blank
        " both ends ",
#endif
        "two  blanks", "Ger\xC3\xA4te.pcf", "\xE6\x97\xA5\xE6\x9C\xAC.bin", "\xF0\x9F\x90\xA6", ".hidden", "no-ending",
        "a;b&c'd$e(f)", "%s%n%d", "100%", "#1", "-", "--json"
};

std::string text_of(const fs::path& path) {
    return utf8_from_path(fs::path(path).make_preferred());
}

}  // namespace

TEST(fio_path, IsAbsolute) {
    EXPECT_EQ(FIO_PATH().fullpath(), "");
    EXPECT_EQ(FIO_PATH("").fullpath(), "");
    EXPECT_EQ(FIO_PATH(std::string()).fullpath(), "");
    EXPECT_EQ(FIO_PATH("file").fullpath(), text_of(fs::current_path() / "file"));
    EXPECT_EQ(FIO_PATH("a/file").fullpath(), text_of(fs::current_path() / "a" / "file"));
    const SCRATCH scratch;
    EXPECT_EQ(FIO_PATH(scratch.path("x")).fullpath(), scratch.path("x"));
    EXPECT_EQ(FIO_PATH(FIO_PATH("file").fullpath()).fullpath(), FIO_PATH("file").fullpath());
}

TEST(fio_path, StaysWhereItWasMade) {
    const SCRATCH scratch;
    const fs::path before = fs::current_path();
    const FIO_PATH path("file");
    fs::current_path(scratch.directory());
    const std::string& seen = path.fullpath();
    fs::current_path(before);
    EXPECT_EQ(seen, text_of(before / "file"));
}

TEST(fio_path, KeepsNamesAsTheyAre) {
    const SCRATCH scratch;
    for (const std::string& name : NAMES) {
        EXPECT_EQ(FIO_PATH(scratch.path(name)).fullpath(), scratch.path(name));
        EXPECT_EQ(FIO_PATH(scratch.path(name).c_str()).fullpath(), scratch.path(name));
    }
}

TEST(fio_file_system, FindsFilesOfAnyName) {
    const SCRATCH scratch;
    for (const std::string& name : NAMES) {
        const std::string path = scratch.path(name);
        EXPECT_FALSE(FIO_FILE_SYSTEM::exists(path.c_str())) << name;
        std::ofstream(fio_get_unc_full_path(path), std::ios::binary) << "12345";
        EXPECT_TRUE(FIO_FILE_SYSTEM::exists(path.c_str())) << name;
        FIO_STATUS status;
        ASSERT_TRUE(FIO_FILE_SYSTEM::status(path.c_str(), &status)) << name;
        EXPECT_EQ(status.size, 5U);
        EXPECT_TRUE(status.regular);
        EXPECT_EQ(read_file(fio_get_unc_full_path(path)), "12345") << name;
    }
    EXPECT_EQ(scratch.file_count(), NAMES.size());
}

TEST(fio_file_system, EmptyAndLargeFiles) {
    const SCRATCH scratch;
    FIO_STATUS status{77, false};
    ASSERT_TRUE(FIO_FILE_SYSTEM::status(scratch.write("empty", "").c_str(), &status));
    EXPECT_EQ(status.size, 0U);
    EXPECT_TRUE(status.regular);
    const std::string large = scratch.write("large", "");
    fs::resize_file(large, 0x100000003);  // mostly a hole
    ASSERT_TRUE(FIO_FILE_SYSTEM::status(large.c_str(), &status));
    EXPECT_EQ(status.size, 0x100000003U);
}

TEST(fio_file_system, DirectoryExistsButIsNoRegularFile) {
    const SCRATCH scratch;
    const std::string path = scratch.directory().string();
    FIO_STATUS status{77, true};
    EXPECT_TRUE(FIO_FILE_SYSTEM::exists(path.c_str()));
    ASSERT_TRUE(FIO_FILE_SYSTEM::status(path.c_str(), &status));
    EXPECT_EQ(status.size, 0U);
    EXPECT_FALSE(status.regular);
}

TEST(fio_file_system, MissingThings) {
    const SCRATCH scratch;
    const std::string file = scratch.write("file", "x");
    for (const std::string& path : {std::string(), scratch.path("none"), scratch.path("none/deeper"), file + "/below",
                                    scratch.path(std::string(300, 'n')), scratch.path(std::string(10000, 'n'))}) {
        FIO_STATUS status;
        EXPECT_FALSE(FIO_FILE_SYSTEM::exists(path.c_str())) << path;
        EXPECT_FALSE(FIO_FILE_SYSTEM::status(path.c_str(), &status)) << path;
    }
}

TEST(fio_file_system, BytesThatAreNoTextNameNothing) {
    for (const char* path : {"\xFF\xFE", "\xC3", "\xED\xA0\x80/below", "\xF8\x88\x80\x80\x80"}) {
        FIO_STATUS status;
        EXPECT_FALSE(FIO_FILE_SYSTEM::exists(path));
        EXPECT_FALSE(FIO_FILE_SYSTEM::status(path, &status));
    }
}

TEST(fio_file_system, RelativePathsStartInTheCurrentDirectory) {
    const SCRATCH scratch;
    scratch.write("below/file", "x");
    const fs::path before = fs::current_path();
    fs::current_path(scratch.directory());
    const bool found = FIO_FILE_SYSTEM::exists("below/file") && FIO_FILE_SYSTEM::exists("./below/../below/file");
    fs::current_path(before);
    EXPECT_TRUE(found);
}
