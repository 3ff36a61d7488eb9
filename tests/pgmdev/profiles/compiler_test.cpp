#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "dev.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "support/debug_messages.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// Compiling source tables.

namespace {

namespace ref = dev_info_reference;
using ref::CELLS;

constexpr const char* ROW_COUNT = "device_count == TOTAL_DATABASE_DEVICE";
constexpr const char* CELL_COUNT = "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER";

class DevInfoCompiler : public testing::Test {
protected:
    DevInfoCompiler() : m_installation(m_scratch.path("install")) { part_list("// part, device, ...\n"); }

    void part_list(const std::string& text) { m_scratch.write("install/h/pgm_parts.txt", text); }
    std::string source(const std::string& text) { return m_scratch.write("source.csv", text); }
    std::string output() { return m_scratch.path("out.pcf"); }
    std::string compile(const std::string& text) {
        const std::string path = source(text);
        DEV_INFO_PROBE manager;
        std::string report = report_of([&] { manager.generate_device_database(path, output()); });
        EXPECT_EQ(report == "(no report)", manager.get_device_database() != nullptr);
        return report;
    }
    std::string compile(const std::vector<CELLS>& rows) { return compile(ref::source(rows)); }

    /// Compiles a table with one cell of one row changed.
    std::string compile_with(std::size_t row, std::size_t column, const std::string& cell) {
        std::vector<CELLS> rows = ref::rows();
        rows[row][column] = cell;
        return compile(rows);
    }
    std::string body() {
        const std::string file = read_file(output());
        EXPECT_EQ(file.substr(0, 40), ref::head());
        EXPECT_EQ(file.substr(file.size() - 2), std::string(2, '\0'));
        unsigned long size = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            size |= static_cast<unsigned long>(static_cast<unsigned char>(file[40 + i])) << (8 * i);
        }
        return ref::inflated(file.substr(44, file.size() - 46), size);
    }

    SCRATCH m_scratch;
    INSTALL_DIRECTORY m_installation;
};

std::size_t column_of_kind(const std::string& kind) {
    std::size_t column = 4;
    while (ref::COLUMNS[column].kind != kind) {
        ++column;
    }
    return column;
}

TEST_F(DevInfoCompiler, WritesTheRecordsAndTheIndexTables) {
    std::vector<CELLS> rows = ref::rows();
    rows[5] = ref::sample("KESTREL");
    const auto device = static_cast<DEV_DEVICE_ENUM>(3);
    const std::string name = dstr_get_user_string(device);
    part_list("  // comment\n\nX " + name + ",f,3 - production file_c\nX " + name + " f 3 - production FILE_D\n");
    ASSERT_EQ(compile(rows), "(no report)");

    ref::TABLES tables;
    const DEV_PART_MANAGER manager;
    for (unsigned long family = 1; family <= 72; ++family) {
        tables.family[family] = family - 1;
    }
    for (int i = 1; i <= 990; ++i) {
        tables.device[static_cast<std::size_t>(i)] =
            i == 990 ? 72
            : i == 3 ? 76
                     : static_cast<unsigned long>(manager.get_family_of(static_cast<DEV_DEVICE_ENUM>(i)) - 1);
    }
    for (int part = 1; part < DEV_PART_MAX; ++part) {
        tables.part[static_cast<std::size_t>(part)] =
            part == DEV_PART_GENERIC ? 73 : tables.device[static_cast<std::size_t>(manager.get_device_of(part))];
    }
    EXPECT_EQ(body(), ref::records(rows) + ref::tables(tables));
    EXPECT_FALSE(std::filesystem::exists(m_scratch.path("install/outbox")));
}

TEST_F(DevInfoCompiler, TheManagerHoldsWhatItCompiled) {
    DEV_INFO_PROBE manager;
    manager.generate_device_database(source(ref::source(ref::rows())), output());
    const std::unique_ptr<PGMDEV_DEVICE_INFO> info(manager.get_db_by_family(DEV_FAMILY_HERON));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->family, DEV_FAMILY_HERON);
    EXPECT_REPORT(manager.generate_device_database(source(ref::source(ref::rows())), output()),
                  "m_device_database == NULL");
    EXPECT_NE(manager.get_device_database(), nullptr);
}

