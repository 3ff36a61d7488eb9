#include <fstream>
#include <regex>
#include <set>

#include "c/owned.h"
#include "support/reports.h"
#include "support/scratch.h"

// Arguments that make no sense are statuses, whichever function is given them.

namespace {

struct CALL {
    const char* name;
    pgmdev_status (*call)(pgmdev_error** error);
    pgmdev_status expected = PGMDEV_STATUS_INVALID_ARGUMENT;
};

#define WITH(function, ...)                                                                            \
    {                                                                                                  \
#function, [](pgmdev_error * *error) -> pgmdev_status { return function(__VA_ARGS__, error); } \
    }

constexpr uint32_t NO_NUMBER = 99;

/// Every function that gives a status, with nothing for what it needs, or with a number that stands for nothing.
const std::vector<CALL> CALLS_WITH_NOTHING{
    WITH(pgmdev_boot_flash_list, PGMDEV_BOOT_FLASH_SPI, nullptr),
    WITH(pgmdev_boot_flash_set_user, PGMDEV_BOOT_FLASH_SPI, nullptr, 19),
    WITH(pgmdev_configuration, nullptr, nullptr),
    WITH(pgmdev_device_list, nullptr),
    WITH(pgmdev_directory_path, PGMDEV_DIRECTORY_MODULE, nullptr),
    WITH(pgmdev_enum_list, PGMDEV_ENUMERATION_BLOCK, nullptr),
    WITH(pgmdev_enum_name, PGMDEV_ENUMERATION_BLOCK, 1, nullptr),
    WITH(pgmdev_enum_value, PGMDEV_ENUMERATION_BLOCK, nullptr, nullptr),
    WITH(pgmdev_family_list, nullptr),
    WITH(pgmdev_flash_evidence, nullptr, 0, nullptr),
    WITH(pgmdev_flash_find, nullptr, nullptr, nullptr),
    WITH(pgmdev_flash_find_any, nullptr, nullptr, nullptr, nullptr),
    WITH(pgmdev_flash_further_names, nullptr, nullptr),
    WITH(pgmdev_flash_identify, nullptr, nullptr, nullptr, nullptr),
    WITH(pgmdev_flash_open, nullptr, nullptr),
    WITH(pgmdev_flash_suggestions, nullptr, nullptr, nullptr),
    WITH(pgmdev_hps_current, nullptr),
    WITH(pgmdev_hps_kinds, nullptr),
    WITH(pgmdev_name_convert, PGMDEV_NAME_PACKAGE, nullptr, 0, nullptr),
    WITH(pgmdev_name_converted, nullptr),
    WITH(pgmdev_name_origins, nullptr, nullptr),
    WITH(pgmdev_name_is_full_for_all, nullptr, nullptr),
    WITH(pgmdev_name_is_package_for_programming, nullptr, nullptr),
    WITH(pgmdev_name_spellings, nullptr, nullptr),
    WITH(pgmdev_name_suggestions, nullptr, PGMDEV_NAMED_ANYTHING, nullptr),
    WITH(pgmdev_number_hexadecimal, 1, 1, true, nullptr),
    WITH(pgmdev_opn_from_hash, 0, nullptr),
    WITH(pgmdev_opn_hash, nullptr, nullptr),
    WITH(pgmdev_opn_index, nullptr, nullptr),
    WITH(pgmdev_opn_name, 0, nullptr),
    WITH(pgmdev_parameter_blocks, nullptr),
    WITH(pgmdev_parameter_lock_take, nullptr),
    WITH(pgmdev_parameter_number, PGMDEV_PARAMETER_BYTE, nullptr, nullptr, nullptr),
    WITH(pgmdev_parameter_text, PGMDEV_PARAMETER_BYTE, nullptr, false, nullptr),
    WITH(pgmdev_parameters_decode, nullptr, 1, nullptr, nullptr, 1, nullptr),
    WITH(pgmdev_parameters_encode, nullptr, nullptr, 1, nullptr),
    WITH(pgmdev_parameters_read, PGMDEV_PARAMETER_BLOCK_HPS_SPI, nullptr),
    WITH(pgmdev_parameters_remove, NO_NUMBER),
    WITH(pgmdev_parameters_write, PGMDEV_PARAMETER_BLOCK_HPS_SPI, nullptr, 1),
    WITH(pgmdev_part_complete, nullptr, nullptr),
    WITH(pgmdev_part_from_device, nullptr, nullptr),
    WITH(pgmdev_part_from_pcf, nullptr, nullptr),
    WITH(pgmdev_part_index_complete, nullptr, nullptr, nullptr),
    WITH(pgmdev_part_index_from_pcf, nullptr, nullptr, nullptr),
    WITH(pgmdev_part_index_open, nullptr),
    WITH(pgmdev_part_list, nullptr, nullptr),
    WITH(pgmdev_profile_find, nullptr, PGMDEV_PROFILE_PART, nullptr, nullptr),
    WITH(pgmdev_profile_find_number, nullptr, PGMDEV_PROFILE_PART, 1, nullptr),
    WITH(pgmdev_profile_governed, nullptr, PGMDEV_PROFILE_PART, nullptr),
    WITH(pgmdev_profile_open, nullptr, nullptr),
    WITH(pgmdev_records_find, nullptr, 0, nullptr, nullptr, nullptr),
    WITH(pgmdev_records_find_fitting, nullptr, 0, nullptr, nullptr, nullptr),
    WITH(pgmdev_records_find_member, nullptr, nullptr, nullptr),
    WITH(pgmdev_records_member, nullptr, 0, nullptr),
    WITH(pgmdev_records_number, nullptr, 0, nullptr, nullptr),
    WITH(pgmdev_records_suggestions, nullptr, nullptr, nullptr, nullptr),
    WITH(pgmdev_records_text, nullptr, 0, nullptr, nullptr),
    WITH(pgmdev_records_value, nullptr, 0, 0, nullptr),
    WITH(pgmdev_records_values, nullptr, 0, nullptr, 0),
    WITH(pgmdev_set_configuration, nullptr, nullptr),
    WITH(pgmdev_set_directory, NO_NUMBER, nullptr),
    WITH(pgmdev_sfdp_decode, nullptr, 1, nullptr, 1, nullptr),
    WITH(pgmdev_table_compare, nullptr, nullptr, nullptr),
    WITH(pgmdev_table_compile, PGMDEV_TABLE_FLASH, nullptr, nullptr),
    WITH(pgmdev_table_from_database, PGMDEV_TABLE_FLASH, nullptr, nullptr),
    WITH(pgmdev_table_from_source, PGMDEV_TABLE_FLASH, nullptr, nullptr),
    WITH(pgmdev_table_members, PGMDEV_TABLE_FLASH, nullptr),
    WITH(pgmdev_table_source_text, nullptr, nullptr),
    WITH(pgmdev_user_flash_check, nullptr, 33, nullptr),
    WITH(pgmdev_user_flash_decode, nullptr, nullptr),
    WITH(pgmdev_user_flash_encode, nullptr, 33, nullptr),
    WITH(pgmdev_versions, nullptr),
    // What needs nothing.
    {"pgmdev_boot_flash_reread", pgmdev_boot_flash_reread, PGMDEV_STATUS_OK},
    {"pgmdev_hps_set_current", [](pgmdev_error** error) { return pgmdev_hps_set_current(1, error); },
     PGMDEV_STATUS_NOT_FOUND},
    {"pgmdev_set_debug_handler", [](pgmdev_error** error) { return pgmdev_set_debug_handler(nullptr, nullptr, error); },
     PGMDEV_STATUS_OK},
    {"pgmdev_set_report_handler",
     [](pgmdev_error** error) { return pgmdev_set_report_handler(nullptr, nullptr, error); }, PGMDEV_STATUS_OK},
};

C_STRING a_string;
C_RECORDS some_records;
C_TABLE a_table;

/// Numbers that stand for nothing, where there is a place for the result.
const std::vector<CALL> CALLS_WITH_NO_SUCH_NUMBER{
    WITH(pgmdev_boot_flash_list, PGMDEV_BOOT_FLASH_TYPES, some_records.place()),
    WITH(pgmdev_boot_flash_set_user, PGMDEV_BOOT_FLASH_TYPES, nullptr, 0),
    WITH(pgmdev_directory_path, NO_NUMBER, a_string.place()),
    WITH(pgmdev_enum_list, PGMDEV_ENUMERATIONS, some_records.place()),
    WITH(pgmdev_enum_name, PGMDEV_ENUMERATIONS, 1, a_string.place()),
    WITH(pgmdev_name_convert, PGMDEV_NAME_CONVERSIONS, "KES50", 0, a_string.place()),
    WITH(pgmdev_name_convert, PGMDEV_NAME_PACKAGE, "KES50", 4, a_string.place()),
    WITH(pgmdev_name_suggestions, "KES50", 0, some_records.place()),
    WITH(pgmdev_name_suggestions, "KES50", PGMDEV_NAMED_ANYTHING + 1, some_records.place()),
    WITH(pgmdev_number_hexadecimal, 1, 0, true, a_string.place()),
    WITH(pgmdev_number_hexadecimal, 1, 17, true, a_string.place()),
    WITH(pgmdev_parameters_read, PGMDEV_PARAMETER_BLOCKS, a_string.place()),
    WITH(pgmdev_table_from_database, PGMDEV_TABLE_TYPES, "any.pcf", a_table.place()),
    WITH(pgmdev_table_members, PGMDEV_TABLE_TYPES, some_records.place()),
};

void expect_statuses(const std::vector<CALL>& calls) {
    for (const CALL& call : calls) {
        C_ERROR error;
        const pgmdev_status status = call.call(error.place());
        const bool is_error = call.expected == PGMDEV_STATUS_INVALID_ARGUMENT;
        EXPECT_STREQ(pgmdev_status_name(status), pgmdev_status_name(call.expected)) << call.name;
        EXPECT_EQ(pgmdev_error_status(error), is_error ? status : pgmdev_status{PGMDEV_STATUS_OK}) << call.name;
        EXPECT_EQ(*pgmdev_error_message(error) != 0, is_error) << call.name;
        EXPECT_EQ(call.call(nullptr), status) << call.name;
    }
}

/// A call that gives no result.
#define INTO(function, ...)                                                                            \
    {                                                                                                  \
#function, [](auto** place) -> pgmdev_status { return function(__VA_ARGS__, place, nullptr); } \
    }

template <class OBJECT>
struct CALL_WITHOUT_RESULT {
    const char* name;
    pgmdev_status (*call)(OBJECT** place);
};

template <class OBJECT>
void expect_emptied(std::initializer_list<CALL_WITHOUT_RESULT<OBJECT>> calls) {
    for (const auto& each : calls) {
        char something = 0;
        auto* place = reinterpret_cast<OBJECT*>(&something);
        EXPECT_NE(each.call(&place), PGMDEV_STATUS_OK) << each.name;
        EXPECT_EQ(place, nullptr) << each.name;
    }
}

}  // namespace

