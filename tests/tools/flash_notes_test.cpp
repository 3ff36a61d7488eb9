#include <filesystem>

#include "command_fixture.h"

// The notes beside the table: checked with it, taken along when it is compiled, and shown.

namespace {

namespace fs = std::filesystem;

/// A copy of the shipped table and its notes.
class TABLE_WITH_NOTES {
public:
    TABLE_WITH_NOTES() {
        fs::copy(fs::path(TEST_DATA_DIR) / "flash", m_scratch.directory() / "flash");
        fs::create_directories(m_scratch.directory() / "db/programmer");
    }
    std::string path(const std::string& name) const { return m_scratch.path("flash/" + name); }
    std::string table() const { return path("pgm_flash.csv"); }
    std::string database() const { return m_scratch.path("db/programmer/pgm_flash.pcf"); }
    std::string directory() const { return m_scratch.path("db"); }
    void write(const std::string& name, const std::string& text) const { m_scratch.write(name, text); }

private:
    SCRATCH m_scratch;
};

constexpr const char* HEADING = "response, chips, byte, told_apart_by, risk, harm\n";

}  // namespace

TEST(flash_notes, AreCheckedWithTheTable) {
    const TABLE_WITH_NOTES files;
    EXPECT_EQ(run_command({"flash", "check", files.table()}).exit_code, DONE);
    files.write("flash/ambiguities.csv", std::string(HEADING) + "EF40, A B, -, by, fire, harm\n");
    const PROCESS_RESULT result = run_command({"--json", "flash", "check", files.table()});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, "ambiguities.csv:2:19: fault:")) << result.errors;
    EXPECT_TRUE(contains(result.errors, "expected one of data, voltage, protection")) << result.errors;
    const JSON notes = json_of(result.output).at("notes");
    ASSERT_EQ(notes.size(), 4U);
    const JSON& fault = notes.at(0).at("faults").at(0);
    EXPECT_EQ(fault.at("line"), 2);
    EXPECT_EQ(fault.at("column"), 19);
    EXPECT_EQ(fault.at("note"), "EF40");
    EXPECT_EQ(fault.at("member"), "risk");
    EXPECT_EQ(fault.at("cell"), "fire");
    EXPECT_EQ(notes.at(1).at("faults"), JSON::array());
    EXPECT_TRUE(contains(notes.at(3).at("file"), "left_out.csv"));
}

TEST(flash_notes, AnEmptyLastCellIsNoneHoweverLinesEnd) {
    for (const std::string end : {"\n", "\r\n"}) {
        const TABLE_WITH_NOTES files;
        const std::string heading = "device_name,identification,reason" + end;
        files.write("flash/left_out.csv",
                    heading + "NOSUCH,EF0000,nobody has it" + end + end + "NORSUCH,EF0001," + end);
        const PROCESS_RESULT result = run_command({"flash", "check", files.table()});
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
        EXPECT_EQ(lines_of(result.errors).back(),
                  files.path("left_out.csv") + ": fault: expected as many cells in line 4 as in the first");
    }
}

TEST(flash_notes, ThoseInUtf16AreToldToBe) {
    for (const char* name : {"ambiguities.csv", "identifications.csv", "aliases.csv", "left_out.csv", "sources.csv"}) {
        const TABLE_WITH_NOTES files;
        const std::string file = files.path(name);
        std::string wide = "\xFF\xFE";
        for (const char character : read_file(file)) {
            wide += character;
            wide += '\0';
        }
        files.write(std::string("flash/") + name, wide);
        const PROCESS_RESULT result = run_command({"--json", "flash", "check", files.table()});
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << name;
        const std::string hint = file + " is UTF-16: save it as UTF-8";
        EXPECT_EQ(lines_of(result.errors).back(), files.table() + ": hint: " + hint);
        EXPECT_EQ(json_of(result.output).at("hints"), JSON::array({hint}));
        const PROCESS_RESULT compiled = run_command({"flash", "compile", files.table(), files.database()});
        const bool is_evidence = std::string_view(name) == "sources.csv";  // with which nothing is compiled
        EXPECT_EQ(compiled.exit_code, is_evidence ? DONE : INTERNAL_ERROR);
        EXPECT_EQ(contains(compiled.errors, ": hint: " + hint), !is_evidence) << compiled.errors;
    }
}

