#include "command_fixture.h"
#include "flash_source.h"

// `flash check`: the format of a source table. The rows as rows are in flash_check_rows_test.cpp.

namespace {

PROCESS_RESULT check(const FLASH_SOURCE& source, bool json = false) {
    const SCRATCH scratch;
    const std::string file = scratch.write("table.csv", source.text());
    return run_command(json ? std::vector<std::string>{"--json", "flash", "check", file}
                            : std::vector<std::string>{"flash", "check", file});
}

/// The only fault of a table.
JSON only_fault(const FLASH_SOURCE& source) {
    const PROCESS_RESULT result = check(source, true);
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    const JSON document = json_of(result.output);
    const JSON& faults = document.at("faults");
    EXPECT_EQ(faults.size(), 1U) << result.output;
    EXPECT_EQ(faults.at(0).at("severity"), "fault");
    EXPECT_EQ(lines_of(result.errors).size(), 1 + document.at("hints").size()) << result.errors;
    return faults.at(0);
}

/// Where a cell begins in its line, counted from 1.
std::size_t column_of(FLASH_SOURCE source, std::size_t line, const std::string& cell) {
    return source.line_at(line).find(cell) + 1;
}

}  // namespace

TEST(flash_check, GoodTable) {
    const FLASH_SOURCE source = FLASH_SOURCE().row().row({{"device_name", "LONGER"}, {"memory_id", "0x19"}});
    const PROCESS_RESULT result = check(source, true);
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(result.errors, "");
    const JSON document = json_of(result.output);
    const std::size_t empty = flash_reference::empty_record_size();
    // Per row an empty record and the four texts, around them the head of 12 bytes and the mark at the end.
    EXPECT_EQ(document.at("records"), 2);
    EXPECT_EQ(document.at("payload_size"), 12 + (empty + 5 + 4 + 4 + 4) + (empty + 5 + 6 + 4 + 4) + 4);
    const std::vector<std::string> keys = keys_of(document);
    ASSERT_GE(keys.size(), 2U);
    EXPECT_EQ(keys[0], "records");
    EXPECT_EQ(keys[1], "payload_size");
    const PROCESS_RESULT text = check(source);
    EXPECT_EQ(text.exit_code, DONE);
    EXPECT_TRUE(contains(text.output, "2 records")) << text.output;
}

TEST(flash_check, ShippedTableHasNoFault) {
    const std::string file = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
    std::size_t lines = 0;
    for (const std::string& line : lines_of(read_file(file))) {
        lines += line.find_first_not_of(" \t\r") != std::string::npos ? 1U : 0U;
    }
    const PROCESS_RESULT result = run_command({"--json", "flash", "check", file});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_of(result.output).at("records"), lines - 8);
}

TEST(flash_check, RefusalTellsEverything) {
    FLASH_SOURCE source = FLASH_SOURCE().row({{"aai_mode", "maybe"}, {"device_name", "FAULTY"}});
    const std::size_t column = column_of(source, 9, "maybe");
    const JSON fault = only_fault(source);
    EXPECT_EQ(fault.at("line"), 9);
    EXPECT_EQ(fault.at("column"), column);
    EXPECT_EQ(fault.at("device_name"), "FAULTY");
    EXPECT_EQ(fault.at("member"), "aai_mode");
    EXPECT_EQ(fault.at("cell"), "maybe");
    EXPECT_EQ(fault.at("condition"), R"(string == "FALSE" || string == "TRUE")");
    EXPECT_EQ(fault.at("expected"), "TRUE or FALSE");

    const PROCESS_RESULT result = check(source);
    EXPECT_TRUE(contains(result.errors, "table.csv:9:" + std::to_string(column) + ": fault: ")) << result.errors;
    expect_failure(result, INTERNAL_ERROR,
                   {"FAULTY", "aai_mode", "\"maybe\"", "TRUE or FALSE", R"(string == "FALSE" || string == "TRUE")"});
}

