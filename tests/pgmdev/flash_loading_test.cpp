#include <gtest/gtest.h>

#include "flash_fixture.h"
#include "flash_probe.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

namespace {

namespace ref = flash_reference;

/// A device-database directory whose flash database a test writes.
class FlashLoading : public testing::Test {
protected:
    void write(const std::string& file) { m_scratch.write("programmer/pgm_flash.pcf", file); }
    void write_records(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) { write(ref::file(ref::payload(records))); }

    SCRATCH m_scratch;
    DEVICE_DB_DIRECTORY m_directory{m_scratch.directory().string()};
};

TEST_F(FlashLoading, KeepsEveryMember) {
    write_records({ref::sample()});
    const FLASH_PROBE manager(false, 2, false, false);
    ASSERT_EQ(manager.get_flash_count(), 1U);
    EXPECT_EQ(manager.get_flash_database()[0], ref::sample());
    EXPECT_EQ(manager.m_version, 1U);
    EXPECT_EQ(manager.m_type_count, 33U);
    EXPECT_EQ(manager.m_ini_count, 0U);
    EXPECT_EQ(manager.m_device_to_flash_map[0], INVALID_DWORD);
    EXPECT_EQ(manager.m_device_to_flash_map[1], INVALID_DWORD);
}

}  // namespace