TEST(CFailures, NullPointersAreStatuses) {
    expect_statuses(CALLS_WITH_NOTHING);
}

TEST(CFailures, NumbersThatStandForNothingAreStatuses) {
    expect_statuses(CALLS_WITH_NO_SUCH_NUMBER);
}

TEST(CFailures, WhereThereIsNoResultThePlaceIsEmptied) {
    expect_emptied<pgmdev_string>(
        {INTO(pgmdev_configuration, nullptr), INTO(pgmdev_directory_path, NO_NUMBER),
         INTO(pgmdev_enum_name, 0, UINT32_MAX), INTO(pgmdev_name_convert, 0, nullptr, 0),
         INTO(pgmdev_number_hexadecimal, 1, 0, true), INTO(pgmdev_opn_from_hash, 0), INTO(pgmdev_opn_name, UINT32_MAX),
         INTO(pgmdev_parameter_text, PGMDEV_PARAMETER_BYTE, nullptr, false),
         INTO(pgmdev_parameters_encode, nullptr, nullptr, 1), INTO(pgmdev_parameters_read, PGMDEV_PARAMETER_BLOCKS),
         INTO(pgmdev_part_complete, nullptr), INTO(pgmdev_part_from_device, nullptr),
         INTO(pgmdev_part_from_pcf, nullptr), INTO(pgmdev_part_index_complete, nullptr, "any"),
         INTO(pgmdev_part_index_from_pcf, nullptr, "any"), INTO(pgmdev_table_source_text, nullptr),
         INTO(pgmdev_user_flash_encode, nullptr, 0)});
    expect_emptied<pgmdev_records>(
        {INTO(pgmdev_boot_flash_list, PGMDEV_BOOT_FLASH_TYPES), INTO(pgmdev_enum_list, PGMDEV_ENUMERATIONS),
         INTO(pgmdev_flash_suggestions, nullptr, "any"), INTO(pgmdev_name_origins, nullptr),
         INTO(pgmdev_name_spellings, nullptr), INTO(pgmdev_name_suggestions, nullptr, PGMDEV_NAMED_ANYTHING),
         INTO(pgmdev_parameters_decode, nullptr, 1, nullptr, nullptr, 1),
         INTO(pgmdev_profile_governed, nullptr, PGMDEV_PROFILE_PART),
         INTO(pgmdev_records_suggestions, nullptr, "name", "any"), INTO(pgmdev_table_compare, nullptr, nullptr),
         INTO(pgmdev_table_members, PGMDEV_TABLE_TYPES), INTO(pgmdev_user_flash_check, nullptr, 0)});
    expect_emptied<const pgmdev_records>({INTO(pgmdev_flash_further_names, nullptr)});
    expect_emptied<pgmdev_answer>({INTO(pgmdev_flash_evidence, nullptr, 0),
                                   INTO(pgmdev_sfdp_decode, nullptr, 1, nullptr, 0),
                                   INTO(pgmdev_user_flash_decode, nullptr)});
    expect_emptied<pgmdev_flash_database>({INTO(pgmdev_flash_open, "no such file")});
    expect_emptied<pgmdev_profile_database>({INTO(pgmdev_profile_open, "no such file")});
    expect_emptied<pgmdev_table>({INTO(pgmdev_table_from_database, PGMDEV_TABLE_FLASH, nullptr),
                                  INTO(pgmdev_table_from_source, PGMDEV_TABLE_FLASH, nullptr)});
}