TEST(flash_check, EveryCellOfEveryRowIsChecked) {
    for (const flash_reference::COLUMN& column : flash_reference::COLUMNS) {
        const std::string type = column.type;
        if (type == "STL_STRING") {
            continue;  // no cell is a wrong text
        }
        SCOPED_TRACE(column.name);
        const FLASH_SOURCE source = FLASH_SOURCE().row().row({{"device_name", "OTHER"}, {column.name, "WRONG"}});
        const JSON fault = only_fault(source);
        EXPECT_EQ(fault.at("line"), 10);
        EXPECT_EQ(fault.at("column"), column_of(source, 10, "WRONG"));
        EXPECT_EQ(fault.at("member"), column.name);
        EXPECT_EQ(fault.at("condition"),
                  type == "bool" ? R"(string == "FALSE" || string == "TRUE")" : "Invalid string to integer conversion");
        EXPECT_NE(fault.at("expected"), "");
    }
}

TEST(flash_check, CellsThatAreRefused) {
    for (const char* cell : {"true", "false", "True", "1", "0", "TRUE.", "YES"}) {
        EXPECT_EQ(only_fault(FLASH_SOURCE().row({{"sdm_support", cell}})).at("cell"), cell);
    }
    for (const char* cell : {"-1", "+1", "1.5", "0x", "0xG", "FFh", "4294967296", "0x100000000", "ten"}) {
        EXPECT_EQ(only_fault(FLASH_SOURCE().row({{"device_bit_size", cell}})).at("cell"), cell);
        EXPECT_EQ(only_fault(FLASH_SOURCE().row({{"memory_id", cell}})).at("cell"), cell);
    }
}

TEST(flash_check, TypeRow) {
    const JSON fault = only_fault(FLASH_SOURCE().row().replace(1, "BYTE", "WORD"));
    EXPECT_EQ(fault.at("line"), 1);
    EXPECT_EQ(fault.at("member"), "memory_id");
    EXPECT_EQ(fault.at("cell"), "WORD");
    EXPECT_EQ(fault.at("condition"), "svec.at(i) == \"BYTE\"");
    EXPECT_EQ(only_fault(FLASH_SOURCE().row().replace(1, "bool", "BOOL")).at("condition"), "svec.at(i) == \"bool\"");
    EXPECT_EQ(only_fault(FLASH_SOURCE().row().replace(1, "STL_STRING", "stl_string")).at("condition"),
              "svec.at(i) == \"STL_STRING\"");
    EXPECT_EQ(only_fault(FLASH_SOURCE().row().replace(1, "DWORD", "BYTE")).at("condition"), "svec.at(i) == \"DWORD\"");
}

TEST(flash_check, NameRow) {
    const JSON fault = only_fault(FLASH_SOURCE().row().replace(2, "aai_mode", "aai-mode"));
    EXPECT_EQ(fault.at("line"), 2);
    EXPECT_EQ(fault.at("member"), "aai_mode");
    EXPECT_EQ(fault.at("cell"), "aai-mode");
    EXPECT_EQ(fault.at("condition"), "temp == m_name_list[i]");
    EXPECT_TRUE(contains(fault.at("expected"), "aai_mode"));
    EXPECT_EQ(check(FLASH_SOURCE().row().replace(2, "aai_mode", "AAI_Mode")).exit_code, DONE);
}

