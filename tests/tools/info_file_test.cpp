#include <filesystem>
#include <memory>

#include "command_fixture.h"
#include "flash_source.h"
#include "pgm_common.h"
#include "pgmdev_version.h"

// The text beside a packed database.

namespace {

namespace fs = std::filesystem;

std::string sha256(const std::string& bytes) {
    const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes.data(), bytes.size(), 32));
    std::string text;
    for (std::size_t i = 0; i < 32; ++i) {
        text += "0123456789abcdef"[std::size_t{digest[i]} >> 4];
        text += "0123456789abcdef"[std::size_t{digest[i]} & 0xF];
    }
    return text;
}

/// A compiled database with its source.
struct COMPILED {
    COMPILED() : csv(scratch.write("table.csv", FLASH_SOURCE().row().text())), pcf(scratch.path("out.pcf")) {
        EXPECT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    }
    std::string info() const { return read_file(pcf + ".info"); }
    JSON origin() const {
        const JSON answer = json_of(run_command({"--json", "flash", "verify", pcf}).output);
        for (const JSON& check : answer.at("checks")) {
            if (check.at("check") == "origin") {
                return check;
            }
        }
        return {};
    }

    SCRATCH scratch;
    std::string csv;
    std::string pcf;
};

}  // namespace

TEST(info_file, TellsWhatWasCompiledFromWhat) {
    const COMPILED compiled;
    EXPECT_EQ(compiled.info(),
              "database = out.pcf\n"
              "database_sha256 = " +
                  sha256(read_file(compiled.pcf)) +
                  "\n"
                  "source = table.csv\n"
                  "source_sha256 = " +
                  sha256(read_file(compiled.csv)) +
                  "\n"
                  "records = 1\n"
                  "payload_size = " +
                  std::to_string(flash_reference::data_row_payload_size()) +
                  "\n"
                  "compiled_by = pgmdev " +
                  PGMDEV_VERSION::library() + "\n");
}

TEST(info_file, VerifyTellsTheOrigin) {
    const COMPILED compiled;
    const PROCESS_RESULT result = run_command({"--json", "flash", "verify", compiled.pcf});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_of(result.output).at("compiled_from"),
              (JSON{{"database", "out.pcf"},
                    {"database_sha256", sha256(read_file(compiled.pcf))},
                    {"source", "table.csv"},
                    {"source_sha256", sha256(read_file(compiled.csv))},
                    {"records", 1},
                    {"payload_size", flash_reference::data_row_payload_size()},
                    {"compiled_by", "pgmdev " + PGMDEV_VERSION::library()}}));
    EXPECT_EQ(compiled.origin().at("outcome"), "passed");
}

TEST(info_file, NoneIsNoError) {
    const COMPILED compiled;
    fs::remove(compiled.pcf + ".info");
    const PROCESS_RESULT result = run_command({"--json", "flash", "verify", compiled.pcf});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_TRUE(json_of(result.output).at("compiled_from").is_null());
    EXPECT_EQ(compiled.origin().at("outcome"), "skipped");
    EXPECT_EQ(compiled.origin().at("detail"), compiled.pcf + ".info does not exist");
}

TEST(info_file, SilentDamageShows) {
    const COMPILED compiled;
    std::string other = flash_reference::file(flash_reference::payload({flash_reference::sample("OTHER")}));
    compiled.scratch.write("out.pcf", other);  // sound, but another database
    EXPECT_EQ(run_command({"flash", "verify", compiled.pcf}).exit_code, INTERNAL_ERROR);
    EXPECT_EQ(compiled.origin().at("outcome"), "failed");
    EXPECT_TRUE(contains(compiled.origin().at("detail").get<std::string>(), sha256(other)));
}

