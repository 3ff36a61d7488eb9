#include <gtest/gtest.h>

#include <vector>

#include "pgmdev_mgr.h"
#include "support/reports.h"

namespace {

/// The names by value, written out once more.
const std::vector<std::vector<std::string>> NAMES{
    {"",
     "CC_CS_0",
     "CC_CS_1",
     "CC_CS_2",
     "CC_CS_3",
     "CC_CS_4",
     "CC_CS_5",
     "CC_CS_6",
     "CC_CS_VIO",
     "DS_DSP",
     "RT_DSPL",
     "RT_DSPR",
     "LA_LAB",
     "LA_MLAB",
     "RT_LABL",
     "RT_LABR",
     "RT_MLABL",
     "RT_MLABR",
     "MM_M20K",
     "MM_M10K",
     "RT_M20KL",
     "RT_M20KR",
     "RT_M10KL",
     "RT_M10KR",
     "RT_BUFL",
     "RT_BUFL_AND_BCAP",
     "RT_BUFL_AND_TCAP",
     "RT_BCAP_HIP_HIOL",
     "RT_BCAP_HIP_HIOR",
     "RT_BCAP_MLABX_ALL",
     "RT_TCAP_HIP_HIOL",
     "RT_TCAP_HIP_HIOR",
     "RT_TCAP_LAB_HIOR_HHP",
     "RT_TCAP_MLABX_ALL",
     "RT_BUFLC",
     "RT_BUFRC",
     "RT_BUFR",
     "RT_HIOL",
     "RT_HIOR",
     "RT_HIOR_HIP",
     "RT_VIO_DSP",
     "RT_VIO_LAB",
     "RT_VIO_LAB_PM",
     "RT_VIO_MLAB",
     "RT_VIO_M_LAB",
     "RT_VIO_M20K",
     "RT_VIO_M10K",
     "BF_LEFT_IO_AUX",
     "BF_RIGHT_IO_AUX",
     "CC_TS_22BUF",
     "CC_TS_22BUF_RED",
     "CC_TS_BASE",
     "CC_TS_BASE_B_0",
     "CC_TS_BASE_B_1",
     "CC_TS_BASE_B_2",
     "CC_TS_BASE_T_0",
     "CC_TS_BASE_T_1",
     "CC_TS_BASE_T_2",
     "CC_TS_SCLKMUX_0",
     "CC_TS_SCLKMUX_1",
     "CC_TS_SCLKMUX_2",
     "CC_TS_SCLKMUX_3",
     "CC_TS_SCLKMUX_4",
     "CC_TS_SCLKMUX_5",
     "CC_TS_SCLKMUX_6",
     "CC_TS_SCLKMUX_7",
     "RT_HIOL_BOT_ALIGN",
     "RT_HIOL_CORE",
     "RT_HIOL_TOP_ALIGN",
     "RT_HIOR_BOT_ALIGN",
     "RT_HIOR_CORE",
     "RT_HIOR_TOP_ALIGN",
     "RT_LABL_SHARED",
     "RT_M20KL_DSPL",
     "RT_M20KR_LABR",
     "RT_OSPREY_HBM"},
    {"", "UFM1", "UFM0", "CFM2", "CFM1", "CFM0", "DSM", "MFM", "DONE_BITS"},
    {"",
     "RESERVED1",
     "RESERVED2",
     "RESERVED3",
     "RESERVED4",
     "RESERVED5",
     "RESERVED6",
     "RESERVED7",
     "RESERVED8",
     "RESERVED9",
     "RESERVED10",
     "RESERVED11",
     "RESERVED12",
     "RESERVED13",
     "RESERVED14",
     "RESERVED15",
     "RESERVED16",
     "RESERVED17",
     "RESERVED18",
     "RESERVED19",
     "RESERVED20",
     "AES_KEYS",
     "FALLBACK_ADDR",
     "EPOF_ONLY",
     "TEST_DISABLE",
     "JTAG_SECURITY",
     "SPI_NSDM",
     "PROGRAM_DONE",
     "KEY_PROGRAM_SUCCESS",
     "ICB_PROGRAM_SUCCESS",
     "VERIFY_PROTECT",
     "TEST_ENABLE",
     "WD_TIMEOUT_VALUE",
     "UWEN",
     "FORCE_SSMCLK_TO_ISMCLK",
     "FALLBACK",
     "CFM_ADD",
     "CFM_X2",
     "DELAY_ON",
     "POR_DLY",
     "WP_EN",
     "WP_EN_SPI",
     "CISCO_RU"},
    {"",
     "HPS_CONFIG_ORDER_HPS_FIRST",
     "HPS_CONFIG_ORDER_HPS_AFTER_INIT_DONE",
     "HPS_CONFIG_ORDER_HPS_BY_FPGA",
     "SOF_FILE_ERROR_POF_ERROR",
     "SOF_FILE_ERROR_INCOMPLETE_POWER_MANAGEMENT",
     "SOF_FILE_ERROR_INCOMPLETE_HPS_HANDOFF",
     "SOF_FILE_ERROR_INCOMPLETE_HPS_BOOTLOADER",
     "SOF_FILE_ERROR_NOT_SUPPORTED",
     "SOF_FILE_ERROR_NOT_ENABLED",
     "SOF_FILE_ERROR_PRSEC_ERROR",
     "SOF_FILE_ERROR_REV4",
     "SOF_FILE_ERROR_REV5",
     "SOF_FILE_ERROR_REV6",
     "SOF_FILE_ERROR_REV7",
     "SOF_FILE_ERROR_REV8",
     "SOF_FILE_ERROR_REV9",
     "SOF_FILE_ERROR_REV10",
     "HPS_DAP_SPLIT_MODE_DISABLED",
     "HPS_DAP_SPLIT_MODE_USE_SDM_PINS",
     "HPS_DAP_SPLIT_MODE_USE_HPS_PINS"},
};

constexpr PGM_ENUM_TYPE type_at(std::size_t i) {
    return static_cast<PGM_ENUM_TYPE>(i);
}

TEST(EnumNames, EveryValueHasItsName) {
    ASSERT_EQ(NAMES.size(), std::size_t{PGM_ENUM_TYPE_MAX});
    EXPECT_EQ(NAMES[0].size(), 76U);
    EXPECT_EQ(NAMES[1].size(), 9U);
    EXPECT_EQ(NAMES[2].size(), 43U);
    EXPECT_EQ(NAMES[3].size(), 21U);
    for (std::size_t type = 0; type < NAMES.size(); ++type) {
        for (DWORD value = 1; value < NAMES[type].size(); ++value) {
            std::string name;
            EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_enum_supported(type_at(type), value, &name));
            EXPECT_EQ(name, NAMES[type][value]);
            DWORD found = 0;
            EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_name_supported(type_at(type), name, &found));
            EXPECT_EQ(found, value);
        }
    }
}