TEST(flash_check, NumberOfCells) {
    for (const std::size_t line : {1U, 2U, 5U, 6U, 7U, 9U}) {
        SCOPED_TRACE(line);
        FLASH_SOURCE longer = FLASH_SOURCE().row();
        longer.line_at(line) += ", more";
        const JSON fault = only_fault(longer);
        EXPECT_EQ(fault.at("line"), line);
        EXPECT_EQ(fault.at("condition"), "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
        EXPECT_TRUE(contains(fault.at("expected"), std::to_string(flash_reference::MEMBERS) + " cells")) << fault;
        EXPECT_TRUE(contains(fault.at("expected"), "34")) << fault;
        FLASH_SOURCE shorter = FLASH_SOURCE().row().row({{"device_name", "OTHER"}});
        shorter.line_at(line) = "a, b";
        EXPECT_EQ(only_fault(shorter).at("line"), line);
    }
    for (const std::size_t line : {3U, 4U, 8U}) {
        FLASH_SOURCE source = FLASH_SOURCE().row();
        source.line_at(line) = "anything at all, with any number of cells";
        EXPECT_EQ(check(source).exit_code, DONE) << line;
    }
}

TEST(flash_check, LinesAreCountedAsInTheFile) {
    FLASH_SOURCE source;
    source.line_at(2) = "\n  \t\r\n" + source.line_at(2);  // two blank lines, which do not count as header lines
    source.line("").line("   ").row({{"half_size", "?"}});
    EXPECT_EQ(only_fault(source).at("line"), 13);
}

TEST(flash_check, ColumnsAreCountedAsInTheFile) {
    FLASH_SOURCE source = FLASH_SOURCE().row({{"half_size", "?"}});
    source.line_at(9) = " \t ,, " + source.line_at(9) + " \r";
    EXPECT_EQ(only_fault(source).at("column"), column_of(source, 9, "?"));
}

TEST(flash_check, TableWithoutRows) {
    const JSON fault = only_fault(FLASH_SOURCE());
    EXPECT_EQ(fault.at("line"), 0);
    EXPECT_EQ(fault.at("condition"), "status && device_count > 0");
}

TEST(flash_check, FilesThatAreNoTable) {
    const SCRATCH scratch;
    for (const std::string& file : {scratch.write("empty", ""), scratch.write("blank", "\n \n")}) {
        const PROCESS_RESULT result = run_command({"flash", "check", file});
        expect_failure(result, INTERNAL_ERROR, {file, "status && device_count > 0"});
    }
    std::string noise;
    for (unsigned i = 0; i < 100000; ++i) {
        noise += static_cast<char>(i * 2654435761U >> 24);
    }
    EXPECT_EQ(run_command({"flash", "check", scratch.write("noise", noise)}).exit_code, INTERNAL_ERROR);
    const std::string program = scratch.write("program", read_file(std::string(TEST_COMMAND)).substr(0, 1U << 20U));
    EXPECT_EQ(run_command({"--json", "flash", "check", program}).exit_code, INTERNAL_ERROR);
}

TEST(flash_check, FilesThatCannotBeRead) {
    const SCRATCH scratch;
    const std::pair<std::string, std::string> files[]{{scratch.path("none.csv"), "there is no such file"},
                                                      {scratch.directory().string(), "it is a directory"}};
    for (const auto& [file, reason] : files) {
        const std::string message = ("the source table cannot be read, since " + reason).append(": ").append(file);
        for (const char* noun : {"flash", "profile"}) {
            expect_failure(run_command({noun, "check", file}), INTERNAL_ERROR, {message, "(argument CSV)"});
            const JSON error =
                json_failure(run_command({"--json", noun, "check", file}), INTERNAL_ERROR, "source_table_unreadable");
            EXPECT_EQ(error.at("path"), file);
            EXPECT_EQ(error.at("tried"), JSON::array({"argument CSV"}));
        }
    }
}

TEST(flash_check, AllFaultsOfTheFormatAtOnce) {
    FLASH_SOURCE source;
    source.row({{"device_name", "FIRST"}, {"half_size", "x"}, {"memory_id", "y"}})
        .line("too few")
        .row({{"device_name", "LAST"}, {"program_utime", "z"}})
        .replace(1, "bool", "BOOL")
        .replace(2, "mfc_id,", "mfc,");
    source.line_at(6) = "short";
    const PROCESS_RESULT result = check(source, true);
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    std::vector<std::pair<unsigned, std::string>> found;
    const JSON document = json_of(result.output);
    for (const JSON& fault : document.at("faults")) {
        found.emplace_back(fault.at("line").get<unsigned>(), fault.at("member").get<std::string>());
    }
    EXPECT_EQ(found, (std::vector<std::pair<unsigned, std::string>>{{1, "silicon_id"},
                                                                    {2, "mfc_id"},
                                                                    {6, ""},
                                                                    {9, "memory_id"},
                                                                    {9, "half_size"},
                                                                    {10, ""},
                                                                    {11, "program_utime"}}));
    EXPECT_EQ(lines_of(result.errors).size(), 8U);
}

TEST(flash_check, FaultsOfTheFormatDoNotHideThoseOfOtherRows) {
    const PROCESS_RESULT result = check(FLASH_SOURCE()
                                            .row({{"device_name", "FORMAT"}, {"half_size", "x"}})
                                            .row({{"device_name", "SECTOR"}, {"device_sector_byte", "65537"}}),
                                        true);
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, "half_size")) << result.errors;
    EXPECT_TRUE(contains(result.errors, "device_sector_byte")) << result.errors;
}