TEST(flash_notes, WarningsAreRefusedOnlyWhenStrict) {
    const TABLE_WITH_NOTES files;
    files.write("flash/ambiguities.csv", std::string(HEADING) + "EF4018, A B, -, by, data, harm\n");
    const PROCESS_RESULT result = run_command({"flash", "check", files.table()});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_TRUE(contains(result.errors, "ambiguities.csv:2:9: warning:")) << result.errors;
    EXPECT_EQ(run_command({"flash", "check", "--strict", files.table()}).exit_code, INTERNAL_ERROR);
}

TEST(flash_notes, AreNotHeldAgainstRowsThatCouldNotBeRead) {
    const TABLE_WITH_NOTES files;
    std::string text = read_file(files.table());
    const std::size_t row = text.find("\nWinbond,");
    text.replace(text.find("TRUE", row), 4, "TRU,");
    files.write("flash/pgm_flash.csv", text);
    const PROCESS_RESULT result = run_command({"--json", "flash", "check", files.table()});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(lines_of(result.errors).size(), 1U) << result.errors;
    const JSON document = json_of(result.output);
    EXPECT_EQ(document.at("notes").size(), 4U);
    for (const JSON& notes : document.at("notes")) {
        EXPECT_EQ(notes.at("faults"), JSON::array()) << notes;
    }
    files.write("flash/ambiguities.csv", std::string(HEADING) + "EF40, A B, -, by, fire, harm\n");
    EXPECT_TRUE(contains(run_command({"flash", "check", files.table()}).errors, "ambiguities.csv:2:19: fault:"));
}

TEST(flash_notes, TravelWithTheDatabase) {
    const TABLE_WITH_NOTES files;
    files.write("flash/ambiguities.csv",
                std::string(HEADING) + "EF4018, W25Q128JV W25Q128XX, -, \"a look\", data, boom\n");
    ASSERT_EQ(run_command({"flash", "compile", files.table(), files.database()}).exit_code, DONE);
    EXPECT_EQ(read_file(files.database() + ".ambiguities.csv"),
              read_file(fs::path(files.table()).parent_path() / "ambiguities.csv"));
    for (const char* name : {"identifications.csv", "aliases.csv", "left_out.csv", "sources.csv"}) {
        EXPECT_EQ(read_file(files.database() + "." + name), read_file(fs::path(TEST_DATA_DIR) / "flash" / name))
            << name;
    }
    const PROCESS_RESULT result = run_command({"--db-dir", files.directory(), "flash", "identify", "EF4018"});
    EXPECT_TRUE(contains(result.output, "W25Q128JV or W25Q128XX: boom")) << result.output;
    EXPECT_TRUE(contains(result.output, "told apart by a look")) << result.output;
}

TEST(flash_notes, OfAnotherTableAreToldWhenOneWithoutNotesIsCompiled) {
    const TABLE_WITH_NOTES files;
    ASSERT_EQ(run_command({"flash", "compile", files.table(), files.database()}).errors, "");
    const std::string aliases = read_file(files.database() + ".aliases.csv");
    fs::remove(fs::path(files.table()).parent_path() / "aliases.csv");
    const PROCESS_RESULT result = run_command({"flash", "compile", files.table(), files.database()});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_TRUE(contains(result.errors,
                         ".aliases.csv is not of this table, which has no such notes; remove it unless "
                         "it is yours\n"))
        << result.errors;
    EXPECT_FALSE(contains(result.errors, ".sources.csv")) << result.errors;
    EXPECT_EQ(read_file(files.database() + ".aliases.csv"), aliases);
}

TEST(flash_notes, WithFaultsAreNotCompiled) {
    const TABLE_WITH_NOTES files;
    files.write("flash/identifications.csv", "device_name, identification\nMT25QL128, 20B\n");
    const PROCESS_RESULT result = run_command({"flash", "compile", files.table(), files.database()});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, "identifications.csv:2:12: fault:")) << result.errors;
    EXPECT_FALSE(fs::exists(files.database()));
}

TEST(flash_notes, ThatAreDamagedAreToldAndDoNotHinder) {
    const TABLE_WITH_NOTES files;
    ASSERT_EQ(run_command({"flash", "compile", files.table(), files.database()}).exit_code, DONE);
    files.write("db/programmer/pgm_flash.pcf.ambiguities.csv", std::string("\0", 1));
    const PROCESS_RESULT result = run_command({"--db-dir", files.directory(), "flash", "identify", "EF4018"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_TRUE(contains(result.errors, "pgm_flash.pcf.ambiguities.csv: fault: expected a text file")) << result.errors;
}
