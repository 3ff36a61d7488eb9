#include <gmock/gmock.h>

#include "command_fixture.h"
#include "flash_source.h"

// What stands beside a flash database and a flash table: further names, and what supports the rows.

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* GROUPS = "device_name,compared,identification,times\n";

/// The sample record, known by the name CHIP.
PGMDEV_SFL_FLASH_INFO known_chip() {
    PGMDEV_SFL_FLASH_INFO record = flash_reference::sample("CHIP");
    record.silicon_id = false;
    record.memory_id = 0x17;
    record.memory_id_index = 2;
    record.memory_type = 0x40;
    record.memory_type_index = 1;
    record.mfc_id = 0xEF;
    record.mfc_id_index = 0;
    record.ini = "NONE";
    record.default_dev = true;
    return record;
}

/// A database with that record, an alias, one that leads nowhere, and evidence.
class COMPANIONS : public FLASH_DATABASE {
public:
    COMPANIONS() : FLASH_DATABASE({known_chip()}) {
        write_beside(
            ".aliases.csv",
            "alias,device_name,reason\nCHIP-IQ,CHIP,ordering code\nCHIP64,CHIP,another name\nLOST,GONE,nobody knows\n");
        write_beside(".sources.csv", std::string(GROUPS) + "CHIP,17@2 40@1 EF@0,two:linux+flashrom,family\n");
    }
};

const JSON EVIDENCE{
    {"identification", {{"evidence", "two independent public sources"}, {"sources", {"linux", "flashrom"}}}},
    {"times", {{"evidence", "family rule"}, {"sources", JSON::array()}}}};

const FLASH_SOURCE::CHANGES ROW{{"device_name", "CHIP"},  {"silicon_id", "FALSE"}, {"memory_id", "0x17"},
                                {"memory_id_index", "2"}, {"memory_type", "0x40"}, {"memory_type_index", "1"},
                                {"mfc_id", "0xEF"},       {"mfc_id_index", "0"}};

/// `flash check` of a table with that row, and of a list with this line beside it.
PROCESS_RESULT check_with(const std::string& line, bool json = false, const FLASH_SOURCE::CHANGES& row = ROW) {
    const SCRATCH scratch;
    FLASH_SOURCE source;
    const std::string file = scratch.write("table.csv", source.row(row).text());
    scratch.write("sources.csv", GROUPS + line);
    return run_command(json ? std::vector<std::string>{"--json", "flash", "check", file}
                            : std::vector<std::string>{"flash", "check", file});
}

}  // namespace

TEST(flash_companions, AnAliasIsAnsweredByTheRowThatItNames) {
    const COMPANIONS database;
    const PROCESS_RESULT text = database.run({"flash", "show", "chip-iq"});
    EXPECT_EQ(text.exit_code, DONE) << text.errors;
    EXPECT_THAT(text.output, StartsWith("CHIP-IQ shares the record of CHIP: ordering code\nindex "));
    const JSON document = json_of(database.run({"--json", "flash", "show", "chip-iq"}).output);
    EXPECT_EQ(document.at("query"), "chip-iq");
    EXPECT_EQ(document.at("found"), true);
    EXPECT_EQ(document.at("device_name"), "CHIP");
    EXPECT_EQ(document.at("alias"), (JSON{{"name", "CHIP-IQ"}, {"reason", "ordering code"}}));
    EXPECT_EQ(document.at("evidence"), EVIDENCE);
}

TEST(flash_companions, ARowTellsItsEvidenceAndIsNoAlias) {
    const COMPANIONS database;
    const PROCESS_RESULT text = database.run({"flash", "show", "CHIP"});
    EXPECT_THAT(text.output, StartsWith("index "));
    EXPECT_THAT(text.output,
                HasSubstr("\nevidence              identification: two independent public sources (linux, flashrom)\n"
                          "                      times: family rule\n"));
    const JSON document = json_of(database.run({"--json", "flash", "show", "CHIP"}).output);
    EXPECT_FALSE(document.contains("alias"));
    EXPECT_EQ(document.at("evidence"), EVIDENCE);
}

TEST(flash_companions, AnAliasIsTakenForADeviceAndInALog) {
    const COMPANIONS database;
    const PROCESS_RESULT by_hand = database.run({"flash", "identify", "EF4017", "--as", "0=chip-iq"});
    EXPECT_EQ(by_hand.exit_code, DONE) << by_hand.errors;
    EXPECT_THAT(by_hand.output, HasSubstr(" CHIP, record "));
    EXPECT_THAT(by_hand.output,
                HasSubstr("\n  mapped        by hand: CHIP-IQ shares the record of CHIP: ordering code\n"));
    const PROCESS_RESULT log =
        database.run({"flash", "identify", "--log", "-"}, "Found Maker flash chip \"CHIP64\" (8192 kB, SPI)\n");
    EXPECT_EQ(log.exit_code, DONE) << log.errors;
    EXPECT_THAT(log.output, HasSubstr(" CHIP, record "));
    expect_failure(database.run({"flash", "identify", "EF4017", "--as", "0=LOST"}), WRONG_USAGE,
                   {"no flash is named \"LOST\""});
    expect_failure(database.run({"flash", "identify", "EF4017", "--as", "0=CHIP-I"}), WRONG_USAGE, {"CHIP-IQ"});
}