TEST(EnumNames, NamesThatArePinned) {
    const auto name_of = [](PGM_ENUM_TYPE type, DWORD value) {
        std::string name;
        PGMDEV_MGR::pgm_check_type_enum_supported(type, value, &name);
        return name;
    };
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 1), "CC_CS_0");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 8), "CC_CS_VIO");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 9), "DS_DSP");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 12), "LA_LAB");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 18), "MM_M20K");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 24), "RT_BUFL");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 47), "BF_LEFT_IO_AUX");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 65), "CC_TS_SCLKMUX_7");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 74), "RT_M20KR_LABR");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_BLOCK, 75).substr(0, 3), "RT_");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_SECTOR, 8), "DONE_BITS");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_OPTION_BIT, 21), "AES_KEYS");
    EXPECT_EQ(name_of(PGM_ENUM_TYPE_SOF_SETTING, 20), "HPS_DAP_SPLIT_MODE_USE_HPS_PINS");
}

TEST(EnumNames, ValuesWithoutAName) {
    for (std::size_t type = 0; type < NAMES.size(); ++type) {
        for (const DWORD value : {DWORD{0}, static_cast<DWORD>(NAMES[type].size()), INVALID_DWORD}) {
            std::string name = "untouched";
            EXPECT_FALSE(PGMDEV_MGR::pgm_check_type_enum_supported(type_at(type), value, &name));
            EXPECT_EQ(name, "untouched");
        }
    }
    EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE_SECTOR, 8, nullptr));
    EXPECT_FALSE(PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE_SECTOR, 9, nullptr));
}

TEST(EnumNames, NamesInAnyCaseButNotTrimmed) {
    DWORD value = 99;
    EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, "aes_keys", &value));
    EXPECT_EQ(value, 21U);
    EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, "aes_keys", nullptr));
    value = 99;
    for (const std::string name : {" AES_KEYS", "AES_KEYS ", "AES_KEY", "AES_KEYS1", "UFM1"}) {
        EXPECT_FALSE(PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, name, &value)) << name;
    }
    EXPECT_FALSE(
        PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, std::string("AES_KEYS\0", 9), &value));
    EXPECT_EQ(value, 99U);
}

TEST(EnumNames, TheEmptyNameIsTheValueZero) {
    for (std::size_t type = 0; type < NAMES.size(); ++type) {
        DWORD value = 99;
        EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_name_supported(type_at(type), "", &value));
        EXPECT_EQ(value, 0U);
    }
}

TEST(EnumNames, ATypeThatIsNoneIsReported) {
    for (const std::size_t type : {std::size_t{4}, std::size_t{0xFFFFFFFF}}) {
        const std::string condition = "pgm_enum_type < PGM_ENUM_TYPE_MAX";
        EXPECT_REPORT(PGMDEV_MGR::pgm_check_type_enum_supported(type_at(type), 1, nullptr), condition);
        EXPECT_REPORT(PGMDEV_MGR::pgm_check_type_name_supported(type_at(type), "", nullptr), condition);
    }
    const REPORTS reports;
    EXPECT_THROW(PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE_MAX, 1, nullptr),
                 MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(reports.all().at(0).module, "PGMDEV");
    EXPECT_EQ(reports.all().at(0).file, "pgm/pgmdev/pgmdev_mgr");
}

}  // namespace
