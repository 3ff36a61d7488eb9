#include <filesystem>

#include "command_fixture.h"
#include "flash_source.h"

// `flash compile` and `flash dump`.

namespace {

namespace fs = std::filesystem;

using flash_reference::payload_of;
using flash_reference::record_of_data_row;

const std::string OLD = std::string(flash_reference::MAGIC) + "the old file";

}  // namespace

TEST(flash_compile, WritesThePackedDatabase) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.path("out.pcf");
    const PROCESS_RESULT result = run_command({"--json", "flash", "compile", csv, pcf});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_of(result.output),
              (JSON{{"records", 1}, {"payload_size", flash_reference::data_row_payload_size()}}));
    EXPECT_EQ(keys_of(json_of(result.output)), (std::vector<std::string>{"records", "payload_size"}));

    const std::string bytes = read_file(pcf);
    EXPECT_EQ(bytes.substr(0, 40), flash_reference::head());
    EXPECT_EQ(bytes.substr(bytes.size() - 2), std::string(2, '\0'));
    EXPECT_EQ(payload_of(pcf), flash_reference::payload({record_of_data_row()}));
    EXPECT_EQ(scratch.file_count(), 3U);
}

TEST(flash_compile, ForPeople) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const PROCESS_RESULT result = run_command({"flash", "compile", csv, scratch.path("out.pcf")});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(contains(result.output, std::to_string(flash_reference::data_row_payload_size()))) << result.output;
}

TEST(flash_compile, ReplacesAnOlderDatabase) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.write("out.pcf", OLD);
    fs::permissions(pcf, fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
    const fs::perms before = fs::status(pcf).permissions();
    ASSERT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    EXPECT_EQ(payload_of(pcf), flash_reference::payload({record_of_data_row()}));
    EXPECT_EQ(fs::status(pcf).permissions(), before);
    EXPECT_EQ(scratch.file_count(), 3U);
}

TEST(flash_compile, WarningsDoNotStopIt) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row({{"die_count", "0"}}).text());
    EXPECT_EQ(run_command({"flash", "compile", csv, scratch.path("out.pcf")}).exit_code, DONE);
    EXPECT_TRUE(fs::exists(scratch.path("out.pcf")));
}

TEST(flash_compile, RefusalLeavesTheOutputAlone) {
    const std::vector<std::string> tables{
        "",
        FLASH_SOURCE().text(),
        FLASH_SOURCE().row().line("too few").text(),
        FLASH_SOURCE().row().replace(1, "BYTE", "WORD").text(),
        FLASH_SOURCE().row().replace(2, "ini", "switch").text(),
        FLASH_SOURCE().row().row({{"device_name", "B"}, {"aai_mode", "true"}}).text(),
        FLASH_SOURCE().row({{"program_utime", "5ms"}}).text(),
        FLASH_SOURCE().row({{"device_sector_byte", "65537"}}).text(),
        FLASH_SOURCE().row({{"mfc_id_index", "2"}}).text(),
        FLASH_SOURCE().row({{"default_dev", "FALSE"}}).text(),
        FLASH_SOURCE().row().row({{"memory_id", "1"}}).text(),
        FLASH_SOURCE().row({{"device_name", std::string(256, 'x')}}).text(),
        FLASH_SOURCE().row({{"die_count", "257"}}).text(),
    };
    for (const std::string& table : tables) {
        SCOPED_TRACE(table);
        const SCRATCH scratch;
        const std::string csv = scratch.write("table.csv", table);
        const std::string pcf = scratch.write("out.pcf", OLD);
        expect_failure(run_command({"flash", "compile", csv, pcf}), INTERNAL_ERROR, {csv});
        json_failure(run_command({"--json", "flash", "compile", csv, scratch.path("new.pcf")}), INTERNAL_ERROR,
                     "table_refused");
        EXPECT_EQ(read_file(pcf), OLD);
        EXPECT_EQ(scratch.file_count(), 2U);
    }
}