TEST(flash_companions, AnAliasOfARowThatIsGoneIsNotFound) {
    expect_failure(COMPANIONS().run({"flash", "show", "LOST"}), NOT_FOUND, {"no flash is named \"LOST\""});
}

TEST(flash_companions, AliasesAreSuggested) {
    expect_failure(COMPANIONS().run({"flash", "show", "CHIP-I"}), NOT_FOUND, {"CHIP-IQ"});
}

TEST(flash_companions, WithoutTheFilesNothingIsTold) {
    const JSON document = json_of(FLASH_DATABASE({known_chip()}).run({"--json", "flash", "show", "CHIP"}).output);
    EXPECT_FALSE(document.contains("evidence"));
    EXPECT_FALSE(document.contains("alias"));
}

TEST(flash_companions, CheckTellsTheShares) {
    const std::string line = "CHIP,17@2 40@1 EF@0,sfdp:sfdp,family\n";
    const PROCESS_RESULT text = check_with(line);
    EXPECT_EQ(text.exit_code, DONE) << text.errors;
    EXPECT_THAT(text.output, HasSubstr("\nidentification: 1 chip's own SFDP\ntimes: 1 family rule\n"));
    const JSON evidence = json_of(check_with(line, true).output).at("evidence");
    EXPECT_EQ(evidence.at("times"), (JSON{{"datasheet maximum", 0},
                                          {"chip's own SFDP", 0},
                                          {"two independent public sources", 0},
                                          {"one public source", 0},
                                          {"family rule", 1}}));
}

TEST(flash_companions, CheckRefusesARowWithoutEvidence) {
    for (const char* line : {"", "OTHER,17@2 40@1 EF@0,family,family\n", "CHIP,18@2 40@1 EF@0,family,family\n"}) {
        const PROCESS_RESULT result = check_with(line);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr("row CHIP"));
        EXPECT_THAT(result.errors, HasSubstr("a line CHIP,17@2 40@1 EF@0,... in sources.csv"));
    }
}

// At 255 only a type is not compared, and of a signature nothing but the memory ID is.
TEST(flash_companions, CheckNamesWhatIsComparedAtTheLastByte) {
    const std::vector<std::pair<FLASH_SOURCE::CHANGES, const char*>> rows{
        {{{"memory_id_index", "255"}}, "CHIP,17@255 40@1 EF@0,"},
        {{{"memory_type_index", "255"}}, "CHIP,17@2 EF@0,"},
        {{{"mfc_id_index", "255"}}, "CHIP,17@2 40@1 EF@255,"},
        {{{"silicon_id", "TRUE"}, {"memory_id_index", "255"}, {"memory_type_index", "255"}, {"mfc_id_index", "255"}},
         "CHIP,silicon 17@255,"}};
    for (const auto& [changes, key] : rows) {
        FLASH_SOURCE::CHANGES row = ROW;
        for (const auto& [member, value] : changes) {
            row[member] = value;
        }
        EXPECT_THAT(check_with("", false, row).errors, HasSubstr(std::string("a line ") + key + "... in sources.csv"));
        EXPECT_EQ(check_with(std::string(key) + "family,family\n", false, row).exit_code, DONE) << key;
    }
}

TEST(flash_companions, CheckTellsEvidenceThatNoRowTakes) {
    const std::string line = "CHIP,17@2 40@1 EF@0,family,family\n";
    for (const std::string& other : {std::string("OTHER,17@2 40@1 EF@0,family,family\n"), line}) {
        const PROCESS_RESULT result = check_with(other + line);
        EXPECT_EQ(result.exit_code, DONE);
        EXPECT_THAT(result.errors, HasSubstr("warning"));
        EXPECT_THAT(result.errors,
                    HasSubstr("line 2 of sources.csv supports no row, or a later one is the same row's"));
    }
    EXPECT_EQ(check_with(line).errors.find("sources.csv"), std::string::npos);
}

