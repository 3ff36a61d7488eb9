#include <filesystem>
#include <string_view>

#include <windows.h>

#include "pgmdev/parameters/fixture.h"
#include "support/replaced_import_windows.h"

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

/// What is at the place of the lock's file when the system denies it: the last one's, which goes, or nothing any more, in a
/// directory that may be listed or not even that.
enum class PLACE { GOING, GONE, CLOSED };

/// The lock's file, as the system denies it to the library a few times.
class DENIED_LOCK {
public:
    DENIED_LOCK(int denials, PLACE place) {
        s_denials = denials;
        s_place = place;
        s_attempts = 0;
    }

    int attempts() const { return s_attempts; }

private:
    static bool is_lock(const wchar_t* name) { return std::wstring_view(name).ends_with(L"\\.tessary-lock"); }

    static HANDLE denied() {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }

    static HANDLE WINAPI open(const wchar_t* name, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                              DWORD how, DWORD attributes, HANDLE like) {
        return is_lock(name) && s_attempts++ < s_denials
                   ? denied()
                   : CreateFileW(name, access, sharing, security, how, attributes, like);
    }

    static HANDLE WINAPI find(const wchar_t* name, WIN32_FIND_DATAW* found) {
        if (is_lock(name) && s_place == PLACE::CLOSED) {
            return denied();
        }
        return FindFirstFileW(is_lock(name) && s_place == PLACE::GOING ? L"*" : name, found);
    }

    static inline int s_denials = 0;
    static inline PLACE s_place = PLACE::GOING;
    static inline int s_attempts = 0;

    REPLACED_IMPORT m_open{GetModuleHandleW(L"pgmdev.dll"), "kernel32.dll", "CreateFileW",
                           reinterpret_cast<FARPROC>(open)};
    REPLACED_IMPORT m_find{GetModuleHandleW(L"pgmdev.dll"), "kernel32.dll", "FindFirstFileW",
                           reinterpret_cast<FARPROC>(find)};
};

TEST(FlashIniWindows, ALockThatIsGoingIsWaitedFor) {
    const FLASH_INI_DIRECTORY directory;
    const DENIED_LOCK denied(10, PLACE::GOING);
    const PGMDEV_FLASH_INI_LOCK lock;
    EXPECT_TRUE(lock.is_held());
    EXPECT_EQ(denied.attempts(), 11);
    EXPECT_TRUE(std::filesystem::exists(directory.scratch().directory() / ".tessary-lock"));
}

TEST(FlashIniWindows, ALockThatHasJustGoneIsAskedForAgain) {
    const FLASH_INI_DIRECTORY directory;
    const DENIED_LOCK denied(1, PLACE::GONE);
    const PGMDEV_FLASH_INI_LOCK lock;
    EXPECT_TRUE(lock.is_held());
    EXPECT_TRUE(std::filesystem::exists(directory.scratch().directory() / ".tessary-lock"));
}

TEST(FlashIniWindows, ADirectoryThatMayNotBeWrittenOrEnteredHasNoLockToGive) {
    const FLASH_INI_DIRECTORY directory;
    for (const PLACE place : {PLACE::GONE, PLACE::CLOSED}) {
        const DENIED_LOCK denied(1'000'000, place);
        const PGMDEV_FLASH_INI_LOCK lock;
        EXPECT_TRUE(lock.is_held());
        EXPECT_EQ(denied.attempts(), 3);
    }
}

}  // namespace
