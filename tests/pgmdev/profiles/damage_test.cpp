#include <gtest/gtest.h>

#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "pgmdev_dev_info_table.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Damaged databases of every kind. Each ends in a report; the sanitizers watch that nothing outside is touched and
// nothing is leaked.

namespace {

namespace ref = dev_info_reference;

constexpr const char* STREAM_FAILED =
    "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";

class DevInfoDamage : public testing::Test {
protected:
    std::string load(const std::string& file) {
        const std::string path = m_scratch.write("damaged.pcf", file);
        DEV_INFO_PROBE manager;
        std::string report = report_of([&] { manager.initialize_device_database(path); });
        if (report != "(no report)") {
            EXPECT_EQ(manager.m_device_count, 0U);
            EXPECT_EQ(manager.m_csv_memory_size, 0U);
            EXPECT_EQ(manager.get_device_database(), nullptr);
            EXPECT_EQ(manager.m_family_table[6], 0xFFFFFFFF);
        }
        return report;
    }
    std::string load_body(const std::string& body) { return load(ref::file(body)); }
    std::string load_records(const std::string& records) { return load_body(records + m_tables); }

    SCRATCH m_scratch;
    const std::string m_records = ref::records({ref::sample("KESTREL"), ref::sample("OSPREY")});
    const std::string m_tables = ref::tables({});
    const std::string m_file = ref::file(m_records + m_tables);
};

TEST_F(DevInfoDamage, Undamaged) {
    EXPECT_EQ(load(m_file), "(no report)");
    EXPECT_EQ(load(m_file.substr(0, m_file.size() - 2) + "xy"), "(no report)");  // the checksum slot is not looked at
}

TEST_F(DevInfoDamage, MissingShortAndForeignFiles) {
    DEV_INFO_PROBE manager;
    EXPECT_REPORT(manager.initialize_device_database(m_scratch.path("missing")),
                  "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                  "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)");
    EXPECT_REPORT(manager.initialize_device_database(m_scratch.directory().string()), "input.good()");
    EXPECT_EQ(load(m_file.substr(0, 46)), "file_size > (8 + 32 + 4 + 2)");
    EXPECT_EQ(load(m_file.substr(0, 47)), STREAM_FAILED);
    EXPECT_EQ(load(""), "file_size > (8 + 32 + 4 + 2)");
}

TEST_F(DevInfoDamage, AnotherMagicLoadsNothing) {
    for (std::size_t i = 0; i < 8; ++i) {
        std::string file = m_file;
        file[i] = static_cast<char>(file[i] ^ 1);
        const std::string path = m_scratch.write("damaged.pcf", file);
        const REPORTS reports;
        DEV_INFO_PROBE manager;
        manager.initialize_device_database(path);
        ASSERT_EQ(reports.all().size(), 1U);
        EXPECT_EQ(reports.all()[0].condition,
                  "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
                  "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'D' && data[index++] == 'M'");
        EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_dev_info_manager");
        EXPECT_EQ(manager.get_device_database(), nullptr);
        EXPECT_TRUE(PGMDEV_DEV_INFO_TABLE::from_database(path).records().empty());
    }
}

TEST_F(DevInfoDamage, EveryByteOfTheStamp) {
    for (std::size_t i = 8; i < 40; ++i) {
        std::string file = m_file;
        file[i] = static_cast<char>(file[i] ^ 0x20);  // for letters, a change of case only
        EXPECT_EQ(load(file), "Mismatch ID between flash file and reader") << i;
    }
}

TEST_F(DevInfoDamage, TheStatedSize) {
    const std::string stream = m_file.substr(44);
    const auto stating = [&](std::size_t size) { return m_file.substr(0, 40) + ref::le32(size) + stream; };
    EXPECT_EQ(load(stating(0)), "decompressed_count > 0 && original_count > 0");
    EXPECT_EQ(load(stating(1)), STREAM_FAILED);
    for (const std::size_t size :
         {m_records.size() + m_tables.size() + 1, std::size_t{1} << 31, std::size_t{0xFFFFFFFF}}) {
        EXPECT_EQ(load(stating(size)), "new_dcmp_size == original_count") << size;
    }
}

TEST_F(DevInfoDamage, EveryCutOfTheFile) {
    for (std::size_t size = 47; size + 2 < m_file.size(); ++size) {
        EXPECT_EQ(load(m_file.substr(0, size)), STREAM_FAILED) << size;
    }
}

TEST_F(DevInfoDamage, EveryCutOfTheRecordSection) {
    // Behind the cut come the tables, whose bytes make no record.
    for (std::size_t size = 0; size < m_records.size(); ++size) {
        const std::string report = load_records(m_records.substr(0, size));
        EXPECT_NE(report, "(no report)") << size;
        EXPECT_NE(report, "index < data_size") << size;
    }
    EXPECT_EQ(load_records(""), "memory_size > get_table_size()");
    EXPECT_EQ(load_body(m_tables.substr(1)), "memory_size > get_table_size()");
}

TEST_F(DevInfoDamage, EveryCutOfTheLastRecordOfABodyWithoutTables) {
    const std::string record = ref::record(ref::sample());
    const std::size_t before = m_tables.size() / record.size() + 1;
    std::string body = ref::le32(1) + ref::le32(before + 1) + ref::le32(ref::MEMBERS);
    for (std::size_t i = 0; i < before; ++i) {
        body += record;
    }
    for (std::size_t size = 0; size < record.size(); ++size) {
        EXPECT_EQ(load_body(body + record.substr(0, size)), "index < data_size") << size;
    }
    EXPECT_EQ(load_body(body + record), "index < data_size");
    EXPECT_EQ(load_body(body + record + "END2"), "index == m_csv_memory_size");
}

TEST_F(DevInfoDamage, TheHead) {
    const std::string records = m_records.substr(12);
    const auto head = [&](unsigned long version, unsigned long count, unsigned long members) {
        return load_records(ref::le32(version) + ref::le32(count) + ref::le32(members) + records);
    };
    for (const unsigned long version : {0UL, 2UL, 256UL, 0xFFFFFFFFUL}) {
        EXPECT_EQ(head(version, 0, 0), "Mismatch version between device file and reader");
    }
    EXPECT_EQ(head(1, 0, ref::MEMBERS), "m_device_count > 0 && m_type_count > 0");
    EXPECT_EQ(head(1, 2, 0), "m_device_count > 0 && m_type_count > 0");
    EXPECT_EQ(head(1, 2, 1), "(no report)");  // the member count is not compared
    EXPECT_EQ(head(1, 1, ref::MEMBERS), "data[index++] == 'E'");
    for (const unsigned long count : {3UL, 1UL << 20, 0xFFFFFFFFUL}) {  // and no memory is taken for the promise
        EXPECT_EQ(head(1, count, ref::MEMBERS),
                  "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || type == PGMDEV_MANAGER_ENUM");
    }
}

TEST_F(DevInfoDamage, ManyRecordsThatDeflateShortensMuchMayStateAnyMemberCount) {
    constexpr unsigned long RECORDS = 5000;
    const std::string one = ref::record(ref::sample());
    std::string records;
    for (unsigned long i = 0; i < RECORDS; ++i) {
        records += one;
    }
    ASSERT_GT(records.size(), std::size_t{1} << 20);
    for (const unsigned long members : {1UL, static_cast<unsigned long>(ref::MEMBERS), 87UL, 1000UL, 0xFFFFFFFFUL}) {
        EXPECT_EQ(load_records(ref::le32(1) + ref::le32(RECORDS) + ref::le32(members) + records + "END2"),
                  "(no report)")
            << members;
    }
}

TEST_F(DevInfoDamage, EachOfTheTags) {
    const ref::CELLS sample = ref::sample();
    for (std::size_t damaged = 0; damaged < ref::MEMBERS; ++damaged) {
        const char own = ref::field(damaged, sample[damaged])[0];
        for (const int tag : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 128, 255}) {
            std::string records = ref::le32(1) + ref::le32(1) + ref::le32(ref::MEMBERS);
            for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
                const std::string field = ref::field(i, sample[i]);
                records += i == damaged ? static_cast<char>(tag) + field.substr(1) : field;
            }
            const bool text = own == 1 || own == 2;
            const bool number = own == 6 || own == 7;
            const bool accepted =
                tag == own || (text && (tag == 1 || tag == 2)) || (number && (tag == 0 || tag == 6 || tag == 7));
            EXPECT_EQ(load_records(records + "END1END2"),
                      accepted   ? "(no report)"
                      : text     ? "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING"
                      : number   ? "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || "
                                   "type == PGMDEV_MANAGER_ENUM"
                      : own == 3 ? "type == PGMDEV_MANAGER_BOOL"
                      : own == 4 ? "type == PGMDEV_MANAGER_BYTE"
                                 : "type == PGMDEV_MANAGER_WORD")
                << "member " << damaged << " tag " << tag;
        }
    }
}

