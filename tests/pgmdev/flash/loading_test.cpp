#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Construction, loading, copies and destruction.

namespace {

namespace ref = flash_reference;
using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr const char* MISSING_FILE =
    "FIO_FILE_SYSTEM::exists(flash_file.fullpath().c_str()) && "
    "FIO_FILE_SYSTEM::status(flash_file.fullpath().c_str(), &stat_info)";

RECORD named(const std::string& name, const std::string& ini = "NONE", bool is_default = true) {
    RECORD record = ref::sample(name);
    record.ini = ini;
    record.default_dev = is_default;
    return record;
}

/// A device-database directory whose flash database a test writes.
class FlashLoading : public testing::Test {
protected:
    void write(const std::string& file) { m_scratch.write("programmer/pgm_flash.pcf", file); }
    void write_records(const std::vector<RECORD>& records) { write(ref::file(ref::payload(records))); }
    std::string load_report() {
        return report_of([] { FLASH_PROBE manager(false, 1, false, false); });
    }

    SCRATCH m_scratch;
    DEVICE_DB_DIRECTORY m_directory{m_scratch.directory().string()};
};

TEST_F(FlashLoading, KeepsEveryMember) {
    write_records({ref::sample()});
    FLASH_PROBE manager(false, 2, false, false);
    ASSERT_EQ(manager.get_flash_count(), 1U);
    EXPECT_EQ(manager.get_flash_database()[0], ref::sample());
    EXPECT_EQ(manager.m_version, 1U);
    EXPECT_EQ(manager.m_type_count, flash_reference::MEMBERS);
    EXPECT_EQ(manager.m_device_count, 2U);
    EXPECT_EQ(manager.m_ini_count, 0U);
    EXPECT_EQ(manager.m_device_to_flash_map[0], 0xFFFFFFFF);
    EXPECT_EQ(manager.m_device_to_flash_map[1], 0xFFFFFFFF);
}

TEST_F(FlashLoading, AFileThatIsBeingReplacedIsLoadedWhole) {
    std::vector<RECORD> many;
    many.reserve(200);
    for (int i = 0; i < 200; ++i) {
        many.push_back(named("RECORD_" + std::to_string(i * 7919)));
    }
    const std::array files{ref::file(ref::payload({ref::sample()})), ref::file(ref::payload(many))};
    write(files[0]);
    std::atomic<bool> loaded{false};
    std::thread writer([&] {
        for (std::size_t round = 0; !loaded; ++round) {
            const std::string& file = files[round % 2];
            FIO_REPLACEMENT replacement(m_scratch.path("programmer/pgm_flash.pcf"));
            EXPECT_TRUE(replacement.write({reinterpret_cast<const BYTE*>(file.data()), file.size()}));
            EXPECT_TRUE(replacement.commit());
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    for (int round = 0; round < 60; ++round) {
        DWORD count = 0;
        EXPECT_EQ(report_of([&] { count = FLASH_PROBE(false, 1, false, false).get_flash_count(); }), "(no report)");
        EXPECT_TRUE(count == 1 || count == many.size()) << count;
    }
    loaded = true;
    writer.join();
}

TEST_F(FlashLoading, TheUnusedFlagHasNoEffect) {
    write_records({ref::sample()});
    FLASH_PROBE manager(true, 1, false, false);
    EXPECT_EQ(manager.get_flash_database()[0], ref::sample());
}

TEST_F(FlashLoading, KeepsNulBytesInTexts) {
    RECORD record = ref::sample();
    record.manufacturer_name = std::string("A\0B", 3);
    write_records({record});
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_database()[0].manufacturer_name, std::string("A\0B", 3));
}

TEST_F(FlashLoading, AnEmptyManagerReadsNoFile) {
    FLASH_PROBE manager(false, 7, true, true);  // there is no file
    EXPECT_EQ(manager.get_flash_count(), 0U);
    EXPECT_EQ(manager.get_flash_database(), nullptr);
    EXPECT_EQ(manager.m_device_to_flash_map, nullptr);
    EXPECT_EQ(manager.m_device_count, 7U);
    EXPECT_EQ(manager.m_print_on_load, 1U);
    EXPECT_EQ(manager.get_default_flash("SAMPLE"), nullptr);
}

TEST_F(FlashLoading, ReportsAMissingFile) {
    const REPORTS reports;
    EXPECT_THROW(FLASH_PROBE(false, 1, false, false), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, MISSING_FILE);
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_flash_manager");
    EXPECT_GT(reports.all()[0].line, 0);
}

TEST_F(FlashLoading, ReportsADirectoryInPlaceOfTheFile) {
    std::filesystem::create_directories(m_scratch.directory() / "programmer" / "pgm_flash.pcf");
    EXPECT_EQ(load_report(), "input.good()");
}

TEST_F(FlashLoading, ReportsNoDevicesOnlyAfterTheLoad) {
    EXPECT_REPORT(FLASH_PROBE(false, 0, false, false), MISSING_FILE);
    write_records({ref::sample()});
    EXPECT_REPORT(FLASH_PROBE(false, 0, false, false), "count > 0");
}

TEST_F(FlashLoading, NeedsMoreThan46Bytes) {
    const std::string file = ref::file(ref::payload({ref::sample()}));
    for (const std::size_t size : {0U, 1U, 8U, 40U, 44U, 45U, 46U}) {
        write(file.substr(0, size));
        EXPECT_EQ(load_report(), "file_size > (8 + 32 + 4 + 2)") << size;
    }
    write(file.substr(0, 47));
    EXPECT_EQ(load_report(), "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK");
}

TEST_F(FlashLoading, AWrongMagicIsReportedAndLoadsNothing) {
    std::string file = ref::file(ref::payload({ref::sample()}));
    file[6] = 'D';
    write(file);
    const REPORTS reports;
    FLASH_PROBE manager(false, 3, false, false);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition,
              "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
              "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'F' && data[index++] == 'M'");
    EXPECT_EQ(manager.get_flash_count(), 0U);
    EXPECT_EQ(manager.get_flash_database(), nullptr);
    EXPECT_NE(manager.m_device_to_flash_map, nullptr);  // construction went on
}

TEST_F(FlashLoading, TheChecksumSlotIsNotRead) {
    std::string file = ref::file(ref::payload({ref::sample()}));
    file[file.size() - 2] = '\x5A';
    file[file.size() - 1] = '\xA5';
    write(file);
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_count(), 1U);
}

TEST_F(FlashLoading, BytesBehindTheStreamAndBehindTheEndMarkerAreAccepted) {
    const std::string payload = ref::payload({ref::sample()}) + "more";
    write(ref::head() + ref::le32(payload.size()) + ref::deflated(payload) + "behind the stream" + "cc");
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_database()[0], ref::sample());
}

