#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev/flash/probe.h"
#include "pgmdev/profiles/probe.h"
#include "pgmdev_flash_ini.h"
#include "support/reports.h"

// The line of a report tells checks apart that share a text or a file.

namespace {

using OPERATIONS = std::vector<std::function<void()>>;

/// Expects every operation to end with a report, each of them with another pair of file and line.
void expect_distinct(const OPERATIONS& operations) {
    std::map<std::pair<std::string, int>, std::size_t> first;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        const REPORTS reports;
        EXPECT_THROW(operations[i](), MSG_INTERNAL_ERROR_EXCEPTION) << i;
        ASSERT_EQ(reports.all().size(), 1U) << i;
        const MSG_INTERNAL_ERROR_REPORT& report = reports.all().front();
        const auto [place, is_new] = first.try_emplace({report.file, report.line}, i);
        EXPECT_TRUE(is_new) << "operations " << place->second << " and " << i << " report line " << report.line
                            << " of " << report.file;
        EXPECT_GT(report.line, 0);
    }
}

TEST(ReportLines, OfTheParameterContainer) {
    using INI = PGMDEV_FLASH_INI;
    const auto none = static_cast<PGMDEV_PARAM_TYPE>(7);
    BYTE buffer[8] = {};
    DWORD number = 0;
    QWORD value = 0;
    std::string error;
    expect_distinct({
        [&] { INI::calculate_flash_ini_data_size(number, none, &number); },
        [&] { INI::fillup_flash_ini_data(buffer, number, none, &number); },
        [&] { INI::print_flash_ini_data(none, false, &number); },
        [&] { INI::convert_string_to_qword(none, value, false, "1", false, nullptr, nullptr, false, 1, error); },
        [&] {
            INI::convert_string_to_qword(PGMDEV_PARAM_BYTE, value, false, "1", false, nullptr, nullptr, false, 0,
                                         error);
        },
        [&] { INI::convert_string_to_qword("", true, nullptr); },
        [&] { INI::convert_string_to_qword("x", false, nullptr); },
        [&] { INI::convert_dword_to_hex_string(1, 9, false); },
        [&] { INI::convert_qword_to_hex_string(1, 17, false); },
        [&] { INI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, nullptr, 1); },
        [&] { INI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, buffer, 0); },
    });
}

TEST(ReportLines, OfTheFlashManager) {
    FLASH_PROBE empty;
    BYTE response[256] = {};
    std::vector<BYTE> bytes(64);
    BYTE* buffer = bytes.data();
    DWORD index = 0;
    bool flag = false;
    expect_distinct({
        [&] { empty.enable_device(0); },
        [&] { empty.copy_ini_database(); },
        [&] { empty.print_database(0); },
        [&] { empty.flash_id_database_mapping(false, 0, response); },
        [&] { empty.get_flash_mapping_index(0, true); },
        [&] { empty.set_flash_mapping_index(0, 0); },
        [&] { empty.sfl_get_chain_longest_program_utime(); },
        [&] { empty.dump_string_to_database(&buffer, index, ""); },
        [&] { empty.dump_value_to_database(&buffer, index, "", 1); },
        [&] { empty.dump_value_to_database(&buffer, index, "1", 3); },
        [&] { empty.dump_bool_to_database(&buffer, index, "yes"); },
        [&] { empty.dump_to_database(&buffer, index, {}); },
        [&] { empty.get_bool_data(response, index, &flag); },
        [&] { empty.confirm_data_type_end(response, index); },
        [&] { empty.initialize_flash_database(FIO_PATH("nowhere/nothing.pcf")); },
    });
}

TEST(ReportLines, OfTheProfileManager) {
    DEV_INFO_PROBE empty;
    std::vector<BYTE> bytes(64);
    BYTE* buffer = bytes.data();
    DWORD index = 0;
    expect_distinct({
        [&] { empty.search_family(DEV_FAMILY_GENERIC, false); },
        [&] { empty.search_device(DEV_DEVICE_GENERIC, false); },
        [&] { empty.search_part(DEV_PART_GENERIC, false); },
        [&] { empty.search_pcf_for_device(DEV_DEVICE_GENERIC); },
        [&] { empty.search_pcf_for_part(DEV_PART_GENERIC); },
        [&] { empty.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(DEV_FAMILY_MAX)); },
        [&] { empty.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(DEV_DEVICE_MAX)); },
        [&] { empty.get_db_by_part(DEV_PART_MAX); },
        [&] { empty.dump_bool_to_database(&buffer, index, "yes"); },
        [&] { empty.dump_enum_to_database(&buffer, index, "none such", ""); },
        [&] { empty.dump_enum_to_database(&buffer, index, "", "none such"); },
        [&] {
            empty.m_index = DEV_INFO_PROBE::TOTAL_DATABASE_DEVICE;
            empty.copy_database();
        },
        [&] {
            empty.m_index = 0;
            empty.copy_database();
        },
        [&] { empty.initialize_device_database(FIO_PATH("nowhere/nothing.pcf")); },
    });
}

}  // namespace
