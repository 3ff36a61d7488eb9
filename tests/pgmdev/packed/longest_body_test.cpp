#include <gtest/gtest.h>

#include "flash/source.h"
#include "pgmdev/flash/source_fixture.h"
#include "support/reports.h"
#include "support/scratch.h"

// The longest body that is compiled is the longest that is read. Tables that come near it are far too long for a test; what
// stands behind the records is not.

namespace {

namespace ref = flash_reference;

TEST(LongestBody, IsCompiledAndNoLongerOne) {
    constexpr QWORD MOST = QWORD{128} << 20;
    const SCRATCH scratch;
    const FIO_PATH table(scratch.write("table.csv", ref::table({ref::data_row()})));
    DWORD rows = 0;
    const DWORD records = check_source_file<FLASH_SOURCE>(table, rows);
    EXPECT_EQ(rows, 1U);
    const PACKED_IMAGE image = compile_source_file<FLASH_SOURCE>(table, MOST - records);
    EXPECT_EQ(image.size, 44 + MOST);
    EXPECT_EQ(image.index, 44 + records);
    EXPECT_REPORT(compile_source_file<FLASH_SOURCE>(table, MOST - records + 1), "memory_size <= PACKED_BODY_MAX");
    EXPECT_REPORT(compile_source_file<FLASH_SOURCE>(table, QWORD{0xFFFFFFFF}), "memory_size <= PACKED_BODY_MAX");
}

}  // namespace