TEST_F(DevInfoDamage, TheMarkers) {
    const std::string head = ref::le32(1) + ref::le32(1) + ref::le32(ref::MEMBERS);
    std::string record = ref::record(ref::sample());
    record.resize(record.size() - 4);
    const std::vector<std::pair<const char*, const char*>> markers{
        {"xND1END2", "data[index++] == 'E'"},       {"ExD1END2", "data[index++] == 'N'"},
        {"ENx1END2", "data[index++] == 'D'"},       {"END2END2", "data[index++] == '1'"},
        {"END1END1", "data[index++] == '2'"},       {"END1END2", "(no report)"},
        {"END1END2x", "index == m_csv_memory_size"}};
    for (const auto& [marker, report] : markers) {
        EXPECT_EQ(load_records(head + record + marker), report) << marker;
    }
}

TEST_F(DevInfoDamage, TheIndexTables) {
    const std::size_t family = 0;
    const std::size_t device = 5 + 73 * 4;
    const std::size_t part = device + 5 + std::size_t{991} * 4;
    const std::vector<std::pair<std::size_t, std::string>> tables{
        {family, "FAMILY"}, {device, "DEVICE"}, {part, "PART"}};
    for (const auto& [at, name] : tables) {
        for (const int marker : {0, 8, 9, 10, 11, 255}) {
            std::string damaged = m_tables;
            damaged[at] = static_cast<char>(marker);
            EXPECT_EQ(load_body(m_records + damaged),
                      damaged == m_tables ? "(no report)" : "data[index++] == PGMDEV_MANAGER_" + name + "_TBL");
        }
        for (const unsigned long count : {0UL, 72UL, 74UL, 990UL, 992UL, 0xFFFFFFFFUL}) {
            std::string damaged = m_tables;
            damaged.replace(at + 1, 4, ref::le32(count));
            EXPECT_EQ(load_body(m_records + damaged), "get_dword(data, index) == DWORD(DEV_" + name + "_MAX)");
        }
    }
}

TEST_F(DevInfoDamage, RandomBodiesEndInAReportOrInRecords) {
    auto random = repeatable_random(20);
    for (int round = 0; round < 300; ++round) {
        std::string body = m_records + m_tables;
        for (int change = 0; change < 4; ++change) {
            body[random() % (m_records.size() + 400)] = static_cast<char>(random());
        }
        EXPECT_NE(load_body(body), "");
    }
}

TEST_F(DevInfoDamage, TheMaintainersReaderReportsTheSame) {
    const std::string path = m_scratch.write("damaged.pcf", ref::file(m_records.substr(1) + m_tables));
    DEV_INFO_PROBE manager;
    EXPECT_EQ(report_of([&] { manager.initialize_device_database(path); }),
              report_of([&] { PGMDEV_DEV_INFO_TABLE::from_database(path); }));
}

}  // namespace
