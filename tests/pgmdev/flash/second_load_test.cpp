#include <gtest/gtest.h>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Loading into a manager that has loaded before.

namespace {

namespace ref = flash_reference;

PGMDEV_SFL_FLASH_INFO row_named(const std::string& name, const std::string& ini = "NONE") {
    PGMDEV_SFL_FLASH_INFO record = ref::sample(name);
    record.ini = ini;
    return record;
}

/// A device-database directory whose flash database a test writes.
class FlashSecondLoad : public testing::Test {
protected:
    void write(const std::string& file) { m_scratch.write("programmer/pgm_flash.pcf", file); }
    void write_records(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) { write(ref::file(ref::payload(records))); }

    SCRATCH m_scratch;
    DEVICE_DB_DIRECTORY m_directory{m_scratch.directory().string()};
};

TEST_F(FlashSecondLoad, ASecondLoadThatFailsLeavesWhatWasLoaded) {
    write_records({row_named("A"), row_named("B")});
    FLASH_PROBE manager(false, 1, false, false);
    manager.set_flash_mapping_index(0, 1);
    const PGMDEV_SFL_FLASH_INFO* const records = manager.get_flash_database();
    const std::string twice_default = ref::payload({row_named("C"), row_named("C")});
    for (const std::string& file :
         {std::string("short"), "X" + ref::file(twice_default).substr(1), ref::file(twice_default),
          ref::file(twice_default.substr(0, twice_default.size() - 9)),
          ref::file(ref::payload({row_named("C", "")}))}) {
        write(file);
        const std::string report =
            report_of([&] { manager.initialize_flash_database(m_scratch.path("programmer/pgm_flash.pcf")); });
        EXPECT_EQ(report == "(no report)", file[0] == 'X');  // a file of another kind ends nothing
        ASSERT_EQ(manager.get_flash_database(), records);
        EXPECT_EQ(manager.get_flash_count(), 2U);
        EXPECT_EQ(manager.m_version, 1U);
        EXPECT_EQ(manager.m_type_count, flash_reference::MEMBERS);
        EXPECT_EQ(manager.m_ini_count, 0U);
        EXPECT_EQ(manager.sfl_get_device_name(0), "B");
    }
    write_records({row_named("D")});
    manager.initialize_flash_database(m_scratch.path("programmer/pgm_flash.pcf"));
    EXPECT_EQ(manager.get_flash_count(), 1U);
    EXPECT_EQ(manager.get_flash_database()[0].device_name, "D");
}

TEST_F(FlashSecondLoad, ASecondLoadLeavesTheFirstOneToCopies) {
    write_records({row_named("A"), row_named("B")});
    FLASH_PROBE manager(false, 1, false, false);
    FLASH_PROBE copy(manager);
    write("short");
    EXPECT_REPORT(manager.initialize_flash_database(m_scratch.path("programmer/pgm_flash.pcf")),
                  "file_size > (8 + 32 + 4 + 2)");
    EXPECT_EQ(manager.get_flash_database(), copy.get_flash_database());
    write_records({row_named("C")});
    manager.initialize_flash_database(m_scratch.path("programmer/pgm_flash.pcf"));
    EXPECT_EQ(manager.get_flash_database()[0].device_name, "C");
    EXPECT_EQ(copy.get_flash_database()[1].device_name, "B");
}

TEST_F(FlashSecondLoad, AMapThatIsOlderThanTheRecordsIsFoundOut) {
    write_records({row_named("A"), row_named("B"), row_named("C")});
    FLASH_PROBE manager(false, 1, false, false);
    manager.set_flash_mapping_index(0, 2);
    write_records({row_named("D"), row_named("E", "OFF")});
    manager.initialize_flash_database(m_scratch.path("programmer/pgm_flash.pcf"));
    EXPECT_REPORT(manager.sfl_get_device_name(0), "index < data_size");
    manager.m_device_to_flash_map[0] = 1;  // the slot of the record that is not enabled
    EXPECT_EQ(manager.sfl_get_device_name(0), "");
}

}  // namespace
