#include <windows.h>

#include "pgmdev/parameters/fixture.h"

// The container in the hands of other programs.

namespace {

TEST(FlashIniWindows, WhatNobodyMayReadIsNotTakenForLost) {
    const SCRATCH scratch;
    const MODULE_DIRECTORY directory(scratch.directory().string());
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(0, "kept"));
    HANDLE holder = CreateFileW((scratch.directory() / "pgm_flash.ini").c_str(), GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, "new"));
    CloseHandle(holder);
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), "kept");
    EXPECT_EQ(scratch.file_count(), 2U);
}

TEST(FlashIniWindows, AProtectedContainerIsNotReplaced) {
    const FLASH_INI_DIRECTORY directory;
    const std::filesystem::path file = directory.scratch().directory() / "pgm_flash.ini";
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(0, "kept"));
    ASSERT_NE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    if (std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).is_open()) {
        GTEST_SKIP() << "the system lets this user write what is protected, as Wine does for root";
    }
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_NE(GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_EQ(directory.scratch().file_count(), 2U);
    ASSERT_NE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL), 0);
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), "kept");
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), std::nullopt);
}

}  // namespace