TEST_F(DevInfoCompiler, TheFirstPassTellsCountAndSize) {
    DEV_INFO_PROBE manager;
    DWORD count = 0;
    std::vector<CELLS> rows = ref::rows();
    EXPECT_EQ(manager.check_device_file(source(ref::source(rows)), count), ref::records(rows).size());
    EXPECT_EQ(count, 78U);
    rows[5] = ref::sample("KESTREL");
    rows[74][ref::PCF] = "A_LONGER_NAME";
    EXPECT_EQ(manager.check_device_file(source(ref::source(rows)), count), ref::records(rows).size());
    rows[40][ref::PCF] = "SECOND_KEY";
    EXPECT_REPORT(manager.check_device_file(source(ref::source(rows)), count), ROW_COUNT);
    EXPECT_EQ(count, 40U);
}

TEST_F(DevInfoCompiler, ThereAre78Rows) {
    std::vector<CELLS> rows = ref::rows();
    rows.pop_back();
    EXPECT_EQ(compile(rows), ROW_COUNT);
    rows = ref::rows();
    rows.push_back(ref::bare(ref::PCF, "FILE_E"));
    EXPECT_EQ(compile(rows), ROW_COUNT);
    EXPECT_EQ(compile(std::vector<CELLS>()), ROW_COUNT);
    EXPECT_EQ(compile(""), ROW_COUNT);
    DEV_INFO_PROBE manager;
    EXPECT_REPORT(manager.generate_device_database(m_scratch.path("missing.csv"), output()), ROW_COUNT);
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(DevInfoCompiler, EveryRowHasOneKey) {
    for (const std::size_t row : {0U, 40U, 77U}) {
        EXPECT_EQ(compile_with(row, ref::DEVICE, row == 72 ? "" : "GENERIC"), ROW_COUNT) << row;
    }
    std::vector<CELLS> rows = ref::rows();
    rows[3][ref::FAMILY] = "";
    EXPECT_EQ(compile(rows), ROW_COUNT);
    rows = ref::rows();
    rows.emplace_back(ref::MEMBERS);
    EXPECT_EQ(compile(rows), "status");  // 78 rows stand before it
}

TEST_F(DevInfoCompiler, TheTypeRowIsComparedExactly) {
    for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
        CELLS types = ref::type_row();
        types[i] = types[i] == "bool" ? "BOOL" : types[i] == "BYTE" ? "byte" : types[i] + " ";
        if (types[i].back() == ' ') {
            types[i].back() = 'x';
        }
        EXPECT_EQ(compile(ref::joined(types) + "\n"), "svec.at(i) == \"" + std::string(ref::COLUMNS[i].kind) + "\"");
    }
}

TEST_F(DevInfoCompiler, TheNameRowIsComparedInAnyCase) {
    std::string text = ref::source(ref::rows());
    const std::size_t begin = text.find('\n') + 1;
    const std::size_t end = text.find('\n', begin);
    const std::string names = text.substr(begin, end - begin);
    EXPECT_EQ(compile(text.replace(begin, end - begin, ref::in_capitals(names))), "(no report)");
    for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
        CELLS wrong = ref::name_row();
        wrong[i] += "_";
        EXPECT_EQ(compile(ref::joined(ref::type_row()) + "\n" + ref::joined(wrong)), "temp == m_db_name_list[i]");
    }
}

