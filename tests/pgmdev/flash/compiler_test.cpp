#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>

#include "pgmdev/flash/probe.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev_flash_table.h"
#include "support/punctuated_locale.h"
#include "support/reports.h"
#include "support/scratch.h"

// Compiling source tables.

namespace {

namespace ref = flash_reference;
using ref::CELLS;

constexpr const char* COUNT = "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER";

class FlashCompiler : public testing::Test {
protected:
    std::string source(const std::string& text) { return m_scratch.write("flash.csv", text); }
    std::string output() { return m_scratch.path("flash.pcf"); }
    std::string compile(const std::string& text) {
        const std::string path = source(text);
        return report_of([&] { m_manager.generate_flash_database(path, output()); });
    }
    std::string compile_lines(const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        return compile(text);
    }
    /// The payload of the file that was compiled, of that many bytes.
    std::string payload(std::size_t size) {
        std::string found = ref::payload_of(output());
        EXPECT_EQ(found.size(), size);
        return found;
    }

    SCRATCH m_scratch;
    FLASH_PROBE m_manager;
};

TEST_F(FlashCompiler, WritesTheWholeFile) {
    ASSERT_EQ(compile(ref::table({ref::data_row()})), "(no report)");
    const PGMDEV_SFL_FLASH_INFO r = ref::record_of_data_row();
    EXPECT_EQ(payload(ref::data_row_payload_size()), ref::payload({r}));
    m_manager.initialize_flash_database(output());
    EXPECT_EQ(m_manager.get_flash_database()[0], r);
}

TEST_F(FlashCompiler, TheFirstPassTellsCountAndSize) {
    DWORD count = 99;
    EXPECT_EQ(m_manager.check_flash_file(source(ref::table({ref::data_row(), ref::data_row()})), count),
              16U + 2 * (flash_reference::empty_record_size() + 17));
    EXPECT_EQ(count, 2U);
    EXPECT_REPORT(m_manager.check_flash_file(source(ref::table({})), count), "status && device_count > 0");
    EXPECT_EQ(count, 0U);
}

TEST_F(FlashCompiler, ReportsNameThisClass) {
    const REPORTS reports;
    EXPECT_THROW(m_manager.generate_flash_database(source(""), output()), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_flash_manager");
    EXPECT_GT(reports.all()[0].line, 0);
}

TEST_F(FlashCompiler, ASourceWithoutDataRowsOrThatCannotBeReadIsRefused) {
    EXPECT_EQ(compile(ref::table({})), "status && device_count > 0");
    EXPECT_EQ(compile(""), "status && device_count > 0");
    EXPECT_REPORT(m_manager.generate_flash_database(m_scratch.path("missing.csv"), output()),
                  "status && device_count > 0");
    EXPECT_REPORT(m_manager.generate_flash_database(m_scratch.directory().string(), output()),
                  "status && device_count > 0");
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(FlashCompiler, BlankLinesDoNotCount) {
    std::string text = "\n \t \r\n";
    for (const std::string& line : ref::header()) {
        text += " \t" + line + " \r\n\n\v\f\n";
    }
    text += "\n\n" + ref::joined(ref::data_row());  // the last line without a line feed
    EXPECT_EQ(compile(text), "(no report)");
    EXPECT_EQ(payload(ref::data_row_payload_size()).substr(4, 4), ref::le32(1));
}

TEST_F(FlashCompiler, BlanksTabsAndCommasSeparateInAnyNumber) {
    std::vector<std::string> lines = ref::header();
    lines.push_back(",," + ref::joined(ref::data_row(), " ,\t, ") + ",,");
    EXPECT_EQ(compile_lines(lines), "(no report)");
    payload(ref::data_row_payload_size());
}

TEST_F(FlashCompiler, TheTypeRowIsComparedExactly) {
    const std::vector<std::pair<const char*, const char*>> wrong{
        {"STL_STRING", "stl_string"}, {"bool", "BOOL"}, {"BYTE", "byte"}, {"BYTE", "WORD"}, {"DWORD", "Dword"}};
    for (const auto& [type, spelling] : wrong) {
        for (std::size_t i = 0; i < flash_reference::MEMBERS; ++i) {
            if (ref::type_row()[i] == type) {
                std::vector<std::string> lines = ref::header();
                lines[0] = ref::joined(ref::row_with(i, spelling, ref::type_row()));
                lines.push_back(ref::joined(ref::data_row()));
                EXPECT_EQ(compile_lines(lines), std::string("svec.at(i) == \"") + type + "\"") << i;
            }
        }
    }
}

TEST_F(FlashCompiler, TheNameRowIsComparedWithoutCase) {
    for (std::size_t i = 0; i < flash_reference::MEMBERS; ++i) {
        std::vector<std::string> lines = ref::header();
        std::string upper = ref::name_row()[i];
        for (char& c : upper) {
            c = static_cast<char>(std::toupper(c));
        }
        lines[1] = ref::joined(ref::row_with(i, upper, ref::name_row()));
        lines.push_back(ref::joined(ref::data_row()));
        EXPECT_EQ(compile_lines(lines), "(no report)");
        lines[1] = ref::joined(ref::row_with(i, upper + "X", ref::name_row()));
        EXPECT_EQ(compile_lines(lines), "temp == m_name_list[i]");
    }
}

TEST_F(FlashCompiler, HeaderLinesHaveTheirNumberOfCells) {
    for (std::size_t line = 0; line < 9; ++line) {
        for (const std::size_t cells : {std::size_t{1}, ref::MEMBERS - 1, ref::MEMBERS + 1}) {
            std::vector<std::string> lines = ref::header();
            lines.push_back(ref::joined(ref::data_row()));
            lines[line] = ref::joined(CELLS(cells, "x"));
            const bool is_free = line == 2 || line == 3 || line == 7;
            EXPECT_EQ(compile_lines(lines), is_free ? "(no report)" : COUNT) << line << " " << cells;
        }
    }
}

TEST_F(FlashCompiler, EachCellIsCheckedByItsType) {
    for (std::size_t i = 0; i < flash_reference::MEMBERS; ++i) {
        const std::string type = ref::type_row()[i];
        if (type == "bool") {
            for (const char* cell : {"true", "1", "0", "False", "YES"}) {
                EXPECT_EQ(compile(ref::table({ref::row_with(i, cell)})), R"(string == "FALSE" || string == "TRUE")");
            }
        } else if (type != "STL_STRING") {
            for (const char* cell : {"x", "-1", "0x", "4294967296", "1.5"}) {
                EXPECT_EQ(compile(ref::table({ref::row_with(i, cell)})), "Invalid string to integer conversion");
            }
        }
    }
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(FlashCompiler, ANumberThatIsNoneIsReportedByTheHost) {
    std::vector<std::string> said;
    const MSG_DEBUG_SINK previous = msg_set_debug_sink(
        [&](const std::string& logger, int, const std::string& text) { said.push_back(logger + " " + text); });
    const REPORTS reports;
    const std::string table = source(ref::table({ref::data_row(), ref::row_with(3, "0x")}));
    EXPECT_THROW(m_manager.generate_flash_database(table, output()), MSG_INTERNAL_ERROR_EXCEPTION);
    msg_set_debug_sink(previous);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, "Invalid string to integer conversion");
    EXPECT_EQ(reports.all()[0].module, "PGM_COMMON");
    ASSERT_EQ(said.size(), 1U);
    EXPECT_EQ(said[0].substr(0, said[0].find(", ")),
              "PGMDEV " + table + ":10:18: fault: row CHIP: member memory_id: found \"0x\"");
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(FlashCompiler, ANumberThatIsNoneIsRefusedAlsoUnderAReporterThatReturns) {
    const auto previous = MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT&) {});
    const std::string table = source(ref::table({ref::row_with(3, "x")}));
    EXPECT_THROW(m_manager.generate_flash_database(table, output()), MSG_INTERNAL_ERROR_EXCEPTION);
    MSG_INTERNAL_ERROR::set_handler(previous);
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(FlashCompiler, TheFirstPassComesFirst) {
    EXPECT_EQ(compile(ref::table({ref::row_with(2, "maybe"), CELLS(32, "x")})), COUNT);
    EXPECT_EQ(compile(ref::table({ref::row_with(2, "maybe"), ref::row_with(3, "x")})),
              R"(string == "FALSE" || string == "TRUE")");
    EXPECT_EQ(compile(ref::table({ref::row_with(3, "x", ref::row_with(10, "maybe"))})),
              "Invalid string to integer conversion");
}

TEST_F(FlashCompiler, NumbersKeepTheirLowBytes) {
    ASSERT_EQ(compile(ref::table(
                  {ref::row_with(3, "0x1FF", ref::row_with(ref::column_of("device_bit_size"), "0xFFFFFFFF"))})),
              "(no report)");
    m_manager.initialize_flash_database(output());
    EXPECT_EQ(m_manager.get_flash_database()[0].memory_id, 0xFF);
    EXPECT_EQ(m_manager.get_flash_database()[0].device_bit_size, 0xFFFFFFFF);
}

TEST_F(FlashCompiler, ATextOf256CharactersIsWrittenWithTheLowByteOfItsLength) {
    ASSERT_EQ(compile(ref::table({ref::row_with(0, std::string(260, 'M'))})), "(no report)");
    EXPECT_EQ(payload(ref::data_row_payload_size() - 5 + 260).substr(12, 6), "\2\4MMMM");
    EXPECT_REPORT(m_manager.initialize_flash_database(output()), "type == PGMDEV_MANAGER_STRING");
    ASSERT_EQ(compile(ref::table({ref::row_with(0, std::string(255, 'M'))})), "(no report)");
    m_manager.initialize_flash_database(output());
    EXPECT_EQ(m_manager.get_flash_database()[0].manufacturer_name, std::string(255, 'M'));
}

TEST_F(FlashCompiler, LinesMayBeLong) {
    std::vector<std::string> lines = ref::header();
    lines[2] = std::string(1'000'000, 'x');
    lines.push_back(ref::joined(ref::data_row(), std::string(100'000, ' ')));
    EXPECT_EQ(compile_lines(lines), "(no report)");
}

TEST_F(FlashCompiler, ARefusedTableLeavesTheOutputAlone) {
    m_scratch.write("flash.pcf", "old");
    EXPECT_EQ(compile(ref::table({ref::row_with(2, "maybe")})), R"(string == "FALSE" || string == "TRUE")");
    EXPECT_EQ(read_file(output()), "old");
    EXPECT_EQ(m_scratch.file_count(), 2U);  // and nothing beside it
    EXPECT_EQ(compile(ref::table({ref::data_row()})), "(no report)");
    EXPECT_EQ(read_file(output()).substr(0, 8), "PGMIO_FM");
    EXPECT_EQ(m_scratch.file_count(), 2U);
}

TEST_F(FlashCompiler, AnOutputThatCannotBeWrittenReportsStatus) {
    const std::string table = source(ref::table({ref::data_row()}));
    EXPECT_REPORT(m_manager.generate_flash_database(table, m_scratch.path("no/such/directory.pcf")), "status");
    EXPECT_REPORT(m_manager.generate_flash_database(table, m_scratch.directory().string()), "status");
    EXPECT_EQ(m_scratch.file_count(), 1U);
}

TEST_F(FlashCompiler, ARefusalSaysWhereOnTheDebugChannel) {
    std::vector<std::string> debug;
    msg_set_debug_sink([&](const std::string& logger, int level, const std::string& text) {
        debug.push_back(logger + "/" + std::to_string(level) + "/" + text);
    });
    const std::string path = source("\n" + ref::table({ref::data_row(), ref::row_with(2, "maybe")}));
    EXPECT_REPORT(m_manager.generate_flash_database(path, output()), R"(string == "FALSE" || string == "TRUE")");
    msg_set_debug_sink(nullptr);
    ASSERT_EQ(debug.size(), 1U);
    EXPECT_EQ(debug[0], "PGMDEV/1/" + path +
                            ":11:12: fault: row CHIP: member silicon_id: found \"maybe\", expected TRUE or FALSE "
                            "[string == \"FALSE\" || string == \"TRUE\"]");
}

TEST_F(FlashCompiler, WritesOneRowForDerivingClasses) {
    std::vector<BYTE> buffer(200);
    BYTE* data = buffer.data();
    DWORD index = 1;
    m_manager.dump_to_database(&data, index, ref::data_row());
    EXPECT_EQ(index, 1U + flash_reference::empty_record_size() - 4 + 17);  // without the marker
    EXPECT_EQ(std::string(buffer.begin() + 1, buffer.begin() + 14), "\2\5Maker\2\4CHIP");
    EXPECT_REPORT(m_manager.dump_to_database(&data, index, CELLS(32, "x")), "svec.size() == TOTAL_DATABASE_MEMBER");
    EXPECT_REPORT(m_manager.dump_to_database(&data, index, ref::row_with(1, "")), "string.size() > 0");
    EXPECT_REPORT(m_manager.dump_to_database(&data, index, ref::row_with(3, "")), "string.size() > 0");
}

TEST_F(FlashCompiler, PrintsARecordOfADerivingClass) {
    EXPECT_REPORT(m_manager.print_database(0), "m_flash_database != NULL");
    m_manager.m_flash_database = new PGMDEV_SFL_FLASH_INFO[1];
    testing::internal::CaptureStdout();
    std::cout << std::setw(30);
    m_manager.print_database(0);
    EXPECT_EQ(std::cout.width(0), 30);  // is for the program's own next output
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Flash Manager Debug 0\n"
              "\t  0 0 0 0 0 0 0 0 0"                           // two names, members 3 to 11
              "  0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");  // the switch, members 13 to 32, the voltage
}

TEST_F(FlashCompiler, TextsHaveNoSeparatorsInNumbers) {
    const PUNCTUATED_LOCALE locale;
    m_manager.m_flash_database = new PGMDEV_SFL_FLASH_INFO[1];
    m_manager.m_flash_database[0].device_bit_size = 134217728;
    testing::internal::CaptureStdout();
    m_manager.print_database(0);
    EXPECT_NE(testing::internal::GetCapturedStdout().find(" 134217728 "), std::string::npos);

    PGMDEV_TABLE_FAULT fault;
    fault.line = 12345;
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(fault, "table.csv"), "table.csv:12345: fault: expected ");
}

}  // namespace
