#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "msg.h"
#include "pgm_common.h"
#include "pgmdev_flash_manager.h"

// What passes the borders between the libraries and the program: exceptions, and memory that the program frees.

namespace {

/// Makes the library fail. The report goes through the host's own handler, so that it is thrown inside the host's
/// library and passes both libraries on its way here.
void fail() {
    PGMDEV_FLASH_MANAGER manager(false, 0, true, false);
    manager.generate_flash_database(FIO_PATH("no such table.csv"), FIO_PATH("never.pcf"));
}

TEST(Border, ReportsArriveAsTheHostsException) {
    testing::internal::CaptureStderr();
    try {
        fail();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
        EXPECT_EQ(error.report().module, "PGMDEV");
        EXPECT_EQ(error.report().file, "pgm/pgmdev/pgmdev_flash_manager");
        EXPECT_EQ(error.report().condition, error.what());
        EXPECT_NE(error.report().condition, "");
    }
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST(Border, ReportsArriveAsTheStandardsException) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(fail(), std::runtime_error);
    testing::internal::GetCapturedStderr();
}

TEST(Border, TheProgramFreesWhatTheLibraryAllocated) {
    for (int round = 0; round < 1000; ++round) {
        const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha("abc", 3, 32));
        ASSERT_EQ(digest[0], 0xBA);
    }
}

}  // namespace