TEST(flash_companions, SuchEvidenceCanBeAccepted) {
    const SCRATCH scratch;
    FLASH_SOURCE source;
    const std::string file = scratch.write("table.csv", source.row(ROW).text());
    const std::string line = "17@2 40@1 EF@0,family,family\n";
    scratch.write("sources.csv", GROUPS + ("CHIP," + line) + "LATER," + line);
    scratch.write("table.csv.accepted", "LATER - * # comes with the next table\n");
    const PROCESS_RESULT result = run_command({"--json", "flash", "check", file});
    EXPECT_EQ(result.exit_code, DONE);
    const JSON answer = json_of(result.output);
    EXPECT_EQ(answer.at("unused").size(), 0U);
    EXPECT_EQ(answer.at("accepted").back().at("why"), "comes with the next table");
}

TEST(flash_companions, CheckRefusesEvidenceOfNoKnownClass) {
    for (const char* cell : {"hearsay", "", "two", "family:linux", "one:"}) {
        const std::string line = std::string("CHIP,17@2 40@1 EF@0,") + cell + ",family\n";
        const PROCESS_RESULT result = check_with(line);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR) << cell;
        EXPECT_THAT(result.errors,
                    HasSubstr("for identification in line 2 of sources.csv, not \"" + std::string(cell) + "\""));
    }
    EXPECT_THAT(check_with("CHIP,17@2 40@1 EF@0,family,family\nCHIP,1\n").errors,
                HasSubstr("as many cells in line 3 of sources.csv as in its first"));
}

TEST(flash_companions, CheckTellsWhichAliasesAreOfNoUse) {
    const SCRATCH scratch;
    FLASH_SOURCE source;
    const std::string file = scratch.write("table.csv", source.row(ROW).text());
    const auto check = [&](const std::string& lines, bool strict) {
        scratch.write("aliases.csv", "alias,device_name,reason\n" + lines);
        return run_command(strict ? std::vector<std::string>{"flash", "check", "--strict", file}
                                  : std::vector<std::string>{"flash", "check", file});
    };
    EXPECT_EQ(check("CHIP-IQ,chip,ordering code\n", false).errors.find("aliases.csv"), std::string::npos);
    const PROCESS_RESULT lost = check("LOST,GONE,nobody knows\n", false);
    EXPECT_EQ(lost.exit_code, DONE) << lost.errors;
    EXPECT_THAT(lost.errors, HasSubstr("aliases.csv: warning: row LOST: a row for it, not GONE, which has none"));
    EXPECT_EQ(check("LOST,GONE,nobody knows\n", true).exit_code, INTERNAL_ERROR);
    EXPECT_THAT(check("Chip,CHIP,itself\n", false).errors, HasSubstr("row Chip: a name that has no row of its own"));
    const PROCESS_RESULT cut = check("CHIP-IQ,CHIP\n", false);
    EXPECT_EQ(cut.exit_code, INTERNAL_ERROR);
    EXPECT_THAT(cut.errors, HasSubstr("as many cells in line 2 as in the first"));
}