TEST(info_file, FitsTheOldAndTheNewDatabaseWhileOneIsReplaced) {
    const COMPILED compiled;
    const std::string database = read_file(compiled.pcf);
    const std::string other = flash_reference::file(flash_reference::payload({flash_reference::sample("OTHER")}));
    // As it is between the two steps of replacing, and when something ends the command there.
    compiled.scratch.write("out.pcf.info", compiled.info() + "replaces_sha256 = " + sha256(other) + "\n");
    EXPECT_EQ(compiled.origin().at("outcome"), "passed");

    compiled.scratch.write("out.pcf", other);
    const PROCESS_RESULT older = run_command({"--json", "flash", "verify", compiled.pcf});
    EXPECT_EQ(older.exit_code, DONE) << older.errors;
    EXPECT_TRUE(json_of(older.output).at("compiled_from").is_null()) << "the text tells of the new one";
    EXPECT_EQ(compiled.origin().at("detail"), "the database from before compiling table.csv was interrupted");

    compiled.scratch.write("out.pcf", database + "x");
    EXPECT_EQ(compiled.origin().at("outcome"), "failed");
    ASSERT_EQ(run_command({"flash", "compile", compiled.csv, compiled.pcf}).exit_code, DONE);
    EXPECT_FALSE(contains(compiled.info(), "replaces_sha256"));
    EXPECT_EQ(compiled.scratch.file_count(), 3U);
}

TEST(info_file, ADamagedTextShows) {
    for (const char* text : {"", "database = out.pcf\n", "\xFF\xFE", "records = many\n"}) {
        const COMPILED compiled;
        compiled.scratch.write("out.pcf.info", text);
        EXPECT_EQ(run_command({"flash", "verify", compiled.pcf}).exit_code, INTERNAL_ERROR) << text;
        EXPECT_EQ(compiled.origin().at("outcome"), "failed") << text;
    }
}

#ifndef _WIN32  // whose names have no such characters
TEST(info_file, TheNameOfATableMakesNoKeys) {
    SCRATCH scratch;
    const std::string csv = scratch.write("a\ndatabase_sha256 = 0\n.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.path("out.pcf");
    ASSERT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    EXPECT_NE(read_file(pcf + ".info").find("\nsource = a\\x0Adatabase_sha256 = 0\\x0A.csv\nsource_sha256 = "),
              std::string::npos);
    EXPECT_EQ(run_command({"flash", "verify", pcf}).exit_code, DONE);
}
#endif

TEST(info_file, FurtherKeysAreLeftAlone) {
    const COMPILED compiled;
    compiled.scratch.write("out.pcf.info", "# ours\ncolour = red\n" + compiled.info());
    EXPECT_EQ(run_command({"flash", "verify", compiled.pcf}).exit_code, DONE);
}

TEST(info_file, WhereItCannotBeWrittenNothingChanges) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const std::string pcf = scratch.write("out.pcf", "PGMIO_FM old");
    fs::create_directory(scratch.path("out.pcf.info"));
    expect_failure(run_command({"flash", "compile", csv, pcf}), INTERNAL_ERROR, {"out.pcf.info"});
    EXPECT_EQ(read_file(pcf), "PGMIO_FM old");
    EXPECT_EQ(scratch.file_count(), 2U);
}

TEST(info_file, RefusalLeavesItAlone) {
    const COMPILED compiled;
    const std::string before = compiled.info();
    const std::string bad = compiled.scratch.write("bad.csv", FLASH_SOURCE().row({{"ini", "a b"}}).text());
    EXPECT_EQ(run_command({"flash", "compile", bad, compiled.pcf}).exit_code, INTERNAL_ERROR);
    EXPECT_EQ(compiled.info(), before);
}

TEST(info_file, ShippedDatabasesHaveIt) {
    for (const char* name : {"pgm_flash", "pgm_dev_info"}) {
        const std::string pcf = std::string(TEST_DEVICES_DIR) + "/programmer/" + name + ".pcf";
        EXPECT_TRUE(contains(read_file(pcf + ".info"), "database_sha256 = " + sha256(read_file(pcf)) + "\n")) << name;
    }
}
