#include <thread>

#include "c/owned.h"
#include "faults/every_fault.h"
#include "pgmdev/flash/source_fixture.h"
#include "support/fast_clock.h"
#include "support/reports.h"
#include "support/settings.h"

// Of every function of the C interface that takes memory: when there is none, that is its status, and nothing else happens.

namespace {

namespace flash_table = flash_reference;

/// The files and objects that functions are asked for, so small that there are few allocations.
class CInterfaceFaults : public testing::Test {
protected:
    void SetUp() override {
        m_source = m_scratch.write("table.csv", flash_table::table({flash_table::data_row()}));
        m_scratch.write("table.pcf.aliases.csv",
                        "alias,device_name,reason\nANOTHER NAME OF THE CHIP,CHIP,a reason longer than short ones\n");
        m_scratch.write("table.pcf.sources.csv",
                        "device_name,compared,size\nCHIP,18@2 BA@1 20@0,datasheet:a_source_with_a_long_key\n");
        ASSERT_EQ(pgmdev_table_compile(PGMDEV_TABLE_FLASH, m_source.c_str(), m_database.c_str(), nullptr),
                  PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_flash_open(m_database.c_str(), m_flash.place(), nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_table_from_database(PGMDEV_TABLE_FLASH, m_database.c_str(), m_table.place(), nullptr),
                  PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_profile_open(nullptr, m_profiles.place(), nullptr), PGMDEV_STATUS_OK);
        m_values = values_of(pgmdev_flash_records(m_flash), 0);
    }

    /// Expects the call to end as it does with enough memory, or with the status of none.
    void expect_honest(const char* name, const std::function<pgmdev_status(pgmdev_error** error)>& call) {
        expect_honest(
            name, [] {}, call);
    }

    /// The same, each time after what prepares it, with enough memory.
    void expect_honest(const char* name, const std::function<void()>& prepare,
                       const std::function<pgmdev_status(pgmdev_error** error)>& call) {
        SCOPED_TRACE(name);
        const REPORTS quiet;
        prepare();
        const pgmdev_status usual = call(nullptr);
        pgmdev_status status = PGMDEV_STATUS_OK;
        C_ERROR error;
        int refused = 0;
        const auto prepare_all = [&] {
            error.place();
            prepare();
        };
        with_each_allocation_failing(
            prepare_all, [&] { status = call(error.place()); },
            [&](bool /*ended*/) {
                EXPECT_TRUE(status == usual || status == PGMDEV_STATUS_NO_MEMORY)
                    << pgmdev_status_name(status) << ": " << pgmdev_error_message(error);
                if (status == PGMDEV_STATUS_NO_MEMORY) {
                    EXPECT_STREQ(pgmdev_error_message(error), "there is no memory");
                    ++refused;
                }
            },
            4);
        EXPECT_GT(refused, 0);
        EXPECT_EQ(call(nullptr), usual);
    }

    SCRATCH m_scratch;
    MODULE_DIRECTORY m_module{m_scratch.path("")};
    std::string m_source;
    std::string m_database = m_scratch.path("table.pcf");
    C_FLASH m_flash;
    C_TABLE m_table;
    C_PROFILES m_profiles;
    std::vector<pgmdev_value> m_values;

    C_RECORDS m_records;
    C_ANSWER m_answer;
    C_STRING m_string;
};

}  // namespace

TEST_F(CInterfaceFaults, Flash) {
    const std::array<uint8_t, 3> bytes{0x20, 0x20, 0x10};
    pgmdev_flash_response response{};
    response.struct_size = sizeof response;
    response.bytes = bytes.data();
    response.size = bytes.size();
    C_FLASH other;
    expect_honest("open", [&](auto error) { return pgmdev_flash_open(m_database.c_str(), other.place(), error); });
    expect_honest("open what is not there",
                  [&](auto error) { return pgmdev_flash_open("no/such.pcf", other.place(), error); });
    expect_honest("find", [&](auto error) {
        std::size_t record = 0;
        return pgmdev_flash_find(m_flash, "a name that is longer than short ones", &record, error);
    });
    expect_honest("identify", [&](auto error) {
        return pgmdev_flash_identify(m_flash, &response, nullptr, m_answer.place(), error);
    });
    expect_honest("decode SFDP", [&](auto error) {
        return pgmdev_sfdp_decode(bytes.data(), bytes.size(), nullptr, 0, m_answer.place(), error);
    });
    expect_honest("decode a description",
                  [&](auto error) { return pgmdev_user_flash_decode("no description", m_answer.place(), error); });
    expect_honest("check", [&](auto error) {
        return pgmdev_user_flash_check(m_values.data(), m_values.size(), m_records.place(), error);
    });
}

TEST_F(CInterfaceFaults, FlashLists) {
    constexpr const char* NAME = "another name of the chip";
    C_FLASH flash;  // opened anew, for it reads its lists once
    const auto open = [&] {
        ASSERT_EQ(pgmdev_flash_open(m_database.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    };
    expect_honest("further names", open, [&](auto error) {
        const pgmdev_records* names = nullptr;
        return pgmdev_flash_further_names(flash, &names, error);
    });
    const auto find_any = [&](auto error) {
        std::size_t record = 0;
        return pgmdev_flash_find_any(flash, NAME, &record, nullptr, error);
    };
    expect_honest("find any", open, find_any);
    EXPECT_EQ(find_any(nullptr), PGMDEV_STATUS_OK);
    expect_honest("find any once the list is read", find_any);
    const auto evidence = [&](auto error) { return pgmdev_flash_evidence(flash, 0, m_answer.place(), error); };
    expect_honest("evidence", open, evidence);
    EXPECT_EQ(evidence(nullptr), PGMDEV_STATUS_OK);
    expect_honest("evidence once the list is read", evidence);
    expect_honest("suggestions", open, [&](auto error) {
        return pgmdev_flash_suggestions(flash, "another name of the ship", m_records.place(), error);
    });
}

TEST_F(CInterfaceFaults, PatternsAndSuggestions) {
    const pgmdev_records* records = pgmdev_flash_records(m_flash);
    expect_honest("find fitting", [&](auto error) {
        std::size_t record = 0;
        return pgmdev_records_find_fitting(records, 0, "device_name", "*C*H*I*P*****************", &record, error);
    });
    expect_honest("suggestions", [&](auto error) {
        return pgmdev_records_suggestions(records, "device_name", "CHOP", m_records.place(), error);
    });
    expect_honest("names", [&](auto error) {
        return pgmdev_name_suggestions("KES5OC6", PGMDEV_NAMED_ANYTHING, m_records.place(), error);
    });
}

TEST_F(CInterfaceFaults, Names) {
    pgmdev_part_filter filter{};
    filter.struct_size = sizeof filter;
    filter.device = "KES50";
    filter.hidden = true;
    expect_honest("convert", [&](auto error) {
        return pgmdev_name_convert(PGMDEV_NAME_PACKAGE, "a name that is longer than short ones", 1, m_string.place(),
                                   error);
    });
    expect_honest("spellings", [&](auto error) { return pgmdev_name_spellings("KES50C6", m_records.place(), error); });
    expect_honest("ordering code", [&](auto error) { return pgmdev_opn_name(1337, m_string.place(), error); });
    expect_honest("part", [&](auto error) { return pgmdev_part_from_device("KES50", m_string.place(), error); });
    expect_honest("parts", [&](auto error) { return pgmdev_part_list(&filter, m_records.place(), error); });
    expect_honest("families", [&](auto error) { return pgmdev_family_list(m_records.place(), error); });
    expect_honest("enumeration", [&](auto error) { return pgmdev_enum_list(1, m_records.place(), error); });
    expect_honest("governed", [&](auto error) {
        return pgmdev_profile_governed(m_profiles, PGMDEV_PROFILE_FAMILY, m_records.place(), error);
    });
    expect_honest("versions", [&](auto error) { return pgmdev_versions(m_records.place(), error); });
}

TEST_F(CInterfaceFaults, ParametersAndTables) {
    const pgmdev_parameter_type type = PGMDEV_PARAMETER_STRING;
    const pgmdev_value value{PGMDEV_KIND_TEXT, 0, 0, "a text that is longer than short ones", 0};
    C_TABLE other;
    expect_honest("blocks", [&](auto error) { return pgmdev_parameter_blocks(m_records.place(), error); });
    expect_honest("encode",
                  [&](auto error) { return pgmdev_parameters_encode(&type, &value, 1, m_string.place(), error); });
    expect_honest("text",
                  [&](auto error) { return pgmdev_parameter_text(type, &value, false, m_string.place(), error); });
    expect_honest("kinds", [&](auto error) { return pgmdev_hps_kinds(m_records.place(), error); });
    expect_honest("boot flash",
                  [&](auto error) { return pgmdev_boot_flash_list(PGMDEV_BOOT_FLASH_NAND, m_records.place(), error); });
    expect_honest("source", [&](auto error) {
        return pgmdev_table_from_source(PGMDEV_TABLE_FLASH, m_source.c_str(), other.place(), error);
    });
    expect_honest("database", [&](auto error) {
        return pgmdev_table_from_database(PGMDEV_TABLE_FLASH, m_database.c_str(), other.place(), error);
    });
    expect_honest("source text",
                  [&](auto error) { return pgmdev_table_source_text(m_table, m_string.place(), error); });
    expect_honest("compare",
                  [&](auto error) { return pgmdev_table_compare(m_table, m_table, m_records.place(), error); });
    expect_honest("members",
                  [&](auto error) { return pgmdev_table_members(PGMDEV_TABLE_PROFILES, m_records.place(), error); });
}

TEST_F(CInterfaceFaults, AnotherWriterOfTheContainerIsAStatus) {
    C_LOCK lock;
    ASSERT_EQ(pgmdev_parameter_lock_take(lock.place(), nullptr), PGMDEV_STATUS_OK);
    std::thread([] {
        const FAST_CLOCK clock;
        C_LOCK second;
        C_ERROR error;
        EXPECT_EQ(pgmdev_parameter_lock_take(second.place(), error.place()), PGMDEV_STATUS_BUSY);
        EXPECT_EQ(second, nullptr);
        EXPECT_STREQ(pgmdev_error_message(error), "another writer has the parameter container");
    }).join();
}
