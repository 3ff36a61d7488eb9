#include "file_kind.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "fio.h"
#include "support/scratch.h"

// What Windows tells of paths that are free of the length limit, as all are that libraries and command open.

namespace fs = std::filesystem;

namespace {

/// A name of 200 characters: two of them are more than a path may have that is not free of the limit.
const std::string LONG_NAME(200, 'n');

fs::file_type type_of(const fs::path& path) {
    std::error_code error;
    const fs::file_type type = file_type_of(path, error);
    EXPECT_FALSE(error) << error.message();
    return type;
}

}  // namespace

TEST(file_kind, FilesDirectoriesDevicesAndNothing) {
    const SCRATCH scratch;
    const fs::path file = fio_get_unc_full_path(scratch.write("file", "x"));
    EXPECT_EQ(file.native().substr(0, 4), LR"(\\?\)");
    EXPECT_EQ(type_of(file), fs::file_type::regular);
    EXPECT_EQ(type_of(file.parent_path()), fs::file_type::directory);
    EXPECT_TRUE(is_a_directory(file.parent_path()));
    EXPECT_FALSE(is_a_directory(file));
    EXPECT_EQ(type_of(file.parent_path() / "none"), fs::file_type::not_found);
    EXPECT_EQ(type_of(file.parent_path() / "none" / "none"), fs::file_type::not_found);
    EXPECT_EQ(type_of(file.parent_path() / "no?name"), fs::file_type::not_found);
    EXPECT_EQ(type_of(LR"(\\.\NUL)"), fs::file_type::character);
    EXPECT_EQ(type_of(LR"(\\.\pipe\none)"), fs::file_type::fifo);
}

TEST(file_kind, TwoNamesOfAFile) {
    const SCRATCH scratch;
    const fs::path file = fio_get_unc_full_path(scratch.write("file", "x"));
    const fs::path other = fio_get_unc_full_path(scratch.write("other", "x"));
    std::error_code error;
    EXPECT_TRUE(are_same_file(file, file.parent_path() / "FILE", error));
    EXPECT_FALSE(error);
    EXPECT_FALSE(are_same_file(file, other, error));
    EXPECT_FALSE(error);
    EXPECT_FALSE(are_same_file(file, file.parent_path() / "none", error));
    EXPECT_TRUE(error);
}

TEST(file_kind, DirectoriesBeyondTheLimitAreMadeAndFilesRemoved) {
    const SCRATCH scratch;
    const fs::path directory = fio_get_unc_full_path(scratch.path(LONG_NAME + "/" + LONG_NAME));
    std::error_code error;
    make_directories(directory, error);
    EXPECT_FALSE(error);
    EXPECT_EQ(type_of(directory), fs::file_type::directory);
    EXPECT_FALSE(make_directory(directory, error));  // it is there
    EXPECT_FALSE(error);

    const fs::path file = directory / "file";
    std::ofstream(file, std::ios::binary) << "x";
    EXPECT_EQ(type_of(file), fs::file_type::regular);
    make_directories(file, error);
    EXPECT_TRUE(error);  // a file is there
    remove_file(file, error);
    EXPECT_FALSE(error);
    EXPECT_EQ(type_of(file), fs::file_type::not_found);
    remove_file(file, error);
    EXPECT_FALSE(error);  // as there is none
}
