#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

// The system's own header comes first, with all its macros. (system_types_last_windows.cpp has it last.)
#include <windows.h>

#include "every_header.h"

namespace {

TEST(SystemTypes, AreTheLibrarysTypes) {
    EXPECT_TRUE((std::is_same_v<BYTE, unsigned char>));
    EXPECT_TRUE((std::is_same_v<WORD, unsigned short>));
    EXPECT_TRUE((std::is_same_v<DWORD, unsigned long>));
    EXPECT_EQ(sizeof(DWORD), 4U);
    EXPECT_EQ(sizeof(QWORD), 8U);
}

TEST(SystemTypes, PassFromTheSystemToTheLibrary) {
    LARGE_INTEGER size{};
    const DWORD id = GetCurrentProcessId();
    DWORD block_size = id;
    size.QuadPart = 1;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, block_size));
    EXPECT_EQ(block == nullptr, block_size == 0);
    EXPECT_FALSE(PGMDEV_HPS_MGR::get_mgr()->set_current_hps(size.LowPart));
    PGMDEV_HPS_MGR::delete_mgr();
}

}  // namespace
