#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <tuple>

#include "msg.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "support/debug_messages.h"
#include "support/punctuated_locale.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Life of a manager, loading, look-ups and searches.

namespace {

namespace ref = dev_info_reference;
using RESULT = std::unique_ptr<PGMDEV_DEVICE_INFO>;

class DevInfoLoading : public testing::Test {
protected:
    DevInfoLoading() {
        m_rows = ref::rows();
        m_rows[5] = ref::sample("KESTREL");
        m_tables.family[6] = 5;
        m_tables.family[72] = 71;
        m_tables.device[1] = 5;
        m_tables.device[990] = 72;
        m_tables.part[1] = 77;
    }
    std::string body() const { return ref::records(m_rows) + ref::tables(m_tables); }
    std::string write(const std::string& file) { return m_scratch.write("programmer/pgm_dev_info.pcf", file); }
    void load(DEV_INFO_PROBE& manager) { manager.initialize_device_database(write(ref::file(body()))); }

    SCRATCH m_scratch;
    std::vector<ref::CELLS> m_rows;
    ref::TABLES m_tables;
};

TEST_F(DevInfoLoading, AnEmptyManager) {
    DEV_INFO_PROBE manager(true, 4);
    EXPECT_EQ(manager.m_version, 0U);
    EXPECT_EQ(manager.m_device_count, 0U);
    EXPECT_EQ(manager.m_type_count, 0U);
    EXPECT_EQ(manager.m_index, 0U);
    EXPECT_EQ(manager.m_csv_memory_size, 0U);
    EXPECT_EQ(manager.m_debug_mode, 4U);
    EXPECT_EQ(manager.get_device_database(), nullptr);
    EXPECT_TRUE(manager.m_pgm_parts.empty());
    for (int i = 0; i < DEV_PART_MAX; ++i) {
        EXPECT_EQ(manager.m_part_table[i], 0xFFFFFFFF);
    }
    EXPECT_EQ(manager.m_family_table[72], 0xFFFFFFFF);
    EXPECT_EQ(manager.m_device_table[990], 0xFFFFFFFF);
    EXPECT_EQ(manager.get_db_by_family(DEV_FAMILY_KESTREL), nullptr);
    EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    EXPECT_EQ(manager.get_table_size(), static_cast<DWORD>(DEV_PART_MAX) * 4 + 4271);
}

TEST_F(DevInfoLoading, TheConstructorLoadsTheDatabaseOfTheDirectory) {
    write(ref::file(body()));
    const DEVICE_DB_DIRECTORY directory(m_scratch.directory().string());
    DEV_INFO_PROBE manager(false);
    EXPECT_EQ(manager.m_version, 1U);
    EXPECT_EQ(manager.m_device_count, 78U);
    EXPECT_EQ(manager.m_type_count, ref::MEMBERS);
    EXPECT_EQ(manager.m_csv_memory_size, ref::records(m_rows).size());
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        const std::vector<std::string> values = ref::values(manager.get_device_database()[row]);
        for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
            EXPECT_EQ(values[i], ref::value(i, m_rows[row][i])) << row << " " << ref::COLUMNS[i].name;
        }
    }
    for (std::size_t i = 0; i < m_tables.part.size(); ++i) {
        ASSERT_EQ(manager.m_part_table[i], m_tables.part[i]) << i;
    }
}

TEST_F(DevInfoLoading, NamesAndKindsOfTheMembers) {
    const std::map<std::string, int> kinds{{"DEVID_ENUM", 0}, {"DEVID_STR", 1}, {"STL_STRING", 2}, {"bool", 3},
                                           {"BYTE", 4},       {"WORD", 5},      {"DWORD", 6},      {"ENUM", 7}};
    ASSERT_EQ(PGMDEV_DEVICE_INFO_MEMBERS.size(), ref::MEMBERS);
    for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
        EXPECT_EQ(DEV_INFO_PROBE::m_db_name_list[i], ref::COLUMNS[i].name);
        EXPECT_EQ(PGMDEV_DEVICE_INFO_MEMBERS[i].name, ref::COLUMNS[i].name);
        EXPECT_EQ(PGMDEV_DEVICE_INFO_MEMBERS[i].kind, kinds.at(ref::COLUMNS[i].kind));
    }
    EXPECT_EQ(ref::values(PGMDEV_DEVICE_INFO()), [] {
        std::vector<std::string> cleared;
        for (const ref::COLUMN& column : ref::COLUMNS) {
            const std::string kind = column.kind;
            cleared.emplace_back(kind == "STL_STRING" || kind == "DEVID_STR" ? "" : "0");
        }
        return cleared;
    }());
}

