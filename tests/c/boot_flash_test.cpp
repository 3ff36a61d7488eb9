#include "c/owned.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "support/scratch.h"
#include "support/settings.h"

// Hard processor systems and their boot flash, through the C interface.

namespace {

template <class MANAGER, class MEMBERS>
ROWS expected_rows(const MEMBERS& members) {
    ROWS rows;
    const MANAGER& manager = *MANAGER::get_mgr();
    for (const auto* record : manager.get_list()) {
        std::vector<std::string> row;
        row.reserve(members.size() + 1);
        for (const auto& member : members) {
            row.push_back(std::visit(
                [&]<class RECORD, class FIELD>(FIELD RECORD::*field) -> std::string {
                    if constexpr (std::is_same_v<FIELD, std::string>) {
                        return record->*field;
                    } else {
                        return std::to_string(record->*field);
                    }
                },
                member.field));
        }
        row.emplace_back(rows.size() < manager.get_user_list().size() ? "1" : "0");
        rows.push_back(std::move(row));
    }
    return rows;
}

ROWS expected_rows(pgmdev_boot_flash_type type) {
    return type == PGMDEV_BOOT_FLASH_NAND ? expected_rows<PGMDEV_HPS_NAND_MGR>(PGMDEV_HPS_NAND_MEMBERS)
                                          : expected_rows<PGMDEV_HPS_SPI_MGR>(PGMDEV_HPS_SPI_MEMBERS);
}

/// A container of the test's own; lists that were read before are not those of it.
class CBootFlash : public testing::Test {
protected:
    void SetUp() override { pgmdev_boot_flash_reread(nullptr); }
    void TearDown() override { pgmdev_boot_flash_reread(nullptr); }

    void list(pgmdev_boot_flash_type type) {
        ASSERT_EQ(pgmdev_boot_flash_list(type, m_list.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(rows_of(m_list), expected_rows(type));
    }

    SCRATCH m_scratch;
    MODULE_DIRECTORY m_module{m_scratch.path("")};
    C_RECORDS m_list;
};

}  // namespace

TEST_F(CBootFlash, KindsAreThoseOfTheClass) {
    C_RECORDS kinds;
    ASSERT_EQ(pgmdev_hps_kinds(kinds.place(), nullptr), PGMDEV_STATUS_OK);
    const auto expected = PGMDEV_HPS_MGR::get_kinds();
    ASSERT_EQ(pgmdev_records_count(kinds), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const PGMDEV_HPS_STRUCTURE& kind = expected[i];
        std::vector<std::string> row{std::to_string(kind.id), kind.name};
        for (const DWORD figure :
             {kind.core_count, kind.spi_selects, kind.nand_data_bits, kind.on_chip_ram_base, kind.on_chip_ram_byte,
              kind.clock_manager_base, kind.reset_manager_base, kind.pin_multiplex_base, kind.watchdog_base,
              kind.uart_base, kind.spi_controller_base, kind.spi_data_base, kind.nand_controller_base,
              kind.nand_data_base}) {
            row.push_back(std::to_string(figure));
        }
        EXPECT_EQ(row_of(kinds, i), row);
    }
}

TEST_F(CBootFlash, TheCurrentKindIsThatOfTheProcess) {
    const DWORD id = PGMDEV_HPS_MGR::get_kinds().back().id;
    uint32_t current = 0;
    ASSERT_EQ(pgmdev_hps_set_current(id, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(PGMDEV_HPS_MGR::get_mgr()->get_current_hps()->id, id);
    EXPECT_EQ(pgmdev_hps_current(&current, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(current, id);
    EXPECT_EQ(pgmdev_hps_set_current(1, nullptr), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(pgmdev_hps_current(&current, nullptr), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(current, 0U);
}

TEST_F(CBootFlash, ListsAreThoseOfTheClasses) {
    for (pgmdev_boot_flash_type type = 0; type < PGMDEV_BOOT_FLASH_TYPES; ++type) {
        ASSERT_NO_FATAL_FAILURE(list(type));
        EXPECT_GE(pgmdev_records_count(m_list), 10U);
        EXPECT_EQ(row_of(m_list, 0).back(), "0");
    }
}

TEST_F(CBootFlash, EntriesOfTheUsersOwn) {
    for (pgmdev_boot_flash_type type = 0; type < PGMDEV_BOOT_FLASH_TYPES; ++type) {
        ASSERT_NO_FATAL_FAILURE(list(type));
        const std::size_t built_in = pgmdev_records_count(m_list);
        std::vector<pgmdev_value> values;
        ROWS expected;
        for (const std::size_t record : {3U, 1U}) {
            std::vector<pgmdev_value> one = values_of(m_list, record);
            one.pop_back();  // whose it is
            values.insert(values.end(), one.begin(), one.end());
            expected.push_back(row_of(m_list, record));
            expected.back().back() = "1";
        }
        C_RECORDS kept;  // what the values borrow from
        ASSERT_EQ(pgmdev_boot_flash_set_user(type, values.data(), values.size(), nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_boot_flash_reread(nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_boot_flash_list(type, kept.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(rows_of(kept), expected_rows(type));
        ROWS rows = rows_of(kept);
        rows.resize(2);
        EXPECT_EQ(rows, expected);
        EXPECT_EQ(pgmdev_records_count(kept), built_in + 2);
        ASSERT_EQ(pgmdev_boot_flash_set_user(type, nullptr, 0, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_boot_flash_reread(nullptr), PGMDEV_STATUS_OK);
        ASSERT_NO_FATAL_FAILURE(list(type));
        EXPECT_EQ(pgmdev_records_count(m_list), built_in);
        EXPECT_EQ(pgmdev_boot_flash_set_user(type, values.data(), 1, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    }
}