TEST(flash_compile, RefusalTellsEverything) {
    const SCRATCH scratch;
    const std::string csv = scratch.write(
        "table.csv", FLASH_SOURCE().row().row({{"device_name", "B"}, {"aai_mode", "true"}, {"ini", "X"}}).text());
    expect_failure(run_command({"flash", "compile", csv, scratch.path("out.pcf")}), INTERNAL_ERROR,
                   {csv + ":10:", "aai_mode", "\"true\"", "TRUE or FALSE", R"(string == "FALSE" || string == "TRUE")",
                    "PGMDEV", "pgm/pgmdev/pgmdev_flash_manager"});
}

TEST(flash_compile, MissingSource) {
    const SCRATCH scratch;
    const std::string pcf = scratch.write("out.pcf", OLD);
    expect_failure(run_command({"flash", "compile", scratch.path("none.csv"), pcf}), INTERNAL_ERROR,
                   {"none.csv", "status && device_count > 0"});
    EXPECT_EQ(read_file(pcf), OLD);
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(flash_compile, OutputThatCannotBeWritten) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    fs::create_directory(scratch.path("directory"));
    for (const std::string& pcf : {scratch.path("none/out.pcf"), scratch.path("directory"), csv + "/out.pcf"}) {
        PROCESS process{{TEST_COMMAND, "flash", "compile", csv, pcf}, "", {}, scratch.directory()};
        expect_failure(run_process(process), INTERNAL_ERROR, {});
        EXPECT_EQ(scratch.file_count(), 1U) << pcf;
    }
}

TEST(flash_compile, NamesOfEveryKind) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("Ger\xC3\xA4te tabelle \xE6\x97\xA5.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.path("aus gabe \xF0\x9F\x90\xA6.pcf");
    EXPECT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "dump", pcf}).exit_code, DONE);
    EXPECT_EQ(scratch.file_count(), 3U);
}