TEST_F(DevInfoLoading, LookUpsGiveFreshCopies) {
    DEV_INFO_PROBE manager;
    load(manager);
    const RESULT family(manager.get_db_by_family(DEV_FAMILY_KESTREL));
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(manager.m_index, 5U);
    EXPECT_EQ(*family, manager.get_device_database()[5]);
    family->support_asc_ini = "changed";
    const RESULT again(manager.get_db_by_family(DEV_FAMILY_KESTREL));
    EXPECT_EQ(again->support_asc_ini, "text14");
    const RESULT device(manager.get_db_by_device(DEV_DEVICE_GENERIC));
    EXPECT_EQ(device->device, DEV_DEVICE_GENERIC);
    const RESULT part(manager.get_db_by_part(1));
    EXPECT_EQ(part->pcf, "FILE_D");
    EXPECT_EQ(manager.get_db_by_family(DEV_FAMILY_INVALID), nullptr);
    EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    EXPECT_EQ(manager.get_db_by_device(DEV_DEVICE_INVALID), nullptr);
    EXPECT_EQ(manager.get_db_by_part(DEV_PART_INVALID), nullptr);
}

TEST_F(DevInfoLoading, LookUpsOutOfRange) {
    DEV_INFO_PROBE manager;
    load(manager);
    for (const int number : {-1, 73, 1000}) {
        EXPECT_REPORT(manager.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(number)), "family < DEV_FAMILY_MAX");
    }
    for (const int number : {-1, 991}) {
        EXPECT_REPORT(manager.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(number)), "device < DEV_DEVICE_MAX");
    }
    for (const int number : {-1, DEV_PART_MAX}) {
        EXPECT_REPORT(manager.get_db_by_part(number), "part < DEV_PART_MAX");
    }
}

TEST_F(DevInfoLoading, CopyDatabaseReportsItsOwnSource) {
    DEV_INFO_PROBE manager;
    const REPORTS reports;
    manager.m_index = 78;
    EXPECT_THROW(manager.copy_database(), MSG_INTERNAL_ERROR_EXCEPTION);
    manager.m_index = 77;
    EXPECT_THROW(manager.copy_database(), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_THROW(manager.print_database(0, ""), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 3U);
    EXPECT_EQ(reports.all()[0].condition, "m_index < TOTAL_DATABASE_DEVICE");
    EXPECT_EQ(reports.all()[1].condition, "m_device_database != NULL");
    for (const MSG_INTERNAL_ERROR_REPORT& report : reports.all()) {
        EXPECT_EQ(report.module, "PGMDEV");
        EXPECT_EQ(report.file, "h/pgmdev_dev_info_manager_auto_export");
    }
}

TEST_F(DevInfoLoading, AnIndexTableThatPointsBehindTheRecords) {
    m_tables.family[6] = 78;
    m_tables.family[7] = 77;
    m_rows.resize(10);
    DEV_INFO_PROBE manager;
    load(manager);
    EXPECT_REPORT(manager.get_db_by_family(DEV_FAMILY_KESTREL), "m_index < TOTAL_DATABASE_DEVICE");
    const RESULT cleared(manager.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(7)));
    EXPECT_EQ(*cleared, PGMDEV_DEVICE_INFO());
}

TEST_F(DevInfoLoading, MoreRecordsThanSearchesGoOver) {
    m_rows.resize(100, ref::sample("OSPREY"));
    m_rows[99] = ref::sample("MERLIN");
    DEV_INFO_PROBE manager;
    load(manager);
    EXPECT_EQ(manager.m_device_count, 100U);
    EXPECT_EQ(manager.get_device_database()[99].family, DEV_FAMILY_MERLIN);
    EXPECT_TRUE(manager.search_family(DEV_FAMILY_MERLIN, false));
    EXPECT_EQ(manager.m_index, 49U);
}

