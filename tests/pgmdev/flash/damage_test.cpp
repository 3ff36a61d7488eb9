#include <gtest/gtest.h>

#include <algorithm>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "pgmdev_flash_table.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Damaged databases of every kind. Each ends in a report; the sanitizers watch that nothing outside is touched and
// nothing is leaked.

namespace {

namespace ref = flash_reference;

constexpr const char* STREAM_FAILED =
    "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";

class FlashDamage : public testing::Test {
protected:
    /// The report that ends loading a file, by the manager and by the maintainers' reader alike.
    std::string load(const std::string& file) {
        const std::string path = m_scratch.write("damaged.pcf", file);
        const std::string table = report_of([&] { PGMDEV_FLASH_TABLE::from_database(path); });
        FLASH_PROBE manager;
        std::string report = report_of([&] { manager.initialize_flash_database(path); });
        EXPECT_EQ(table, report);
        if (report != "(no report)") {
            EXPECT_EQ(manager.get_flash_count(), 0U);
            EXPECT_EQ(manager.get_flash_database(), nullptr);
        }
        return report;
    }
    std::string load_payload(const std::string& payload) { return load(ref::file(payload)); }

    SCRATCH m_scratch;
    const std::string m_payload = ref::payload({ref::sample("A"), ref::sample("B")});
    const std::string m_file = ref::file(m_payload);
};

TEST_F(FlashDamage, EveryByteOfTheStamp) {
    for (std::size_t i = 8; i < 40; ++i) {
        std::string file = m_file;
        file[i] = static_cast<char>(file[i] ^ 0x20);  // for letters, a change of case only
        EXPECT_EQ(load(file), "Mismatch ID between flash file and reader") << i;
    }
}

TEST_F(FlashDamage, EveryByteOfTheMagicLoadsNothing) {
    for (std::size_t i = 0; i < 8; ++i) {
        std::string file = m_file;
        file[i] = static_cast<char>(file[i] ^ 1);
        const REPORTS reports;
        FLASH_PROBE manager;
        manager.initialize_flash_database(m_scratch.write("damaged.pcf", file));
        EXPECT_EQ(reports.all().size(), 1U);
        EXPECT_EQ(manager.get_flash_database(), nullptr);
    }
}

TEST_F(FlashDamage, APayloadSizeThatLies) {
    const auto stating = [&](unsigned long long size) { return ref::head() + ref::le32(size) + m_file.substr(44); };
    EXPECT_EQ(load(stating(m_payload.size())), "(no report)");
    EXPECT_EQ(load(stating(0)), "decompressed_count > 0 && original_count > 0");
    for (const std::size_t size : std::initializer_list<std::size_t>{1, 12, m_payload.size() - 1}) {
        EXPECT_EQ(load(stating(size)), STREAM_FAILED) << size;
    }
    for (const QWORD size : {QWORD{m_payload.size() + 1}, QWORD{1} << 20, QWORD{1} << 31, QWORD{0xFFFFFFFF}}) {
        EXPECT_EQ(load(stating(size)), "new_dcmp_size == original_count") << size;
    }
}

TEST_F(FlashDamage, EveryCutOfTheFile) {
    for (std::size_t size = 47; size + 2 < m_file.size(); ++size) {
        EXPECT_EQ(load(m_file.substr(0, size)), STREAM_FAILED) << size;
    }
}

TEST_F(FlashDamage, EveryBitOfTheStream) {
    for (std::size_t bit = std::size_t{44} * 8; bit < (m_file.size() - 2) * 8; ++bit) {
        std::string file = m_file;
        file[bit / 8] = static_cast<char>(file[bit / 8] ^ (1 << bit % 8));
        const std::string report = load(file);
        EXPECT_TRUE(report == STREAM_FAILED || report == "new_dcmp_size == original_count" || report == "(no report)");
    }
}

TEST_F(FlashDamage, EveryCutOfThePayload) {
    for (std::size_t size = 1; size < m_payload.size(); ++size) {
        EXPECT_EQ(load_payload(m_payload.substr(0, size)), "index < data_size") << size;
    }
}

TEST_F(FlashDamage, TheVersion) {
    for (const unsigned long version : {0UL, 2UL, 256UL, 0xFFFFFFFFUL}) {
        EXPECT_EQ(load_payload(ref::le32(version) + m_payload.substr(4)),
                  "Mismatch version between flash file and reader");
    }
    EXPECT_EQ(load_payload(ref::le32(2)),
              "Mismatch version between flash file and reader");  // before the counts are read
}

TEST_F(FlashDamage, TheCounts) {
    const std::string records = m_payload.substr(12);
    const auto counts = [&](unsigned long record_count, unsigned long members) {
        return load_payload(ref::le32(1) + ref::le32(record_count) + ref::le32(members) + records);
    };
    EXPECT_EQ(counts(0, flash_reference::MEMBERS), "m_flash_count > 0 && m_type_count > 0");
    EXPECT_EQ(counts(2, 0), "m_flash_count > 0 && m_type_count > 0");
    EXPECT_EQ(counts(1, flash_reference::MEMBERS), "data[index++] == 'E'");  // a record stands where "END2" should
    EXPECT_EQ(counts(3, flash_reference::MEMBERS),
              "type == PGMDEV_MANAGER_STRING");                          // "END2" stands where a record should
    EXPECT_EQ(counts(0xFFFFFFFF, 33), "type == PGMDEV_MANAGER_STRING");  // and no memory is taken for the promise
    EXPECT_EQ(load_payload(ref::le32(1) + ref::le32(0xFFFFFFFF) + ref::le32(flash_reference::MEMBERS)),
              "index < data_size");
}

TEST_F(FlashDamage, EachOfTheTags) {
    const std::vector<std::string> fields = ref::fields(ref::sample());
    for (std::size_t damaged = 0; damaged < fields.size(); ++damaged) {
        const char own = fields[damaged][0];
        const char* expected = own == 2   ? "type == PGMDEV_MANAGER_STRING"
                               : own == 3 ? "type == PGMDEV_MANAGER_BOOL"
                               : own == 4 ? "type == PGMDEV_MANAGER_BYTE"
                                          : "type == PGMDEV_MANAGER_DWORD";
        for (int tag = 0; tag < 256; ++tag) {
            std::string payload = ref::le32(1) + ref::le32(1) + ref::le32(flash_reference::MEMBERS);
            for (std::size_t i = 0; i < fields.size(); ++i) {
                payload += i == damaged ? static_cast<char>(tag) + fields[i].substr(1) : fields[i];
            }
            EXPECT_EQ(load_payload(payload + "END1END2"), static_cast<char>(tag) == own ? "(no report)" : expected)
                << "member " << damaged << " tag " << tag;
        }
    }
}

TEST_F(FlashDamage, EachOfTheBools) {
    const std::vector<std::string> fields = ref::fields(ref::sample());
    for (std::size_t damaged = 0; damaged < fields.size(); ++damaged) {
        if (fields[damaged][0] != 3) {
            continue;
        }
        std::string payload = ref::le32(1) + ref::le32(1) + ref::le32(flash_reference::MEMBERS);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            payload += i == damaged ? "\3\2" : fields[i];
        }
        EXPECT_EQ(load_payload(payload + "END1END2"), "value == 0 || value == 1") << damaged;
    }
}