TEST(flash_compile, ShippedDatabaseIsCompiledFromTheShippedTable) {
    const SCRATCH scratch;
    const std::string pcf = scratch.path("out.pcf");
    ASSERT_EQ(run_command({"flash", "compile", std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv", pcf}).exit_code,
              DONE);
    EXPECT_TRUE(read_file(pcf) == read_file(std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf"));
}

TEST(flash_dump, AllRecordsWhateverEnablesThem) {
    PGMDEV_SFL_FLASH_INFO rare = flash_reference::sample("RARE");
    rare.ini = "RARE";
    const FLASH_DATABASE database({rare, flash_reference::sample()});
    const PROCESS_RESULT result = run_command({"--json", "flash", "dump", database.file()});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_of(result.output),
              JSON::array({record_object(0, rare), record_object(1, flash_reference::sample())}));
    const PROCESS_RESULT text = run_command({"flash", "dump", database.file()});
    EXPECT_EQ(lines_of(text.output).size(), 3U);
    EXPECT_TRUE(contains(text.output, "RARE"));
}

TEST(flash_dump, SourceTableCompilesToTheSamePayload) {
    PGMDEV_SFL_FLASH_INFO odd = flash_reference::sample("odd;name\"with'marks#\xC3\xA4");
    odd.memory_id = odd.mfc_id_index = odd.die_count = 255;
    odd.device_bit_size = 0xFFFFFFF8;
    odd.device_sector_byte = 1;
    odd.program_utime = 0;
    odd.bulk_erase_time = 0xFFFFFFFF;
    odd.asc_voltage = std::string(255, 'v');
    PGMDEV_SFL_FLASH_INFO silicon = flash_reference::sample("SIGNATURE");
    silicon.silicon_id = true;
    const FLASH_DATABASE database({flash_reference::sample(), odd, silicon});

    const PROCESS_RESULT dumped = run_command({"flash", "dump", "--csv", database.file()});
    ASSERT_EQ(dumped.exit_code, DONE) << dumped.errors;
    const SCRATCH scratch;
    const std::string csv = scratch.write("dumped.csv", dumped.output);
    const PROCESS_RESULT compiled = run_command({"flash", "compile", csv, scratch.path("again.pcf")});
    ASSERT_EQ(compiled.exit_code, DONE) << compiled.errors;
    EXPECT_EQ(payload_of(scratch.path("again.pcf")),
              flash_reference::payload({flash_reference::sample(), odd, silicon}));
}

TEST(flash_dump, ShippedTableGoesRoundInACircle) {
    const std::string shipped = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";
    const PROCESS_RESULT dumped = run_command({"flash", "dump", "--csv", shipped});
    ASSERT_EQ(dumped.exit_code, DONE) << dumped.errors;
    const SCRATCH scratch;
    const std::string csv = scratch.write("dumped.csv", dumped.output);
    ASSERT_EQ(run_command({"flash", "compile", csv, scratch.path("again.pcf")}).exit_code, DONE);
    EXPECT_TRUE(payload_of(scratch.path("again.pcf")) == payload_of(shipped));
}

TEST(flash_dump, RecordThatNoCellCanHold) {
    for (const char* text : {"", "two words", "a,b", "tab\there", "line\nfeed", "\rreturn"}) {
        PGMDEV_SFL_FLASH_INFO record = flash_reference::sample();
        record.manufacturer_name = text;
        const FLASH_DATABASE database({flash_reference::sample("FINE"), record});
        expect_failure(run_command({"flash", "dump", "--csv", database.file()}), INTERNAL_ERROR,
                       {"record 1", "manufacturer_name"});
        EXPECT_EQ(run_command({"flash", "dump", database.file()}).exit_code, DONE);
    }
}

TEST(flash_dump, DamagedDatabases) {
    const SCRATCH scratch;
    const std::string payload = flash_reference::payload({flash_reference::sample()});
    const std::string good = flash_reference::file(payload);
    const auto with = [&](std::size_t position, const std::string& bytes) {
        return good.substr(0, position) + bytes + good.substr(position + bytes.size());
    };
    const auto with_size = [&](unsigned long long size) { return with(40, flash_reference::le32(size)); };
    const std::string no_zlib =
        "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";
    const std::vector<std::pair<std::string, std::string>> cases{
        {good.substr(0, 46), "file_size > (8 + 32 + 4 + 2)"},
        {with(8, "x"), "Mismatch ID between flash file and reader"},
        {with(39, "x"), "Mismatch ID between flash file and reader"},
        {with_size(0), "decompressed_count > 0 && original_count > 0"},
        {with_size(payload.size() - 1), no_zlib},
        {with_size(payload.size() + 1), "new_dcmp_size == original_count"},
        {with_size(0xFFFFFFFF), "new_dcmp_size == original_count"},
        {good.substr(0, good.size() - 4), no_zlib},
        {flash_reference::file(flash_reference::le32(2) + payload.substr(4)),
         "Mismatch version between flash file and reader"},
    };
    for (const auto& [bytes, condition] : cases) {
        expect_failure(run_command({"flash", "dump", scratch.write("bad.pcf", bytes)}), INTERNAL_ERROR,
                       {condition, "PGMDEV"});
        expect_failure(run_command({"flash", "dump", "--csv", scratch.path("bad.pcf")}), INTERNAL_ERROR, {condition});
    }
    const JSON missing = json_failure(run_command({"--json", "flash", "dump", scratch.path("none.pcf")}),
                                      INTERNAL_ERROR, "database_missing");
    EXPECT_TRUE(contains(missing.at("condition"), "FIO_FILE_SYSTEM::exists"));
    expect_failure(run_command({"flash", "dump", scratch.directory().string()}), INTERNAL_ERROR, {"input.good()"});
}

TEST(flash_dump, AnotherFileIsNoEmptyDatabase) {
    const SCRATCH scratch;
    std::string bytes = flash_reference::file(flash_reference::payload({flash_reference::sample()}));
    bytes[7] = 'X';
    const std::string file = scratch.write("programmer/pgm_flash.pcf", bytes);
    const std::string condition = "data[index++] == 'P' && data[index++] == 'G'";
    expect_failure(run_command({"flash", "dump", file}), INTERNAL_ERROR, {condition});
    const JSON other =
        json_failure(run_command({"--json", "flash", "dump", file}), INTERNAL_ERROR, "database_other_kind");
    EXPECT_TRUE(contains(other.at("condition"), condition));
    expect_failure(run_command({"flash", "dump", "--csv", file}), INTERNAL_ERROR, {condition});
}