TEST_F(FlashLoading, TheMemberCountIsAnyPositiveNumber) {
    const std::string record = ref::record(ref::sample());
    for (const unsigned long members : {1UL, 32UL, 34UL, 0xFFFFFFFFUL}) {
        write(ref::file(ref::le32(1) + ref::le32(1) + ref::le32(members) + record + "END2"));
        EXPECT_EQ(FLASH_PROBE(false, 1, false, false).m_type_count, members);
    }
}

TEST_F(FlashLoading, EnabledRecordsArePackedInFileOrder) {
    write_records({named("A"), named("B", "LOCKED"), named("C", "none"), named("D", "OTHER"), named("E", "None")});
    {
        FLASH_PROBE manager(false, 1, false, false);
        ASSERT_EQ(manager.get_flash_count(), 3U);
        EXPECT_EQ(manager.get_flash_database()[0].device_name, "A");
        EXPECT_EQ(manager.get_flash_database()[1].device_name, "C");
        EXPECT_EQ(manager.get_flash_database()[2].device_name, "E");
        EXPECT_EQ(manager.get_flash_database()[3], RECORD());  // slots behind the packed records are cleared
        EXPECT_EQ(manager.get_flash_database()[4], RECORD());
    }
    const SETTING locked("PGM_ALLOW_LOCKED", "on");
    FLASH_PROBE manager(false, 1, false, false);
    ASSERT_EQ(manager.get_flash_count(), 4U);
    EXPECT_EQ(manager.get_flash_database()[1].device_name, "B");
}

TEST_F(FlashLoading, ASwitchKeyIsComparedExactly) {
    write_records({named("A", "Locked")});
    const SETTING upper("PGM_ALLOW_LOCKED", "on");
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_count(), 0U);
    const SETTING exact("PGM_ALLOW_Locked", "on");
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_count(), 1U);
}

TEST_F(FlashLoading, AllRecordsDisabledIsNoError) {
    write_records({named("A", "X"), named("A", "X", false)});
    BYTE id[256] = {0x20, 0xBA, 0x18};
    FLASH_PROBE manager(false, 1, false, false);
    EXPECT_EQ(manager.get_flash_count(), 0U);
    EXPECT_REPORT(manager.flash_id_database_mapping(false, 0, id), "m_flash_database != NULL && m_flash_count > 0");
}

TEST_F(FlashLoading, ARecordWithoutASwitchNameIsReported) {
    write_records({named("A", "")});
    EXPECT_EQ(load_report(), "!ini.empty()");
}