TEST_F(DevInfoCompiler, EveryLineHas86Cells) {
    const std::string types = ref::joined(ref::type_row());
    EXPECT_EQ(compile(types + ",x\n"), CELL_COUNT);
    EXPECT_EQ(compile(types + "\n" + ref::joined(ref::name_row()) + ","), CELL_COUNT);
    std::string text = ref::source(ref::rows());
    EXPECT_EQ(compile(text + "x"), CELL_COUNT);
    const std::size_t comma = text.rfind(",,");
    EXPECT_EQ(compile(text.substr(0, comma) + text.substr(comma + 1)), CELL_COUNT);
    EXPECT_EQ(compile(std::string(text).replace(comma, 1, ", ")), CELL_COUNT);  // the blank ends an empty cell
    EXPECT_EQ(compile(std::string(text).replace(comma, 1, "\t")), "(no report)");
}

TEST_F(DevInfoCompiler, WhiteSpaceAroundLinesAndBlankLinesDoNotCount) {
    std::vector<CELLS> rows = ref::rows();
    for (CELLS& row : rows) {
        row.back() = "FALSE";  // trimming would take trailing tabs
    }
    std::string text = "\n \t\r\n";
    for (const char c : ref::source(rows)) {
        text += c == '\n' ? " \r\n\v\n" : std::string(1, c);
    }
    EXPECT_EQ(compile(text.substr(0, text.size() - 5)), "(no report)");
    EXPECT_EQ(body().substr(0, 12), ref::le32(1) + ref::le32(78) + ref::le32(ref::MEMBERS));
}

TEST_F(DevInfoCompiler, LinesHaveAtMost10240Characters) {
    std::string text = ref::source(ref::rows());
    const std::size_t last = text.rfind('\n', text.size() - 2) + 1;
    const std::size_t length = text.size() - 1 - last;
    text.insert(last, std::string(10240 - length, ' '));
    EXPECT_EQ(compile(text), "(no report)");
    text.insert(last, " ");
    EXPECT_EQ(compile(text), "line.size() <= 10240");
}