TEST(flash_companions, ShowTellsWhyAChipIsLeftOut) {
    const COMPANIONS database;
    database.write_beside(".left_out.csv",
                          "device_name,identification,reason\nTWIN64,EF4017,two chips in one package; no record\n"
                          "CUT,EF4017\nCHIP,EF4017,never told of a row\nCHIP-IQ,EF4017,nor of another name\n");
    const PROCESS_RESULT result = database.run({"flash", "show", "twin64"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_THAT(result.errors,
                testing::StartsWith("pgmdev: the flash \"twin64\" is left out of the table: two chips in one "
                                    "package; no record"));
    const JSON answer = json_of(database.run({"--json", "flash", "show", "twin64"}).output);
    EXPECT_EQ(answer.at("found"), false);
    EXPECT_TRUE(answer.at("index").is_null());
    EXPECT_EQ(answer.at("left_out"), "two chips in one package; no record");
    for (const std::string name : {"CUT", "NONE"}) {
        const JSON none = json_of(database.run({"--json", "flash", "show", name}).output);
        EXPECT_EQ(none.at("found"), false);
        EXPECT_FALSE(none.contains("left_out")) << name;
    }
    for (const std::string name : {"CHIP", "CHIP-IQ"}) {
        const JSON shown = json_of(database.run({"--json", "flash", "show", name}).output);
        EXPECT_EQ(shown.at("found"), true) << name;
        EXPECT_FALSE(shown.contains("left_out")) << name;
    }
}

TEST(flash_companions, TheShippedTableSaysWhyAChipIsLeftOut) {
    const PROCESS_RESULT result = run_command({"flash", "show", "S70FL01GS"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const std::string why = " is left out of the table: two chips in one package; each has a response of its own";
    EXPECT_THAT(result.errors, HasSubstr("the flash \"S70FL01GS\"" + why));
    expect_failure(run_command({"flash", "identify", "010220", "--as", "0=S70FL01GS"}), WRONG_USAGE,
                   {"the flash \"S70FL01GS\"" + why});
    const PROCESS_RESULT log =
        run_command({"flash", "identify", "--log", "-"}, "spi-nor spi0.0: s70fl01gs (131072 Kbytes)\n");
    EXPECT_EQ(log.exit_code, NOT_FOUND);
    EXPECT_THAT(log.errors, HasSubstr("the flash \"s70fl01gs\"" + why));
}

TEST(flash_companions, CheckTellsWhatIsWrongWithChipsThatAreLeftOut) {
    const SCRATCH scratch;
    FLASH_SOURCE source;
    const std::string file = scratch.write("table.csv", source.row(ROW).text());
    const auto check = [&](const std::string& list) {
        scratch.write("left_out.csv", list);
        return run_command({"flash", "check", file});
    };
    const std::string heading = "device_name,identification,reason\n";
    EXPECT_EQ(check(heading + "TWIN,EF4017,two chips\n").errors.find("left_out.csv"), std::string::npos);
    const PROCESS_RESULT row = check(heading + "chip,EF4017,two chips\n");
    EXPECT_EQ(row.exit_code, DONE) << row.errors;
    EXPECT_THAT(row.errors, HasSubstr("left_out.csv: warning: row chip: a name that has no row of its own"));
    const PROCESS_RESULT cut = check(heading + "TWIN,EF4017\n");
    EXPECT_EQ(cut.exit_code, INTERNAL_ERROR);
    EXPECT_THAT(cut.errors, HasSubstr("as many cells in line 2 as in the first"));
    EXPECT_THAT(check("device_name,reason\nTWIN,two chips\n").errors,
                HasSubstr("three columns: device_name, identification, reason"));
}

TEST(flash_companions, TheNamesThatPeopleTypeAreFound) {
    const std::vector<std::pair<const char*, const char*>> names{
        {"IS25WP512M", "IS25WP512"},    {"IS25LP01G", "IS25LP01G"},     {"IS25LP02GG", "IS25LP02G"},
        {"IS25WP01GG", "IS25WP01GG"},   {"IS25WP02GG", "IS25WP02GG"},   {"N25Q00A", "N25Q00A"},
        {"W25Q512NW", "W25Q512NW"},     {"W25Q01NW", "W25Q01NW"},       {"W25Q02NW", "W25Q02NW"},
        {"W25Q02JV", "W25Q02JV"},       {"S25HS02GT", "S25HS02GT"},     {"S25FS256T", "S25FS256T"},
        {"S70FS01GS", "S70FS01GS"},     {"MX66U2G45G", "MX66U2G45G"},   {"MX66L1G55G", "MX66L1G55G"},
        {"GD25B512MF", "GD25B512MF"},   {"GD25LB512MF", "GD25LB512MF"}, {"GD55B01G", "GD55B01G"},
        {"GD55B02G", "GD55B02G"},       {"GD55LB01G", "GD55LB01GE"},    {"GD55LB02G", "GD55LB02GE"},
        {"W25Q128JV-IQ", "W25Q128JV"},  {"W25Q128JV", "W25Q128JV"},     {"W25Q64FV", "W25Q64JV"},
        {"MX25L12835F", "MX25L12833F"}, {"MX25U25645G", "MX25U25635F"}, {"GD25Q16C", "GD25Q16"},
        {"S25SL12801", "S25FL128P1"},   {"W25Q64CV", "W25Q64JV"},
    };
    std::string questions;
    for (const auto& [name, row] : names) {
        questions += std::string(name) + "\n";
    }
    const std::vector<JSON> answers = json_lines_of(run_command({"--json", "flash", "show", "-"}, questions).output);
    ASSERT_EQ(answers.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(answers[i].at("device_name"), names[i].second) << names[i].first;
        EXPECT_TRUE(answers[i].contains("evidence")) << names[i].first;
        EXPECT_EQ(answers[i].contains("alias"), std::string(names[i].first) != names[i].second) << names[i].first;
    }
}

TEST(flash_companions, TheShippedTableHasEvidenceForEveryRow) {
    const PROCESS_RESULT result =
        run_command({"--json", "flash", "check", std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv"});
    EXPECT_EQ(result.exit_code, DONE);
    const JSON document = json_of(result.output);
    EXPECT_EQ(document.at("evidence").size(), 6U);
    for (const auto& [group, classes] : document.at("evidence").items()) {
        unsigned sum = 0;
        for (const auto& [name, count] : classes.items()) {
            sum += count.get<unsigned>();
        }
        EXPECT_EQ(sum, document.at("records")) << group;
    }
}