TEST(CFailures, TheseAreAllFunctionsThatGiveAStatus) {
    std::set<std::string> declared;
    for (const auto& header : std::filesystem::directory_iterator(TEST_C_HEADERS)) {
        const std::string text = read_file(header.path());
        const std::regex declaration(R"(PGMDEV_C_EXPORT pgmdev_status\s+(pgmdev_\w+)\()");
        for (std::sregex_iterator found(text.begin(), text.end(), declaration); found != std::sregex_iterator();
             ++found) {
            declared.insert((*found)[1]);
        }
    }
    declared.erase("pgmdev_error_status");  // asks an error, and meets none
    std::set<std::string> called;
    for (const CALL& call : CALLS_WITH_NOTHING) {
        called.insert(call.name);
    }
    EXPECT_EQ(called, declared);
}

TEST(CFailures, AskingNullPointersGivesNothing) {
    EXPECT_EQ(pgmdev_records_count(nullptr), 0U);
    EXPECT_EQ(pgmdev_records_member_count(nullptr), 0U);
    EXPECT_EQ(pgmdev_answer_list_count(nullptr), 0U);
    EXPECT_EQ(pgmdev_answer_list_name(nullptr, 0), nullptr);
    EXPECT_EQ(pgmdev_answer_list(nullptr, "records"), nullptr);
    EXPECT_EQ(pgmdev_flash_records(nullptr), nullptr);
    EXPECT_EQ(pgmdev_flash_notes_faults(nullptr), nullptr);
    EXPECT_EQ(pgmdev_profile_records(nullptr), nullptr);
    EXPECT_EQ(pgmdev_table_records(nullptr), nullptr);
    EXPECT_EQ(pgmdev_table_faults(nullptr), nullptr);
    EXPECT_FALSE(pgmdev_table_has_faults(nullptr));
    EXPECT_EQ(pgmdev_table_payload_size(nullptr), 0U);
    EXPECT_STREQ(pgmdev_string_data(nullptr), "");
    EXPECT_EQ(pgmdev_string_size(nullptr), 0U);
    EXPECT_EQ(pgmdev_error_status(nullptr), PGMDEV_STATUS_OK);
    for (const auto text : {pgmdev_error_message, pgmdev_error_condition, pgmdev_error_module, pgmdev_error_file}) {
        EXPECT_STREQ(text(nullptr), "");
    }
    EXPECT_EQ(pgmdev_error_line(nullptr), 0);
}