TEST_F(DevInfoCompiler, CellsThatAreNoValues) {
    EXPECT_EQ(compile_with(5, ref::FAMILY, "Kestrel"), "found");
    EXPECT_EQ(compile_with(5, ref::FAMILY, "DODO"), "found");
    EXPECT_EQ(compile_with(72, ref::DEVICE, "AVOR20"), "found");
    EXPECT_EQ(compile_with(73, ref::PART, "generic"), "found");
    EXPECT_EQ(compile_with(5, column_of_kind("ENUM"), "NPCF_BLOCK"), "found");
    for (const char* cell : {"true", "1", "Yes"}) {
        EXPECT_EQ(compile_with(5, column_of_kind("bool"), cell),
                  R"(string == "" || string == "FALSE" || string == "TRUE")");
    }
    for (const char* kind : {"BYTE", "WORD", "DWORD"}) {
        for (const char* cell : {"-1", "+1", "0x", "1.5", "ten", "4294967296", "0x100000000"}) {
            EXPECT_EQ(compile_with(5, column_of_kind(kind), cell), "Invalid string to integer conversion") << cell;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(DevInfoCompiler, NumbersKeepTheirLowBits) {
    std::vector<CELLS> rows = ref::rows();
    rows[5][column_of_kind("BYTE")] = "511";
    rows[5][column_of_kind("WORD")] = "0x12345";
    rows[5][column_of_kind("DWORD")] = "0XFFFFFFFF";
    ASSERT_EQ(compile(rows), "(no report)");
    DEV_INFO_PROBE manager;
    manager.initialize_device_database(output());
    const std::vector<std::string> values = ref::values(manager.get_device_database()[5]);
    EXPECT_EQ(values[column_of_kind("BYTE")], "255");
    EXPECT_EQ(values[column_of_kind("WORD")], std::to_string(0x2345));
    EXPECT_EQ(values[column_of_kind("DWORD")], "4294967295");
}

TEST_F(DevInfoCompiler, TextsThatNoReaderCanReadBackAreRefused) {
    EXPECT_EQ(compile_with(5, column_of_kind("STL_STRING"), std::string(255, 'x')), "(no report)");
    EXPECT_EQ(compile_with(5, column_of_kind("STL_STRING"), std::string(256, 'x')), "type == PGMDEV_MANAGER_BOOL");
}

TEST_F(DevInfoCompiler, AMissingFamilyIsReplacedAndAnnounced) {
    std::vector<CELLS> rows = ref::rows();
    rows[16] = ref::bare(ref::PCF, "FILE_E");
    rows[41] = ref::bare(ref::PCF, "FILE_F");
    ASSERT_EQ(compile(rows), "(no report)");
    DEV_INFO_PROBE manager;
    manager.initialize_device_database(output());
    EXPECT_EQ(manager.m_family_table[17], 1U);  // not the generic record, which is 71
    EXPECT_EQ(manager.m_family_table[42], 1U);
    EXPECT_EQ(manager.m_family_table[72], 71U);

    std::vector<std::string> messages;
    for (const auto& entry : std::filesystem::directory_iterator(m_scratch.path("install/outbox"))) {
        messages.push_back(read_file(entry.path()));
    }
    std::sort(messages.begin(), messages.end());
    const auto message = [](const std::string& family) {
        return "To: 0, 3, 4\nSubject: PGMDEV Dev Info Manager notification\n\nMissing family " + family +
               " from Dev Info CSV.\n\nForcing this family to use Generic database.\n\n"
               "Please add the family support as soon as possible.\n";
    };
    EXPECT_EQ(messages, (std::vector<std::string>{message("CORNCRAKE (17)"), message("KITE (42)")}));
}

TEST_F(DevInfoCompiler, AnOutboxThatCannotBeWrittenDoesNotStopCompiling) {
    const SETTING outbox("TESSARY_OUTBOX_DIR", m_scratch.write("file", ""));
    std::vector<CELLS> rows = ref::rows();
    rows[16] = ref::bare(ref::PCF, "FILE_E");
    const DEBUG_MESSAGES messages;
    EXPECT_EQ(compile(rows), "(no report)");
    ASSERT_EQ(messages.all().size(), 1U);
    EXPECT_EQ(messages.all()[0].find("PGMDEV 1 Not sent: Missing family CORNCRAKE (17) from Dev Info CSV.\n\n"), 0U);
}

TEST_F(DevInfoCompiler, TheGenericFamilyMustNotBeMissing) {
    std::vector<CELLS> rows = ref::rows();
    rows[71] = ref::bare(ref::PCF, "FILE_E");
    EXPECT_EQ(compile(rows), "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC");
    EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_F(DevInfoCompiler, ThePartList) {
    part_list("one two three four five six\n");
    EXPECT_EQ(compile(ref::rows()), "svec.size() >= 7");
    part_list(",,,\n");
    EXPECT_EQ(compile(ref::rows()), "svec.size() >= 7");
    std::filesystem::remove(m_scratch.path("install/h/pgm_parts.txt"));
    EXPECT_EQ(compile(ref::rows()), "status");
    EXPECT_FALSE(std::filesystem::exists(output()));

    const std::string part = dstr_get_user_string(5);
    const std::string device = dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(7));
    part_list("// comment\n" + part + ", " + device + " a b c d FILE_X more\nnobody nothing a b c d FILE_Y\n");
    DEV_INFO_PROBE manager;
    manager.parse_pgm_parts();
    ASSERT_EQ(manager.m_pgm_parts.size(), 2U);
    EXPECT_EQ(manager.m_pgm_parts[0]->part, 5);
    EXPECT_EQ(manager.m_pgm_parts[0]->device, 7);
    EXPECT_EQ(manager.m_pgm_parts[0]->pcf, "FILE_X");
    EXPECT_EQ(manager.m_pgm_parts[1]->part, DEV_PART_INVALID);
}

TEST_F(DevInfoCompiler, OnlyALineThatBeginsWithTheMarkIsAComment) {
    part_list("\t // a b c d e f g\n,// a b c d FILE_X\n, // a b\n");
    DEV_INFO_PROBE manager;
    EXPECT_REPORT(manager.parse_pgm_parts(), "svec.size() >= 7");
    part_list("\t // a b c d e f g\n,// a b c d e FILE_X\n");
    manager.parse_pgm_parts();
    ASSERT_EQ(manager.m_pgm_parts.size(), 1U);
    EXPECT_EQ(manager.m_pgm_parts[0]->pcf, "FILE_X");
}

TEST_F(DevInfoCompiler, TablesAreRefilledInPlace) {
    DEV_INFO_PROBE manager;
    const DEV_INFO_PROBE copy(manager);
    const DWORD* const families = manager.m_family_table;
    const DWORD* const parts = manager.m_part_table;
    manager.generate_device_database(source(ref::source(ref::rows())), output());
    EXPECT_EQ(manager.m_family_table, families);
    EXPECT_EQ(families[6], 5U);
    EXPECT_EQ(copy.m_part_table, parts);
    EXPECT_NE(parts[1], 0xFFFFFFFF);
}

TEST_F(DevInfoCompiler, ANumberThatIsNoneIsReportedByTheHost) {
    std::vector<CELLS> rows = ref::rows();
    rows[5][column_of_kind("WORD")] = "ten";
    const REPORTS reports;
    DEV_INFO_PROBE manager;
    EXPECT_THROW(manager.generate_device_database(source(ref::source(rows)), output()), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].module, "PGM_COMMON");
}

static_assert(std::is_convertible_v<bool, PGMDEV_DEV_INFO_MANAGER>);

TEST_F(DevInfoCompiler, AFailureLeavesAManagerThatCanTryAgain) {
    DEV_INFO_PROBE manager;
    const std::string csv = source(ref::source(ref::rows()));
    EXPECT_REPORT(manager.generate_device_database(csv, m_scratch.path("no/such/directory.pcf")), "status");
    EXPECT_EQ(manager.get_device_database(), nullptr);
    EXPECT_EQ(manager.m_family_table[1], 0xFFFFFFFF);
    EXPECT_TRUE(manager.m_pgm_parts.empty());
    manager.generate_device_database(csv, output());
    EXPECT_TRUE(std::filesystem::exists(output()));
}

TEST_F(DevInfoCompiler, ARefusalLeavesAnOldOutputAsItWas) {
    m_scratch.write("out.pcf", "old");
    EXPECT_EQ(compile_with(5, column_of_kind("bool"), "x"), R"(string == "" || string == "FALSE" || string == "TRUE")");
    EXPECT_EQ(read_file(output()), "old");
    EXPECT_EQ(compile(ref::rows()), "(no report)");
    EXPECT_EQ(read_file(output()).substr(0, 8), "PGMIO_DM");
}

TEST_F(DevInfoCompiler, DumpAndPrintTableWriteIntoBareBuffers) {
    DEV_INFO_PROBE manager;
    const CELLS row = ref::sample();
    std::vector<BYTE> buffer(1000);
    BYTE* data = buffer.data();
    DWORD index = 2;
    manager.dump_to_database(&data, index, row);
    EXPECT_EQ(std::string(buffer.begin() + 2, buffer.begin() + index) + "END1", ref::record(row));
    EXPECT_REPORT(manager.dump_to_database(&data, index, CELLS(ref::MEMBERS - 1)), CELL_COUNT);

    buffer.resize(manager.get_table_size());
    data = buffer.data();
    index = 0;
    EXPECT_REPORT(manager.print_table(&data, index), "m_device_database != NULL");
    std::string body = ref::records(ref::rows());
    manager.parse_database(reinterpret_cast<unsigned char*>(body.data()), true);
    manager.print_table(&data, index);
    EXPECT_EQ(index, manager.get_table_size());
    EXPECT_EQ(manager.m_family_table[6], 5U);
    EXPECT_EQ(buffer[5 + 6 * 4], 5);
}

}  // namespace