TEST_F(FlashDamage, EachLengthOfATextAtTheEnd) {
    for (int length = 0; length < 256; ++length) {
        const std::string payload =
            ref::le32(1) + ref::le32(1) + ref::le32(flash_reference::MEMBERS) + '\2' + static_cast<char>(length);
        for (const int given : {0, length - 1}) {
            if (given >= 0 && given < length) {
                EXPECT_EQ(load_payload(payload + std::string(static_cast<std::size_t>(given), 'x')),
                          "index < data_size");
            }
        }
    }
}

TEST_F(FlashDamage, TheMarkers) {
    const std::string head = ref::le32(1) + ref::le32(1) + ref::le32(flash_reference::MEMBERS);
    std::string record = ref::record(ref::sample());
    record.resize(record.size() - 4);
    EXPECT_EQ(load_payload(head + record + "xND1END2"), "data[index++] == 'E'");
    EXPECT_EQ(load_payload(head + record + "ExD1END2"), "data[index++] == 'N'");
    EXPECT_EQ(load_payload(head + record + "ENx1END2"), "data[index++] == 'D'");
    EXPECT_EQ(load_payload(head + record + "END2END2"), "data[index++] == '1'");
    EXPECT_EQ(load_payload(head + record + "END1END1"), "data[index++] == '2'");
    EXPECT_EQ(load_payload(head + record + "END1EN"), "index < data_size");
}