TEST_F(FlashLoading, EveryNameHasExactlyOneDefaultRow) {
    write_records({named("DEV_A"), named("dev_a")});
    EXPECT_EQ(load_report(), "!one_default");
    write_records({named("A"), named("B", "NONE", false), named("C"), named("C")});
    EXPECT_EQ(load_report(), "one_default");  // of the first faulty name
    write_records({named("C"), named("C"), named("B", "NONE", false)});
    EXPECT_EQ(load_report(), "!one_default");
    write_records({named("A", "NONE", false), named("B"), named("a"), named("A", "NONE", false)});
    EXPECT_EQ(load_report(), "(no report)");
}

TEST_F(FlashLoading, ADisabledDefaultRowDoesNotCount) {
    write_records({named("A"), named("A", "SWITCH")});
    EXPECT_EQ(load_report(), "(no report)");
    const SETTING on("PGM_ALLOW_SWITCH", "1");
    EXPECT_EQ(load_report(), "!one_default");
}

TEST_F(FlashLoading, ListsItsRecordsWhenAsked) {
    RECORD second = named("B");
    second.silicon_id = true;
    write_records({named("A"), second});
    testing::internal::CaptureStdout();
    FLASH_PROBE manager(false, 1, false, true);
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "Flash Manager Debug 0\n"
        "\tMaker A 0 24 2 186 1 32 0 24 1 NONE 1 1 1 1 1 1 3 134217728 65536 1 1 250 6 5000 92 76 64 15 32 1 3.3V\n"
        "Flash Manager Debug 1\n"
        "\tMaker B 1 24 2 186 1 32 0 24 1 NONE 1 1 1 1 1 1 3 134217728 65536 1 1 250 6 5000 92 76 64 15 32 1 3.3V\n");
}

TEST_F(FlashLoading, CopiesShareTheirArraysAndTheLastOwnerFreesThem) {
    write_records({ref::sample()});
    BYTE id[256] = {0x20, 0xBA, 0x18};
    auto first = std::make_unique<FLASH_PROBE>(false, 1, false, false);
    FLASH_PROBE second(*first);
    FLASH_PROBE third;
    third = second;
    EXPECT_EQ(second.get_flash_database(), first->get_flash_database());
    EXPECT_EQ(third.m_device_to_flash_map, first->m_device_to_flash_map);
    EXPECT_TRUE(first->flash_id_database_mapping(false, 0, id));
    EXPECT_EQ(third.get_flash_mapping_index(0, false), 0U);  // the map is shared, too
    first.reset();
    EXPECT_EQ(third.sfl_get_device_name(0), "SAMPLE");
    EXPECT_EQ(second.m_version, 1U);
    EXPECT_EQ(second.m_type_count, flash_reference::MEMBERS);
}

TEST_F(FlashLoading, AssignmentReplacesWhatTheManagerHeld) {
    write_records({ref::sample()});
    FLASH_PROBE loaded(false, 1, false, false);
    FLASH_PROBE target(false, 4, false, true);
    target = loaded;
    EXPECT_EQ(target.m_device_count, 1U);
    EXPECT_EQ(target.m_print_on_load, 0U);
    FLASH_PROBE& same = loaded;
    loaded.m_ini_flash_info.device_name = "KEPT";
    loaded = same;
    EXPECT_EQ(loaded.m_ini_flash_info.device_name, "KEPT");
    EXPECT_EQ(loaded.get_flash_count(), 1U);
}

TEST_F(FlashLoading, ArraysOfADerivingClassAreTakenOver) {
    FLASH_PROBE manager;
    manager.m_flash_database = new RECORD[2];
    manager.m_flash_database[0] = ref::sample();
    manager.m_flash_count = 1;
    manager.m_device_to_flash_map = new DWORD[1]{0};
    manager.m_device_count = 1;
    FLASH_PROBE copy(manager);
    EXPECT_EQ(copy.sfl_get_device_name(0), "SAMPLE");
}  // the leak checker and the allocator watch this

TEST_F(FlashLoading, NothingIsLoadedAfterAReport) {
    const std::string bad = m_scratch.write("bad.pcf", ref::file(ref::payload({ref::sample(), named("B", "")})));
    FLASH_PROBE manager;
    EXPECT_REPORT(manager.initialize_flash_database(bad), "!ini.empty()");
    EXPECT_EQ(manager.get_flash_count(), 0U);
    EXPECT_EQ(manager.get_flash_database(), nullptr);
    EXPECT_EQ(manager.m_ini_count, 0U);
}

