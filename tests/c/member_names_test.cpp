#include <array>
#include <map>

#include "c/owned.h"
#include "support/scratch.h"

// What lists and their members are called, as the headers say: programs look them up by these names.

namespace {

std::string members_of(const pgmdev_records* records) {
    std::string all;
    for (const std::string& name : member_names(records)) {
        all += (all.empty() ? "" : " ") + name;
    }
    return all;
}

void expect_lists(const pgmdev_answer* answer, const std::map<std::string, std::string>& lists) {
    for (const auto& [name, members] : lists) {
        EXPECT_EQ(members_of(pgmdev_answer_list(answer, name.c_str())), members) << name;
    }
}

/// The members of what is given with a status, once the function has returned.
void expect_members(pgmdev_status status, const C_RECORDS& records, const std::string& members) {
    EXPECT_EQ(status, PGMDEV_STATUS_OK) << members;
    EXPECT_EQ(members_of(records), members);
}

}  // namespace

TEST(CMemberNames, OfAnswersAboutFlash) {
    C_FLASH flash;
    C_ANSWER answer;
    std::size_t record = 0;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_flash_find(flash, "W25Q64JV", &record, nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_flash_evidence(flash, record, answer.place(), nullptr), PGMDEV_STATUS_OK);
    expect_lists(answer, {{"groups", "group evidence"}, {"sources", "group source"}});

    const std::array<uint8_t, 3> id{0xC2, 0x20, 0x19};
    pgmdev_flash_response response{};
    response.struct_size = sizeof response;
    response.bytes = id.data();
    response.size = id.size();
    ASSERT_EQ(pgmdev_flash_identify(flash, &response, nullptr, answer.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_answer_list_count(answer), 10U);
    expect_lists(answer, {{"verdict", "record sure doubtful telling_bytes oddity oddity_text probable_record"},
                          {"candidates", "record device_name standing"},
                          {"compared", "candidate position expected given"},
                          {"differences", "candidate member risk taken other harm"},
                          {"missing_bytes", "position"},
                          {"nearest", "record device_name"},
                          {"ambiguities", "response telling_byte told_apart_by risk harm"},
                          {"ambiguous_chips", "ambiguity chip"},
                          {"contradictions", "position found expected"},
                          {"fitting", "device_name"}});

    EXPECT_EQ(pgmdev_sfdp_decode(id.data(), id.size(), nullptr, 0, answer.place(), nullptr), PGMDEV_STATUS_REFUSED);
    expect_lists(answer, {{"refusal", "offset field found expected"}});
    const std::string dump = read_file(std::string(TEST_SFDP_DIR) + "/BY25Q32ES.sfdp");
    ASSERT_EQ(pgmdev_sfdp_decode(reinterpret_cast<const uint8_t*>(dump.data()), dump.size(), nullptr, 0, answer.place(),
                                 nullptr),
              PGMDEV_STATUS_OK);
    for (const std::string name :
         {"status_polling", "soft_reset", "enter_4byte", "exit_4byte", "warnings", "obstacle"}) {
        expect_lists(answer, {{name, "text"}});
    }
    expect_lists(answer, {{"assumed", "member taken"}, {"record", members_of(pgmdev_flash_records(flash))}});

    ASSERT_EQ(pgmdev_user_flash_decode("nonsense", answer.place(), nullptr), PGMDEV_STATUS_OK);
    expect_lists(answer, {{"descriptions", "body password password_valid complete plausible taken"},
                          {"records", members_of(pgmdev_flash_records(flash))},
                          {"faults", "description text"}});
    const std::vector<pgmdev_value> values = values_of(pgmdev_flash_records(flash), record);
    C_RECORDS implausible;
    expect_members(pgmdev_user_flash_check(values.data(), values.size(), implausible.place(), nullptr), implausible,
                   "member found expected");
}

TEST(CMemberNames, OfNamesAndParts) {
    C_RECORDS records;
    expect_members(
        pgmdev_name_spellings("KES50", records.place(), nullptr), records,
        "package_name pgm_name pgm_part_pcf pgm_family_pcf dev_part_pcf dev_family_pcf pcf_family_pcf family "
        "pcf_device part_pcf family_pcf use_full_name use_package_name possible_full_name");
    expect_members(pgmdev_name_origins("KES50", records.place(), nullptr), records, "name");
    expect_members(pgmdev_name_converted(records.place(), nullptr), records, "name");
    expect_members(pgmdev_device_list(records.place(), nullptr), records,
                   "number name family dev_part_pcf dev_family_pcf");
    expect_members(pgmdev_family_list(records.place(), nullptr), records, "number name pcf_family_pcf");
    expect_members(pgmdev_enum_list(PGMDEV_ENUMERATION_BLOCK, records.place(), nullptr), records, "value name");
}

TEST(CMemberNames, OfTablesAndParameters) {
    C_TABLE table;
    C_PROFILES profiles;
    C_RECORDS records;
    const std::string source = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
    ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_FLASH, source.c_str(), table.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(members_of(pgmdev_table_faults(table)), "severity line column row member cell condition expected text");
    expect_members(pgmdev_table_compare(table, table, records.place(), nullptr), records, "record member left right");
    ASSERT_EQ(pgmdev_profile_open(nullptr, profiles.place(), nullptr), PGMDEV_STATUS_OK);
    expect_members(pgmdev_profile_governed(profiles, PGMDEV_PROFILE_PART, records.place(), nullptr), records,
                   "number name record");
    expect_members(pgmdev_parameter_blocks(records.place(), nullptr), records, "number name present size");
    expect_members(pgmdev_versions(records.place(), nullptr), records,
                   "library host catalog flash_stamp dev_info_stamp body_version");
    ASSERT_EQ(pgmdev_hps_kinds(records.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_TRUE(members_of(records).starts_with("id name ")) << members_of(records);
    ASSERT_EQ(pgmdev_boot_flash_list(PGMDEV_BOOT_FLASH_NAND, records.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_TRUE(members_of(records).ends_with(" user")) << members_of(records);
}
