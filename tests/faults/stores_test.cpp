#include <sstream>

#include "dstr.h"
#include "faults/every_fault.h"
#include "pgm_common.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "pgmdev_user_flash.h"
#include "sha256.h"
#include "support/reports.h"

// First uses that fail: the next one works, or fails anew, and nothing half-built is kept.

namespace {

void expect_to_come(const std::function<bool()>& use) {
    const REPORTS quiet;
    bool good = false;
    with_each_allocation_failing([&] { good = false; }, [&] { good = use(); },
                                 [&](bool ended) { EXPECT_TRUE(good || !ended); }, 16);
    EXPECT_TRUE(use());
}

TEST(StoreFaults, OrderingCodes) {
    expect_to_come([] {
        PGMDEV_MGR::get_opn(0);
        return PGMDEV_MGR::get_opn(INVALID_DWORD).empty();
    });
}

TEST(StoreFaults, Grammar) {
    expect_to_come([] { return PGMDEV_DEVICE_GRAMMAR_MGR::get_family("no such part").empty(); });
}

TEST(StoreFaults, BootFlash) {
    expect_to_come([] {
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        return !PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().empty();
    });
    expect_to_come([] {
        PGMDEV_HPS_SPI_MGR::delete_mgr();
        return !PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().empty();
    });
}

TEST(StoreFaults, Parts) {
    const std::string part = dstr_get_user_string(1);
    expect_to_come([&] {
        const PGMDEV_PART_INDEX index;
        return PGMDEV_MGR::get_opn_enum(part) != 12345678;
    });
}

TEST(StoreFaults, UserTexts) {
    expect_to_come([] {
        PGMDEV_USER_FLASH::from_encoded("no description");
        return true;
    });
}

TEST(StoreFaults, UserTextsWithoutMemoryForZlib) {
    PGMDEV_SFL_FLASH_INFO flash;
    flash.device_name = "CHIP";
    const std::string whole = PGMDEV_USER_FLASH::encode({&flash, 1});
    ASSERT_NE(whole, "");
    // Where one allocation fails another way of decoding has the memory that it takes; where all do, none has.
    for (const bool all_later : {false, true}) {
        std::string encoded;
        int lacking = 0;
        with_each_malloc_failing([&] { encoded = "?"; },
                                 [&] {
                                     try {
                                         encoded = PGMDEV_USER_FLASH::encode({&flash, 1});
                                     } catch (const std::bad_alloc&) {
                                         ++lacking;
                                     }
                                 },
                                 [&] { EXPECT_TRUE(encoded == "?" || encoded == whole) << encoded; }, all_later);
        EXPECT_GT(lacking, 0);
    }
}

/// No descriptors are left when the first digest is made, which a process of its own shows.
TEST(StoreFaults, FirstDigestWithoutDescriptors) {
    EXPECT_EXIT(
        {
            const FAILING_CALL fault(1, EMFILE, true);
            const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha("abc", 3, 32));
            std::_Exit(digest[0] == 0xBA ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(StoreFaults, DigestsTakeNoMemory) {
    SHA256_DIGEST digest{};
    bool was_any = false;
    {
        const FAILING_MALLOC fault(1);
        digest = sha256("abc");
        was_any = fault.happened();
    }
    EXPECT_FALSE(was_any);
    EXPECT_EQ(digest.front(), 0xBA);
}

}  // namespace
