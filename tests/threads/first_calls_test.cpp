#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

#include "cfg.h"
#include "dstr.h"
#include "gen.h"
#include "pgm_common.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_flash_table.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "pgmdev_user_flash.h"
#include "pgmdev_version.h"
#include "support/scratch.h"
#include "support/settings.h"
#include "threads/first_call.h"

// Eight threads that are the first to ask, all at once: each gets what a single one would. A program of its own, for each test
// of which a process is started where that takes little or the thread sanitizer watches.

namespace {

/// Before anything else, for the files are read once in a process.
TEST(FirstCallsOfAll, Configuration) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_FIRST = of the file\n");
#if defined(_WIN32)
    _putenv_s("TESSARY_CONFIG_FILE", file.c_str());
#else
    setenv("TESSARY_CONFIG_FILE", file.c_str(), 1);
#endif
    EXPECT_EQ(answers_to_all([] { return cfg_get_value("TESSARY_FIRST"); }),
              std::vector<std::string>(THREADS, "of the file"));
}

std::string text_of(bool value) {
    return value ? "true" : "false";
}

/// The response of a flash of which there is one in the shipped database.
constexpr std::array<BYTE, 4> RESPONSE{0xEF, 0x40, 0x17, 0x00};

const std::string& databases() {
    static const std::string directory = std::string(TEST_DEVICES_DIR) + "/programmer/";
    return directory;
}

bool ends_with(const std::string& path, const char* ending) {
    return std::filesystem::path(path).generic_string().ends_with(ending);
}

constexpr std::array CALLS{
    FIRST_CALL{"Installation", [] { return text_of(ends_with(gen_get_tessary_path(), "share/tessary")); }, "true"},
    FIRST_CALL{"DeviceDatabases",
               [] { return text_of(ends_with(gen_get_device_db_fullpath(), "share/tessary/devices")); }, "true"},
    FIRST_CALL{"Module", [] { return text_of(gen_get_module_path().empty()); }, "false"},
    FIRST_CALL{"Version", [] { return PGMDEV_VERSION::library(); }, TEST_PROJECT_VERSION},
    FIRST_CALL{"Digest",
               [] {
                   const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha("abc", 3, 32));
                   return std::to_string(digest[0]) + " " + std::to_string(digest[31]);
               },
               "186 173"},
    FIRST_CALL{"PartNames", [] { return dstr_get_user_string(dstr_get_dev_part_enum_by_string("kes50c6")); },
               "KES50C6"},
    FIRST_CALL{"OrderingCodes", [] { return PGMDEV_MGR::get_opn(PGMDEV_MGR::get_opn_enum("KES50C6")); }, "KES50C6"},
    FIRST_CALL{"Hashes", [] { return PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::get_opn_hash("KES50C6")); }, "KES50C6"},
    FIRST_CALL{"FullNames", [] { return PGMDEV_MGR::get_possible_full_name("kes50"); }, "KES50C6"},
    FIRST_CALL{"ProgrammerFileNames", [] { return PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device("KES_50"); }, "KES50"},
    FIRST_CALL{"Grammar", [] { return PGMDEV_DEVICE_GRAMMAR_MGR::get_family("KES_50"); }, "KESTREL"},
    FIRST_CALL{"PartIndex", [] { return PGMDEV_PART_INDEX().get_possible_full_name("kes50"); }, "KES50C6"},
    FIRST_CALL{"CurrentKind",
               [] {
                   PGMDEV_HPS_MGR* const manager = PGMDEV_HPS_MGR::get_mgr();
                   const bool known = manager->set_current_hps(0x4BA00477);
                   return text_of(known && manager->get_current_hps() == PGMDEV_HPS_MGR::get_kinds().data());
               },
               "true"},
    FIRST_CALL{"BootFlashNand", [] { return text_of(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().empty()); }, "false"},
    FIRST_CALL{"BootFlashSpi", [] { return text_of(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().empty()); }, "false"},
    FIRST_CALL{"FlashManager",
               [] {
                   PGMDEV_FLASH_MANAGER flash(false, 1, false, false);
                   std::array<BYTE, 4> response = RESPONSE;
                   flash.flash_id_database_mapping(false, 0, response.data());
                   return flash.sfl_get_device_name(0);
               },
               "W25Q64JV"},
    FIRST_CALL{"ProfileManager",
               [] {
                   PGMDEV_DEV_INFO_MANAGER profiles;
                   const std::unique_ptr<PGMDEV_DEVICE_INFO> found(profiles.get_db_by_device(DEV_DEVICE_GENERIC));
                   return text_of(found != nullptr);
               },
               "true"},
    FIRST_CALL{"FlashTable",
               [] {
                   const auto table = PGMDEV_FLASH_TABLE::from_database(databases() + "pgm_flash.pcf");
                   return text_of(table.records().empty());
               },
               "false"},
    FIRST_CALL{"ProfileTable",
               [] {
                   const auto table = PGMDEV_DEV_INFO_TABLE::from_database(databases() + "pgm_dev_info.pcf");
                   return std::to_string(table.records().size());
               },
               "78"},
    FIRST_CALL{"FlashNotes",
               [] {
                   const auto files = PGMDEV_FLASH_NOTES::files_of_database(databases() + "pgm_flash.pcf");
                   PGMDEV_FLASH_NOTES::beside_database(databases() + "pgm_flash.pcf");
                   return text_of(files.empty());
               },
               "false"},
    FIRST_CALL{"UserFlash",
               [] {
                   PGMDEV_SFL_FLASH_INFO flash;
                   flash.device_name = "MINE";
                   return text_of(PGMDEV_USER_FLASH::encode({&flash, 1}).empty());
               },
               "false"},
    FIRST_CALL{"EnumeratorNames",
               [] {
                   std::string name;
                   PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE_SECTOR, 8, &name);
                   return name;
               },
               "DONE_BITS"},
};

class FirstCalls : public testing::TestWithParam<FIRST_CALL> {};

TEST_P(FirstCalls, OfEightThreads) {
    const FIRST_CALL& call = GetParam();
    EXPECT_EQ(answers_to_all(call.ask), std::vector<std::string>(THREADS, call.answer));
    EXPECT_EQ(call.ask(), call.answer);
}

INSTANTIATE_TEST_SUITE_P(Each, FirstCalls, testing::ValuesIn(CALLS),
                         [](const testing::TestParamInfo<FIRST_CALL>& instance) { return instance.param.name; });

class FirstCallsAtOnce : public testing::TestWithParam<std::size_t> {};

TEST_P(FirstCallsAtOnce, OfEightThreads) {
    EXPECT_EQ(wrong_of_all_at_once(CALLS, GetParam()), std::vector<std::string>(THREADS, ""));
}

INSTANTIATE_TEST_SUITE_P(FurtherOn, FirstCallsAtOnce, testing::Values(0, 1, 3));

}  // namespace
