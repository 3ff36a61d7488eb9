#include "command_fixture.h"
#include "flash_source.h"

// `flash check` and `profile check`: --strict, accepted warnings, hints, suggestions.

namespace {

/// Checks a table, with accepted warnings beside it unless they are "".
class CHECKED {
public:
    explicit CHECKED(const std::string& table, const std::string& accepted = "",
                     const std::vector<std::string>& options = {}) {
        const std::string csv = m_scratch.write("t.csv", table);
        if (!accepted.empty()) {
            m_scratch.write("t.csv.accepted", accepted);
        }
        std::vector<std::string> arguments{"--json", "flash", "check", csv};
        arguments.insert(arguments.end(), options.begin(), options.end());
        result = run_command(arguments);
        document = json_of(result.output);
    }

    PROCESS_RESULT result;
    JSON document;

private:
    SCRATCH m_scratch;
};

const std::string ODD = FLASH_SOURCE().row({{"die_count", "0"}}).text();
const std::string GOOD = FLASH_SOURCE().row().text();
const std::vector<std::string> STRICT{"--strict"};

std::string hint_for(const std::string& table) {
    const JSON hints = CHECKED(table).document.at("hints");
    EXPECT_LE(hints.size(), 1U);
    return hints.empty() ? "" : hints[0].get<std::string>();
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

TEST(check_options, StrictRefusesWarnings) {
    EXPECT_EQ(CHECKED(ODD).result.exit_code, DONE);
    EXPECT_EQ(CHECKED(ODD, "", STRICT).result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(CHECKED(GOOD, "", STRICT).result.exit_code, DONE);
}

TEST(check_options, AcceptedWarningsAreNotToldAsFaults) {
    const CHECKED checked(ODD, "# reviewed\n\nCHIP die_count unusual: no die # a module without a die of its own\n",
                          STRICT);
    EXPECT_EQ(checked.result.exit_code, DONE) << checked.result.errors;
    EXPECT_EQ(checked.result.errors, "");
    EXPECT_EQ(checked.document.at("faults"), JSON::array());
    EXPECT_EQ(checked.document.at("unused"), JSON::array());
    ASSERT_EQ(checked.document.at("accepted").size(), 1U);
    EXPECT_EQ(checked.document.at("accepted")[0].at("member"), "die_count");
    EXPECT_EQ(checked.document.at("accepted")[0].at("why"), "a module without a die of its own");
}

TEST(check_options, ShippedTablesPassStrictly) {
    for (const auto& [noun, table] :
         {std::pair{"flash", "/flash/pgm_flash.csv"}, std::pair{"profile", "/dev_info/pgm_dev_info.csv"}}) {
        const std::string csv = std::string(TEST_DATA_DIR) + table;
        const PROCESS_RESULT result = run_command({"--json", noun, "check", "--strict", csv});
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
        const JSON document = json_of(result.output);
        EXPECT_EQ(document.at("faults"), JSON::array());
        EXPECT_EQ(document.at("unused"), JSON::array()) << "an accepted warning that there is no more";
        for (const JSON& warning : document.at("accepted")) {
            EXPECT_NE(warning.at("why"), "") << warning;
        }
    }
}

TEST(check_options, AStarAcceptsAnyText) {
    EXPECT_EQ(CHECKED(ODD, "CHIP die_count *\n", STRICT).result.exit_code, DONE);
    EXPECT_EQ(CHECKED(ODD, "CHIP die_count something else\n", STRICT).result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(CHECKED(ODD, "OTHER die_count *\n", STRICT).result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(CHECKED(ODD, "CHIP mfc_id *\n", STRICT).result.exit_code, INTERNAL_ERROR);
}

TEST(check_options, AcceptedWarningsBehindAByteOrderMark) {
    const CHECKED checked(ODD, "\xEF\xBB\xBF# reviewed\nCHIP die_count *\n", STRICT);
    EXPECT_EQ(checked.result.exit_code, DONE) << checked.result.errors;
    EXPECT_EQ(checked.result.errors, "");
}

TEST(check_options, UnusedEntriesAreTold) {
    const CHECKED checked(GOOD, "# none\nCHIP die_count * # gone\n");
    EXPECT_EQ(checked.result.exit_code, DONE);
    EXPECT_TRUE(contains(checked.result.errors, "t.csv.accepted:2: warning: not used")) << checked.result.errors;
    ASSERT_EQ(checked.document.at("unused").size(), 1U);
    EXPECT_EQ(checked.document.at("unused")[0],
              (JSON{{"line", 2}, {"row", "CHIP"}, {"member", "die_count"}, {"text", "*"}, {"why", "gone"}}));
    EXPECT_EQ(CHECKED(GOOD, "CHIP die_count *\n", STRICT).result.exit_code, INTERNAL_ERROR);
}

TEST(check_options, FaultsCannotBeAccepted) {
    const CHECKED checked(FLASH_SOURCE().row({{"device_bit_size", "0"}}).text(), "CHIP device_bit_size *\n");
    EXPECT_EQ(checked.result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(checked.document.at("accepted"), JSON::array());
    EXPECT_EQ(checked.document.at("unused").size(), 1U);
}

TEST(check_options, EntriesAreNotToldAsUnusedWhereNotAllWarningsWereLookedFor) {
    const std::string shadowed = FLASH_SOURCE().row().row({{"device_name", "OTHER"}}).text();
    const std::string entry = "OTHER memory_id * # the same answer\n";
    EXPECT_EQ(CHECKED(shadowed, entry).document.at("accepted").size(), 1U);
    const CHECKED checked(shadowed + "a line with too few cells\n", entry);
    EXPECT_EQ(checked.result.exit_code, INTERNAL_ERROR);
    EXPECT_EQ(checked.document.at("faults").size(), 1U);
    EXPECT_EQ(checked.document.at("unused"), JSON::array());
    EXPECT_FALSE(contains(checked.result.errors, "not used")) << checked.result.errors;
}

TEST(check_options, MalformedEntriesAreRefused) {
    const CHECKED checked(GOOD, "CHIP die_count\n");
    EXPECT_EQ(checked.result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(checked.result.errors, "t.csv.accepted:1: fault")) << checked.result.errors;
}

TEST(check_options, RowsWithBlanksAndTheTableItself) {
    const SCRATCH scratch;
    const std::string source = read_file(std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv");
    std::string text = source;
    const std::size_t row = text.find("\nAVOCET,");
    text.replace(text.find(",1550,", row), 6, ",1,");
    const std::string csv = scratch.write("t.csv", text);
    const auto strict = [&csv] {
        return run_command(
            {"profile", "check", "--strict", csv, "--install-dir", std::string(TEST_DEVICES_DIR) + "/.."});
    };
    EXPECT_EQ(strict().exit_code, INTERNAL_ERROR);
    scratch.write("t.csv.accepted",
                  "\"family AVOCET\" jtag_program_initialize_microsec * # fast\n"
                  "- - * # CORNCRAKE is meant to be generic\n");
    const PROCESS_RESULT result = strict();
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
}

TEST(check_options, HintsAtTheCause) {
    EXPECT_EQ(hint_for(GOOD), "");
    EXPECT_EQ(hint_for(replaced(GOOD, "TRUE", "yes")), "");
    EXPECT_TRUE(contains(hint_for(replaced(GOOD, ",", ";")), "semicolons"));
    EXPECT_TRUE(contains(hint_for("\xEF\xBB\xBF" + GOOD), "byte-order mark"));
    EXPECT_TRUE(contains(hint_for(replaced(GOOD, "\n", "\r")), "carriage returns"));
    EXPECT_TRUE(contains(hint_for(replaced(GOOD, "bool", "\"bool\"")), "quotation marks"));
    EXPECT_TRUE(contains(hint_for(replaced(GOOD, "Maker", "My\tMaker")), "tabs"));
    std::string wide("\xFF\xFE");
    for (const char character : GOOD) {
        wide += character;
        wide += '\0';
    }
    EXPECT_TRUE(contains(hint_for(wide), "UTF-16"));
    EXPECT_TRUE(contains(hint_for(wide.substr(2)), "UTF-16"));
}

TEST(check_options, HintsAtADecimalComma) {
    const FLASH_SOURCE::CHANGES comma{{"asc_voltage", "1,65V"}};
    EXPECT_TRUE(contains(hint_for(FLASH_SOURCE().row(comma).text()), "as in 3.3V"));
    // Neither a whole number of volts, nor a plain table whose cells stand close.
    const std::string whole = FLASH_SOURCE().row({{"asc_voltage", "3V"}, {"die_count", "x"}}).text();
    EXPECT_FALSE(contains(hint_for(whole + "1,2,3.3V\n"), "comma"));
    EXPECT_EQ(hint_for(replaced(whole, " ", "")), "");
}

TEST(check_options, HintsAtAColumnThatIsMissingOrNotKnown) {
    const auto names = [](const std::string& from, const std::string& to) {
        return hint_for(FLASH_SOURCE().row().replace(2, from, to).text());
    };
    EXPECT_EQ(names("die_count,", ""), "line 2 does not name the column die_count, which comes behind flag_status");
    EXPECT_EQ(names("manufacturer_name,", ""), "line 2 does not name the column manufacturer_name, which comes first");
    EXPECT_EQ(names("ini,", "ini,page_byte,"), "line 2 names a column page_byte that no record has");
    EXPECT_EQ(names("ini,", "ini,INI,"), "line 2 names a column twice");
}

TEST(check_options, HintsAtTheCellFromWhichALineIsOutOfStep) {
    const auto row = [](const std::string& from, const std::string& to) {
        return hint_for(FLASH_SOURCE().row().replace(FLASH_SOURCE::FIRST_ROW_LINE, from, to).text());
    };
    EXPECT_EQ(row("FALSE, 0x18", "0x18"),
              "line 9: \"0x18\" stands where silicon_id is expected: a cell is missing there or before it");
    EXPECT_EQ(row("Maker", "My Maker"),
              "line 9: \"CHIP\" stands where silicon_id is expected: there is a cell too many there or before it");
    EXPECT_EQ(row(", 3.3V", ""), "line 9: all cells up to sdm_support fit their columns: what follows is missing");
    EXPECT_EQ(row("3.3V", "3.3V yes"),
              "line 9: all cells up to asc_voltage fit their columns: what follows is too much");
    EXPECT_EQ(row("NONE", "NONE, NONE"),
              "line 9: \"NONE\" stands where extended_mode is expected: there is a cell too many there or before it");
}

TEST(check_options, HintsAtALineWithoutCells) {
    EXPECT_EQ(hint_for(GOOD + " ,, ,\n"), "line 10 has separators and no cell");
}

TEST(check_options, HintsAtALineThatTheHeaderHasLost) {
    std::string text = GOOD;
    const std::size_t third = text.find('\n', text.find('\n') + 1) + 1;
    text.erase(third, text.find('\n', third) + 1 - third);
    EXPECT_EQ(hint_for(text), "line 7 sets the rows apart from the header: a line above it is missing");
}

TEST(check_options, HintsAtTheCellOfAProfile) {
    std::string text = read_file(std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv");
    const auto hint = [](const std::string& table) {
        const SCRATCH scratch;
        const PROCESS_RESULT result = run_command({"--json", "profile", "check", scratch.write("p.csv", table)});
        return json_of(result.output).at("hints").at(0).get<std::string>();
    };
    const std::size_t name = text.find("cfg_dev,");
    EXPECT_EQ(hint(text.substr(0, name) + text.substr(name + 8)),
              "line 2 does not name the column cfg_dev, which comes behind skip_fbgen");
    const std::size_t row = text.find("\nGENERIC,") + 1;
    EXPECT_TRUE(
        hint(text.substr(0, row) + "," + text.substr(row)).ends_with("there is a cell too many there or before it"));
    EXPECT_EQ(hint(text.substr(0, row + 8) + " " + text.substr(row + 8)),
              "line 4, column 9: a blank ends a cell as a comma does: leave it out");
}

TEST(check_options, HintsAtAFileThatIsNoText) {
    using namespace std::string_literals;
    const std::string no_text = "this is no text: unpack it if it is compressed, and look at what was downloaded";
    EXPECT_EQ(hint_for("\x1F\x8B\x08\0\0\t\"\n;;\r\x01\x02\x03\x04\x05\x06"s), no_text);
    EXPECT_EQ(hint_for(GOOD + std::string(512, '\0')), no_text);
}

TEST(check_options, HintsAtAPageThatWasSavedInsteadOfATable) {
    const std::string page = "this is a page for browsers, not the table that it shows: download the table itself";
    EXPECT_EQ(hint_for("<!DOCTYPE html>\n<html lang=\"en\">\t;;\n"), page);
    EXPECT_EQ(hint_for("\xEF\xBB\xBF\r\n <html>\n" + GOOD), page);
    EXPECT_EQ(hint_for(""), "");
}

TEST(check_options, FilesOfAnotherKindAreSaidToBe) {
    const SCRATCH scratch;
    const std::string flash = scratch.write("flash.csv", GOOD);
    const std::string profiles =
        scratch.write("p.csv", read_file(TEST_DATA_DIR + std::string("/dev_info/pgm_dev_info.csv")));
    const std::string database = scratch.path("flash.pcf");
    ASSERT_EQ(run_command({"flash", "compile", flash, database}).exit_code, DONE);
    const std::string profile_database =
        scratch.write("p.pcf", read_file(TEST_DEVICES_DIR + std::string("/programmer/pgm_dev_info.pcf")));
    const auto last_line = [&scratch](const std::string& noun, const std::string& verb, const std::string& file) {
        std::vector<std::string> arguments{noun, verb, file};
        if (verb == "compile") {
            arguments.push_back(scratch.path("out.pcf"));
        }
        const PROCESS_RESULT result = run_command(arguments);
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
        const std::vector<std::string> told = lines_of(result.errors);
        return told.at(told.size() - (verb == "compile" ? 2 : 1));  // the last one says that nothing was compiled
    };
    for (const char* verb : {"check", "compile"}) {
        EXPECT_EQ(last_line("flash", verb, profiles),
                  profiles + ": hint: this is a profile table: see pgmdev profile check");
        EXPECT_EQ(last_line("profile", verb, flash), flash + ": hint: this is a flash table: see pgmdev flash check");
        for (const char* noun : {"flash", "profile"}) {  // whichever it is taken for
            EXPECT_EQ(last_line(noun, verb, database),
                      database + ": hint: this is a packed database, no source table: see pgmdev flash dump --csv");
            EXPECT_EQ(
                last_line(noun, verb, profile_database),
                profile_database + ": hint: this is a packed database, no source table: see pgmdev profile dump --csv");
        }
    }
}

TEST(check_options, ATableOfAnotherNounIsSaidToBeOneWhenItIsCompared) {
    const SCRATCH scratch;
    const std::string flash = scratch.write("flash.csv", GOOD);
    const PROCESS_RESULT result = run_command({"profile", "diff", flash, flash});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, flash + ": hint: this is a flash table: see pgmdev flash check\n"))
        << result.errors;
}

TEST(check_options, HintsAreToldLast) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", replaced(GOOD, ",", ";"));
    const std::vector<std::string> told = lines_of(run_command({"flash", "check", csv}).errors);
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(told.back().starts_with(csv + ": hint: ")) << told.back();
}

TEST(check_options, SuggestsFamiliesAndEnumerators) {
    const SCRATCH scratch;
    std::string text = read_file(std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv");
    text.replace(text.find("\nKESTREL,") + 1, 7, "KESTRAL");
    text.replace(text.find("DEV_FAMILY_OSPREY"), 17, "DEV_FAMILY_OSPRAY");
    const PROCESS_RESULT result = run_command({"profile", "check", scratch.write("t.csv", text)});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(result.errors, "did you mean KESTREL")) << result.errors;
    EXPECT_TRUE(contains(result.errors, "did you mean DEV_FAMILY_OSPREY")) << result.errors;
}