TEST(CFailures, StatusesHaveNames) {
    EXPECT_STREQ(pgmdev_status_name(PGMDEV_STATUS_OK), "OK");
    EXPECT_STREQ(pgmdev_status_name(PGMDEV_STATUS_NOT_WRITTEN), "NOT_WRITTEN");
    EXPECT_STREQ(pgmdev_status_name(PGMDEV_STATUS_FAILED), "FAILED");
    EXPECT_STREQ(pgmdev_status_name(PGMDEV_STATUS_FAILED + 1), "UNKNOWN");
}

TEST(CFailures, IndexesOutOfRangeAreStatuses) {
    C_RECORDS kinds;
    ASSERT_EQ(pgmdev_hps_kinds(kinds.place(), nullptr), PGMDEV_STATUS_OK);
    const std::size_t count = pgmdev_records_count(kinds);
    const std::size_t members = pgmdev_records_member_count(kinds);
    pgmdev_value value{};
    uint64_t number = 1;
    const char* text = "";
    EXPECT_EQ(pgmdev_records_value(kinds, count - 1, members - 1, &value, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_value(kinds, count, 0, &value, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(value.kind, uint32_t{PGMDEV_KIND_NONE});
    EXPECT_STREQ(value.text, "");
    EXPECT_EQ(pgmdev_records_value(kinds, 0, members, &value, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_records_value(kinds, SIZE_MAX, SIZE_MAX, &value, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_records_values(kinds, 0, &value, 1, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    std::vector<pgmdev_value> values(members);
    ASSERT_EQ(pgmdev_records_values(kinds, 0, values.data(), members, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_values(kinds, count, values.data(), members, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    for (const pgmdev_value& each : values) {
        EXPECT_EQ(shown(each), "-");
    }
    pgmdev_member member{};
    member.struct_size = sizeof member;
    ASSERT_EQ(pgmdev_records_member(kinds, 0, &member, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_member(kinds, members, &member, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(member.name, nullptr);
    EXPECT_EQ(member.base, 0U);
    EXPECT_EQ(pgmdev_records_number(kinds, 0, "no such member", &number, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_records_number(kinds, 0, "name", &number, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(number, 0U);
    EXPECT_EQ(pgmdev_records_text(kinds, 0, "id", &text, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(text, nullptr);
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_records_find(kinds, count, "name", "any", &record, nullptr), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(pgmdev_records_find(kinds, count, "no such member", "any", &record, nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_records_find_member(kinds, "no such member", &record, nullptr), PGMDEV_STATUS_NOT_FOUND);
}