TEST_F(DevInfoLoading, LoadsOnce) {
    DEV_INFO_PROBE manager;
    load(manager);
    m_rows[5] = ref::bare(ref::FAMILY, "KESTREL");
    EXPECT_REPORT(load(manager), "m_device_database == NULL");
    EXPECT_EQ(manager.get_device_database()[5].support_asc_ini, "text14");  // what was loaded stays
    EXPECT_EQ(RESULT(manager.get_db_by_family(DEV_FAMILY_KESTREL))->support_asc_ini, "text14");
}

TEST_F(DevInfoLoading, AFailedLoadLeavesNothingAndCanBeRepeated) {
    DEV_INFO_PROBE manager;
    const std::string records = ref::records(m_rows);
    EXPECT_REPORT(manager.initialize_device_database(write(ref::file(records + "x" + ref::tables(m_tables)))),
                  "index == m_csv_memory_size");
    EXPECT_EQ(manager.get_device_database(), nullptr);
    EXPECT_EQ(manager.m_device_count, 0U);
    EXPECT_EQ(manager.m_csv_memory_size, 0U);
    load(manager);
    EXPECT_EQ(manager.m_device_count, 78U);
}

TEST_F(DevInfoLoading, ParsesBareBodies) {
    std::string bytes = body();
    auto* data = reinterpret_cast<unsigned char*>(bytes.data());
    DEV_INFO_PROBE generating;
    EXPECT_FALSE(generating.parse_database(data, true));
    EXPECT_EQ(generating.m_device_count, 78U);
    EXPECT_EQ(generating.m_family_table[6], 0xFFFFFFFF);  // no tables
    DEV_INFO_PROBE loading;
    loading.m_csv_memory_size = static_cast<DWORD>(ref::records(m_rows).size());
    EXPECT_FALSE(loading.parse_database(data, false));
    EXPECT_EQ(loading.m_family_table[6], 5U);
    DEV_INFO_PROBE wrong;
    EXPECT_REPORT(wrong.parse_database(data, false), "index == m_csv_memory_size");

    auto index = static_cast<DWORD>(ref::records(m_rows).size());
    generating.get_table(data, index);
    EXPECT_EQ(index, bytes.size());
    EXPECT_EQ(generating.m_device_table[990], 72U);
    DEV_INFO_PROBE empty;
    EXPECT_REPORT(empty.get_table(data, index),
                  "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                  "m_part_table != NULL");
    index = 12;
    generating.get_database(data, index, 77);
    EXPECT_EQ(generating.get_device_database()[77].family, 1);
}

TEST_F(DevInfoLoading, CopiesShareTheirArrays) {
    auto original = std::make_unique<DEV_INFO_PROBE>(true, 6);
    load(*original);
    original->m_index = 9;
    original->m_pgm_parts.push_back(new PGMDEV_PGM_PART{1, DEV_DEVICE_GENERIC, "FILE_A"});
    DEV_INFO_PROBE copy(*original);
    DEV_INFO_PROBE assigned;
    assigned.m_pgm_parts.push_back(new PGMDEV_PGM_PART);
    assigned = copy;
    assigned = *&assigned;
    EXPECT_EQ(copy.get_device_database(), original->get_device_database());
    EXPECT_EQ(assigned.m_part_table, original->m_part_table);
    ASSERT_EQ(assigned.m_pgm_parts.size(), 1U);
    EXPECT_EQ(assigned.m_pgm_parts[0], original->m_pgm_parts[0]);
    const auto numbers = [](const DEV_INFO_PROBE& m) {
        return std::tie(m.m_version, m.m_device_count, m.m_type_count, m.m_index, m.m_csv_memory_size, m.m_debug_mode);
    };
    EXPECT_EQ(numbers(copy), numbers(*original));
    EXPECT_EQ(numbers(assigned), numbers(*original));
    original.reset();
    EXPECT_EQ(RESULT(copy.get_db_by_family(DEV_FAMILY_KESTREL))->support_asc_ini, "text14");
    EXPECT_EQ(assigned.m_pgm_parts[0]->pcf, "FILE_A");
}

TEST_F(DevInfoLoading, Searches) {
    DEV_INFO_PROBE manager;
    load(manager);
    EXPECT_TRUE(manager.search_family(DEV_FAMILY_OSPREY, false));
    EXPECT_EQ(manager.m_index, 64U);
    EXPECT_TRUE(manager.search_family(DEV_FAMILY_INVALID, true));  // what is keyed otherwise stores the invalid family
    EXPECT_EQ(manager.m_index, 72U);
    EXPECT_TRUE(manager.search_device(DEV_DEVICE_GENERIC, false));
    EXPECT_EQ(manager.m_index, 72U);
    EXPECT_FALSE(manager.search_device(static_cast<DEV_DEVICE_ENUM>(7), false));
    EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    EXPECT_TRUE(manager.search_part(DEV_PART_GENERIC, false));
    EXPECT_EQ(manager.m_index, 73U);
    EXPECT_FALSE(manager.search_part(5, false));

    const char* family =
        "m_device_database != NULL && family < DEV_FAMILY_MAX && "
        "(allow_invalid || family != DEV_FAMILY_INVALID)";
    const char* device =
        "m_device_database != NULL && device < DEV_DEVICE_MAX && "
        "(allow_invalid || device != DEV_DEVICE_INVALID)";
    const char* part =
        "m_device_database != NULL && part < DEV_PART_MAX && "
        "(allow_invalid || part != DEV_PART_INVALID)";
    manager.m_index = 5;
    EXPECT_REPORT(manager.search_family(DEV_FAMILY_INVALID, false), family);
    EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    EXPECT_REPORT(manager.search_family(DEV_FAMILY_MAX, true), family);
    EXPECT_REPORT(manager.search_device(DEV_DEVICE_INVALID, false), device);
    EXPECT_REPORT(manager.search_device(DEV_DEVICE_MAX, true), device);
    EXPECT_REPORT(manager.search_part(DEV_PART_INVALID, false), part);
    EXPECT_REPORT(manager.search_part(DEV_PART_MAX, true), part);
    DEV_INFO_PROBE empty;
    EXPECT_REPORT(empty.search_family(DEV_FAMILY_HERON, true), family);
    EXPECT_REPORT(empty.search_device(DEV_DEVICE_GENERIC, true), device);
    EXPECT_REPORT(empty.search_part(DEV_PART_GENERIC, true), part);
}

TEST_F(DevInfoLoading, SearchesCheckTheRecordsOnTheirWay) {
    DEV_INFO_PROBE manager;
    load(manager);
    manager.m_device_database[10].family = static_cast<DEV_FAMILY_ENUM>(73);
    manager.m_device_database[10].device = static_cast<DEV_DEVICE_ENUM>(-1);
    manager.m_device_database[10].part = DEV_PART_MAX;
    EXPECT_TRUE(manager.search_family(static_cast<DEV_FAMILY_ENUM>(10), false));  // record 9: found before
    EXPECT_REPORT(manager.search_family(DEV_FAMILY_OSPREY, false), "id < DEV_FAMILY_MAX");
    EXPECT_REPORT(manager.search_device(DEV_DEVICE_GENERIC, false), "id < DEV_DEVICE_MAX");
    EXPECT_REPORT(manager.search_part(DEV_PART_GENERIC, false), "id < DEV_PART_MAX");
}

TEST_F(DevInfoLoading, TablesThatADerivingClassHasTakenAwayAreMissed) {
    for (DWORD* DEV_INFO_PROBE::*table :
         {&DEV_INFO_PROBE::m_family_table, &DEV_INFO_PROBE::m_device_table, &DEV_INFO_PROBE::m_part_table}) {
        DEV_INFO_PROBE manager;
        DWORD* const taken = std::exchange(manager.*table, nullptr);
        EXPECT_REPORT(load(manager),
                      "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                      "m_part_table != NULL");
        EXPECT_EQ(manager.get_device_database(), nullptr);
        manager.*table = taken;
        load(manager);
        const std::unique_ptr<PGMDEV_DEVICE_INFO> found(manager.get_db_by_part(1));
        EXPECT_NE(found, nullptr);
    }
    DEV_INFO_PROBE manager;
    load(manager);
    DWORD* const taken = std::exchange(manager.m_part_table, nullptr);
    EXPECT_EQ(manager.get_db_by_part(1), nullptr);
    EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    manager.m_part_table = taken;
}

TEST_F(DevInfoLoading, SearchesByProgrammerFile) {
    DEV_INFO_PROBE manager;
    load(manager);
    const auto device = [](int number) { return static_cast<DEV_DEVICE_ENUM>(number); };
    manager.m_pgm_parts = {new PGMDEV_PGM_PART{1, device(5), "file_b"}, new PGMDEV_PGM_PART{2, device(5), "FILE_C"},
                           new PGMDEV_PGM_PART{3, device(6), ""}, new PGMDEV_PGM_PART{4, device(7), "FILE_X"},
                           new PGMDEV_PGM_PART{0, device(0), "FILE_A"}};
    EXPECT_TRUE(manager.search_pcf_for_device(device(5)));  // by its first entry, without regard to case
    EXPECT_EQ(manager.m_index, 75U);
    EXPECT_TRUE(manager.search_pcf_for_part(2));
    EXPECT_EQ(manager.m_index, 76U);
    for (const int number : {0, 6, 7, 8}) {
        EXPECT_FALSE(manager.search_pcf_for_device(device(number))) << number;
        EXPECT_EQ(manager.m_index, 0xFFFFFFFF);
    }
    for (const int number : {0, 3, 4, 9}) {
        EXPECT_FALSE(manager.search_pcf_for_part(number)) << number;
    }
    EXPECT_REPORT(manager.search_pcf_for_device(DEV_DEVICE_MAX),
                  "m_device_database != NULL && device < DEV_DEVICE_MAX");
    EXPECT_REPORT(manager.search_pcf_for_part(DEV_PART_MAX), "m_device_database != NULL && part < DEV_PART_MAX");
    DEV_INFO_PROBE empty;
    EXPECT_REPORT(empty.search_pcf_for_device(device(1)), "m_device_database != NULL && device < DEV_DEVICE_MAX");
    EXPECT_REPORT(empty.search_pcf_for_part(1), "m_device_database != NULL && part < DEV_PART_MAX");
}

TEST_F(DevInfoLoading, DebugModesListOnTheDebugChannel) {
    m_tables.part[static_cast<std::size_t>(DEV_PART_INVALID)] = 3;  // which is never listed
    m_tables.part[static_cast<std::size_t>(DEV_PART_GENERIC)] = 72;
    write(ref::file(body()));
    const DEVICE_DB_DIRECTORY directory(m_scratch.directory().string());
    const std::vector<std::pair<DWORD, std::vector<std::string>>> modes{
        {0, {}},
        {5, {}},
        {2, {"PGMDEV 2 Record 5 for Kestrel", "PGMDEV 2 Record 71 for Generic"}},
        {3, {"PGMDEV 2 Record 5 for " + dstr_get_user_string(DEV_DEVICE_ENUM{1}), "PGMDEV 2 Record 72 for Generic"}},
        {4, {"PGMDEV 2 Record 77 for " + dstr_get_user_string(1), "PGMDEV 2 Record 72 for Generic"}}};
    for (const auto& [mode, headings] : modes) {
        const DEBUG_MESSAGES channel;
        DEV_INFO_PROBE manager(false, mode);
        std::vector<std::string> found;
        for (const std::string& message : channel.all()) {
            found.push_back(message.substr(0, message.find('\n')));
        }
        EXPECT_EQ(found, headings) << mode;
    }
    const DEBUG_MESSAGES channel;
    DEV_INFO_PROBE manager(false, 1);
    ASSERT_EQ(channel.all().size(), 78U);
    EXPECT_REPORT(manager.print_database(78, ""), "record < m_device_count");
    EXPECT_EQ(channel.all()[5].substr(0, 43), "PGMDEV 2 Record 5\n  family = 6 (KESTREL)\n  ");
    EXPECT_NE(channel.all()[5].find("\n  ekp_alg_family = 37 (NPCF_BLOCK_CRAM)\n"), std::string::npos);
    EXPECT_NE(channel.all()[5].find("\n  support_asc_ini = text14\n"), std::string::npos);
    EXPECT_NE(channel.all()[0].find("\n  ekp_alg_family = 4294967295 (none)\n"), std::string::npos);
}

TEST(DevInfoListing, HasNoSeparatorsInNumbers) {
    const PUNCTUATED_LOCALE locale;
    PGMDEV_DEVICE_INFO info;
    info.jtag_program_startup_tck = 134217728;
    info.fbgen_cvp_core_start_block = 4294967294;
    const std::string text = pgmdev_list_device_info(info, "heading");
    EXPECT_NE(text.find("\n  jtag_program_startup_tck = 134217728\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n  fbgen_cvp_core_start_block = 4294967294\n"), std::string::npos) << text;
}

}  // namespace