TEST_F(FlashLoading, LoadingKeepsTheMapButReadsNothingOutside) {
    write_records({named("A"), ref::sample("B")});
    FLASH_PROBE manager(false, 2, false, false);
    manager.set_flash_mapping_index(0, 1);
    manager.set_flash_mapping_index(1, 0);
    FLASH_PROBE copy(manager);
    manager.initialize_flash_database(m_scratch.write("one.pcf", ref::file(ref::payload({named("C")}))));
    EXPECT_EQ(manager.get_flash_mapping_index(0, true), 1U);
    EXPECT_REPORT(manager.sfl_get_device_name(0), "index < data_size");
    EXPECT_REPORT(manager.sfl_get_chain_longest_program_utime(), "index < data_size");
    EXPECT_EQ(manager.sfl_get_device_name(1), "C");
    EXPECT_EQ(copy.sfl_get_device_name(0), "B");  // a copy keeps what it shared
}

TEST_F(FlashLoading, EndsAlsoUnderAReporterThatReturns) {
    const auto previous = MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT&) {});
    EXPECT_THROW(FLASH_PROBE(false, 1, false, false), MSG_INTERNAL_ERROR_EXCEPTION);
    MSG_INTERNAL_ERROR::set_handler(previous);
}

TEST_F(FlashLoading, ReadsOneRecordAtATimeForDerivingClasses) {
    const std::string payload = ref::payload({named("A", "OFF"), named("B")});
    std::vector<BYTE> bytes(payload.begin(), payload.end());
    FLASH_PROBE manager;
    manager.m_flash_database = new RECORD[2];
    manager.m_flash_count = 2;
    DWORD cursor = 12;
    EXPECT_FALSE(manager.get_database(bytes.data(), cursor, 0));
    manager.confirm_data_type_end(bytes.data(), cursor);
    EXPECT_TRUE(manager.get_database(bytes.data(), cursor, 1));
    manager.confirm_data_type_end(bytes.data(), cursor);
    manager.confirm_database_end(bytes.data(), cursor);
    EXPECT_EQ(cursor, payload.size());
    EXPECT_EQ(manager.m_flash_database[0], named("A", "OFF"));
    EXPECT_EQ(manager.m_flash_database[1], named("B"));
    EXPECT_FALSE(manager.parse_database(bytes.data()));
    EXPECT_EQ(manager.get_flash_count(), 1U);
    manager.null_info_database(&manager.m_flash_database[0]);
    EXPECT_EQ(manager.m_flash_database[0], RECORD());
}

TEST_F(FlashLoading, DefaultRowsOfNoRecordsAreNotLookedFor) {
    FLASH_PROBE manager;
    manager.confirm_default_value(0);
    manager.m_flash_count = 1;
    EXPECT_REPORT(manager.confirm_default_value(0), "m_flash_database != NULL");
    manager.m_flash_count = 0;
}

TEST_F(FlashLoading, EnableDeviceChecksItsGround) {
    FLASH_PROBE manager;
    EXPECT_REPORT(manager.enable_device(0), "m_flash_database != NULL");
    manager.m_flash_database = new RECORD[2];
    manager.m_flash_database[0].ini = manager.m_flash_database[1].ini = "nOnE";
    EXPECT_REPORT(manager.enable_device(0), "index < (m_flash_count + m_ini_count)");
    manager.m_flash_count = 1;
    EXPECT_TRUE(manager.enable_device(0));
    EXPECT_REPORT(manager.enable_device(1), "index < (m_flash_count + m_ini_count)");
    manager.m_ini_count = 1;  // slot 0 is held back
    EXPECT_TRUE(manager.enable_device(1));
    manager.m_flash_database[1].ini = "X";
    EXPECT_FALSE(manager.enable_device(1));
    manager.m_flash_database[1].ini.clear();
    EXPECT_REPORT(manager.enable_device(1), "!ini.empty()");
}

TEST_F(FlashLoading, TheSwitchIsOffByDefaultAndReadFromTheConfiguration) {
    FLASH_PROBE manager;
    manager.m_flash_database = new RECORD[1];
    manager.m_flash_database[0].ini = "X";
    manager.m_flash_count = 1;
    EXPECT_FALSE(manager.enable_device(0));
    const SETTING on("PGM_ALLOW_X", "ON");
    EXPECT_TRUE(manager.enable_device(0));
    const SETTING off("PGM_ALLOW_X", "off");
    EXPECT_FALSE(manager.enable_device(0));
}

TEST_F(FlashLoading, DefaultRowsAreCheckedInTheGivenRange) {
    FLASH_PROBE manager;
    manager.m_flash_database = new RECORD[3];
    manager.m_flash_database[0] = named("A");
    manager.m_flash_database[1] = named("A");
    manager.m_flash_database[2] = named("B");
    manager.m_flash_count = 2;
    manager.confirm_default_value(1);  // the row in slot 0 is outside
    EXPECT_REPORT(manager.confirm_default_value(0), "!one_default");
}

}  // namespace