TEST_F(FlashDamage, ABombIsBoundedByWhatTheFileStates) {
    const std::string bomb(1 << 24, '\0');
    EXPECT_EQ(load(ref::head() + ref::le32(64) + ref::deflated(bomb) + "cc"), STREAM_FAILED);
    EXPECT_EQ(load(ref::file(bomb)), "Mismatch version between flash file and reader");
}

TEST_F(FlashDamage, ABombHasTheCountsOfADatabaseOrIsNotInflated) {
    constexpr QWORD SIZE = QWORD{16} << 20;
    constexpr std::size_t MEMBERS = flash_reference::MEMBERS;  // each takes two bytes at least
    const auto load_counts = [this](unsigned long records, unsigned long members) {
        const std::string head = ref::le32(1) + ref::le32(records) + ref::le32(members);
        return load(ref::head() + ref::le32(SIZE) + ref::deflated_with_zeros(head, SIZE) + "cc");
    };
    EXPECT_EQ(load_counts(0, MEMBERS), "m_flash_count > 0 && m_type_count > 0");
    EXPECT_EQ(load_counts(1, 0), "m_flash_count > 0 && m_type_count > 0");
    EXPECT_EQ(load_counts(SIZE / (2 * MEMBERS) + 1, MEMBERS), "index < data_size");
    EXPECT_EQ(load_counts(SIZE / (2 * MEMBERS), MEMBERS), "type == PGMDEV_MANAGER_STRING");
}

TEST_F(FlashDamage, ManyRecordsThatDeflateShortensMuchMayStateAnyMemberCount) {
    constexpr unsigned long RECORDS = 20000;
    PGMDEV_SFL_FLASH_INFO other = ref::sample();
    other.default_dev = false;
    const std::string one = ref::record(other);
    std::string records = ref::record(ref::sample());
    for (unsigned long i = 1; i < RECORDS; ++i) {
        records += one;
    }
    for (const unsigned long members : {1UL, 33UL, 34UL, 1000UL, 0xFFFFFFFFUL}) {
        EXPECT_EQ(load_payload(ref::le32(1) + ref::le32(RECORDS) + ref::le32(members) + records + "END2"),
                  "(no report)")
            << members;
    }
}

TEST_F(FlashDamage, ABodyHasAtMost128MiB) {
    constexpr QWORD MOST = QWORD{128} << 20;
    const auto stating = [](QWORD stated, const std::string& beginning, QWORD size) {
        return ref::head() + ref::le32(stated) + ref::deflated_with_zeros(beginning, size) + "cc";
    };
    EXPECT_EQ(load(stating(MOST, m_payload, MOST)), "(no report)");
    constexpr const char* TOO_LONG = "memory_size <= PACKED_BODY_MAX";
    for (const QWORD stated : {MOST + 1, 2 * MOST, QWORD{0xFFFFFFFF}}) {
        EXPECT_EQ(load(stating(stated, m_payload, MOST + 1)), TOO_LONG) << stated;
        EXPECT_EQ(load(stating(stated, "", MOST + 1)), "Mismatch version between flash file and reader") << stated;
        EXPECT_EQ(load(stating(stated, m_payload, 4096)), "new_dcmp_size == original_count") << stated;
    }
}

TEST_F(FlashDamage, RandomPayloadsEndInAReport) {
    auto random = repeatable_random(20);
    for (int round = 0; round < 2000; ++round) {
        std::string payload = m_payload;
        for (int change = 0; change < 4; ++change) {
            payload[random() % payload.size()] = static_cast<char>(random());
        }
        payload.resize(12 + random() % (payload.size() - 12));
        EXPECT_NE(load_payload(payload), "(no report)");  // something is missing at its end
    }
}

}  // namespace
