#include <algorithm>
#include <filesystem>
#include <sstream>

#include "command_fixture.h"
#include "support/pseudo_terminal.h"

// Tables on a terminal: they fit its width. What no terminal reads stays whole.

namespace {

/// What the command shows on a terminal of that width.
std::string shown(unsigned columns, const std::string& arguments, const std::string& variables = "NO_COLOR=1",
                  const std::string& devices = TEST_DEVICES_DIR) {
    const std::string usual = "unset COLUMNS NO_COLOR TESSARY_CONFIG_FILE; TERM=xterm ";
    return PSEUDO_TERMINAL(columns).shown_by(usual + variables + " '" TEST_COMMAND "' --db-dir '" + devices + "' " +
                                             arguments);
}

std::size_t longest_line(const std::string& text) {
    std::size_t longest = 0;
    for (const std::string& line : lines_of(text)) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

/// The words with single blanks between them.
std::string words_of(const std::string& text) {
    std::istringstream input(text);
    std::string words;
    for (std::string word; input >> word;) {
        words += (words.empty() ? "" : " ") + word;
    }
    return words;
}

}  // namespace

TEST(terminal_width, TablesFitIt) {
    for (const unsigned columns : {40U, 60U, 80U, 100U}) {
        const std::string table = shown(columns, "flash list");
        EXPECT_LE(longest_line(table), columns);
        EXPECT_GT(longest_line(table), columns / 2);
        EXPECT_TRUE(table.starts_with("index  manufacturer   device")) << table.substr(0, 100);
    }
}

TEST(terminal_width, ALastLineTellsWhatIsLeftOut) {
    const std::vector<std::string> lines = lines_of(shown(90, "hps spi"));
    ASSERT_GT(lines.size(), 2U);
    EXPECT_TRUE(contains(lines.back(), "left out: ")) << lines.back();
    EXPECT_TRUE(contains(lines.back(), "erase/program/read")) << lines.back();
    EXPECT_FALSE(contains(lines.front(), "erase/program/read")) << lines.front();
}

TEST(terminal_width, WhatIsAskedForIsNotWhatIsLeftOut) {
    const std::string list = lines_of(shown(80, "flash list")).front();
    EXPECT_EQ(list, "index  manufacturer   device       size       sector  voltage  default  switch");
    const std::vector<std::string> rows = lines_of(shown(80, "flash list --all-rows 'M45*'"));
    EXPECT_EQ(rows.front(), "row  index  manufacturer  device   size     voltage  enabled  switch");
    EXPECT_TRUE(contains(rows.at(4), "16 Mbit")) << rows.at(4);
    EXPECT_TRUE(contains(rows.back(), "left out: recognised by")) << rows.back();
}

TEST(terminal_width, WideShowsAll) {
    const std::string expected = run_command({"flash", "list"}).output;
    EXPECT_EQ(shown(40, "flash list --wide"), expected);
    EXPECT_EQ(shown(500, "flash list"), expected);
}

TEST(terminal_width, IsThatOfTheEnvironmentFirst) {
    EXPECT_EQ(shown(40, "flash list", "NO_COLOR=1 COLUMNS=500"), run_command({"flash", "list"}).output);
    EXPECT_LE(longest_line(shown(500, "flash list", "NO_COLOR=1 COLUMNS=50")), 50U);
}

TEST(terminal_width, IsEightyWhenUnknown) {
    EXPECT_EQ(shown(0, "flash list"), shown(80, "flash list"));
}

TEST(terminal_width, DoesNotCountWithoutATerminal) {
    PROCESS process{{TEST_COMMAND, "flash", "list"}, "", {{"COLUMNS", "40"}}, {}};
    EXPECT_EQ(run_process(process).output, run_command({"flash", "list"}).output);
}

TEST(terminal_width, OneLongNameWidensNothing) {
    std::vector<PGMDEV_SFL_FLASH_INFO> records(30, flash_reference::sample());
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].device_name = "CHIP" + std::to_string(i);
    }
    records[7].device_name = std::string(200, 'L');
    const FLASH_DATABASE database(records);
    const std::string directory = std::filesystem::path(database.file()).parent_path().parent_path().string();
    const std::string table = shown(120, "flash list", "NO_COLOR=1", directory);
    EXPECT_LE(longest_line(table), 120U);
    EXPECT_TRUE(contains(table, "LL..")) << table;
    EXPECT_TRUE(contains(table, "voltage")) << table;
}

TEST(terminal_width, AHeadingAloneIsFittedToo) {
    const SCRATCH scratch;
    const std::string options = "--module-dir '" + scratch.directory().string() + "' params ";
    ASSERT_EQ(run_command({"--module-dir", scratch.directory().string(), "params", "set", "0", "BYTE=1"}).exit_code,
              DONE);
    EXPECT_EQ(lines_of(shown(10, options + "show 0 WORD")).front(), "offset");
    EXPECT_EQ(lines_of(shown(12, options + "show 0 WORD")).front(), "offset  type");
    EXPECT_EQ(lines_of(shown(40, options + "show 0 WORD")).front(), "offset  type  value");
}

TEST(terminal_width, SentencesAreBrokenAtBlanks) {
    const std::string whole = run_command({"flash", "identify", "012018"}).output;
    EXPECT_GT(longest_line(whole), 120U);
    for (const unsigned columns : {48U, 80U}) {
        const std::string broken = shown(columns, "flash identify 012018");
        EXPECT_LE(longest_line(broken), columns);
        EXPECT_EQ(words_of(broken), words_of(whole));
    }
    EXPECT_EQ(shown(500, "flash identify 012018"), whole);
    EXPECT_EQ(shown(48, "flash identify 012018 --wide"), whole);
}

TEST(terminal_width, WhatAFlashSaysOfItselfIsBrokenButForTheRow) {
    const std::string dump = TEST_SFDP_DIR "/MT35XU01G.sfdp";
    std::size_t longer = 0;
    for (const std::string& line : lines_of(shown(60, "flash sfdp " + dump))) {
        longer += line.size() > 60 && !contains(line, dump) ? 1U : 0U;
    }
    EXPECT_EQ(longer, 1U) << "the row, to be copied into a table";
}

TEST(terminal_width, HeadingsAreBoldWhereColoursAreWanted) {
    const std::string bold = "\033[1mvalue  name\033[0m\n";
    EXPECT_TRUE(shown(80, "enum list sector", "A=1").starts_with(bold));
    EXPECT_TRUE(shown(80, "enum list sector", "NO_COLOR=1").starts_with("value  name\n"));
    EXPECT_TRUE(shown(80, "enum list sector", "TERM=dumb").starts_with("value  name\n"));
    EXPECT_TRUE(run_command({"enum", "list", "sector"}).output.starts_with("value  name\n"));
}
