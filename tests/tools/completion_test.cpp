#include <algorithm>

#include "command_fixture.h"

// What shells ask for while a user types.

namespace {

using WORDS = std::vector<std::string>;

/// The words that may stand in place of the last one.
WORDS completions(WORDS words) {
    words.insert(words.begin(), "__complete");
    const PROCESS_RESULT result = run_command(words);
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    WORDS found = lines_of(result.output);
    for (std::string& line : found) {
        line = line.substr(0, line.find('\t'));
    }
    return found;
}

bool has(const WORDS& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace

TEST(completion, OfNounsGroupsAndVerbs) {
    EXPECT_EQ(completions({"fl"}), WORDS{"flash"});
    EXPECT_EQ(completions({"hps", "ad"}), WORDS{"add"});
    EXPECT_EQ(completions({"hps", "add", ""}), (WORDS{"nand", "spi"}));
    EXPECT_TRUE(has(completions({"flash", ""}), "identify"));
    EXPECT_TRUE(has(completions({""}), "flash"));
    EXPECT_TRUE(has(completions({}), "flash"));
    EXPECT_EQ(completions({"nonsense-"}), WORDS{});
}

TEST(completion, OfTheVerbWhoseSchemaIsAskedFor) {
    EXPECT_EQ(completions({"schema", "fl"}), WORDS{"flash"});
    EXPECT_EQ(completions({"schema", "flash", "li"}), WORDS{"list"});
    EXPECT_EQ(completions({"schema", "sch"}), WORDS{}) << "answers in no JSON of its own";
    EXPECT_EQ(completions({"schema", "hps", "add", ""}), (WORDS{"nand", "spi"}));
    EXPECT_EQ(completions({"schema", "flash", "list", ""}), WORDS{});
    EXPECT_EQ(completions({"schema", "nonsense", ""}), WORDS{});
}

TEST(completion, TellsWhatWordsMean) {
    const PROCESS_RESULT result = run_command({"__complete", "hps", "kin"});
    EXPECT_EQ(result.output, "kinds\tThe kinds of hard processor systems\n");
}

TEST(completion, OfOptions) {
    EXPECT_EQ(completions({"--ins"}), WORDS{"--install-dir"});
    EXPECT_EQ(completions({"flash", "identify", "--sil"}), WORDS{"--silicon"});
    EXPECT_EQ(completions({"flash", "identify", "--silicon", "--sil"}), WORDS{});
    EXPECT_TRUE(has(completions({"flash", "identify", "-"}), "--json"));
    EXPECT_FALSE(has(completions({"--json", "flash", "identify", "-"}), "--json"));
    EXPECT_TRUE(has(completions({"--set", "A=1", "-"}), "--set")) << "may be repeated";
}

TEST(completion, OfNamesOfChips) {
    const WORDS chips = completions({"flash", "show", "w25q6"});
    EXPECT_TRUE(has(chips, "W25Q64JV"));
    for (const std::string& chip : chips) {
        EXPECT_TRUE(chip.starts_with("W25Q6")) << chip;
    }
    EXPECT_TRUE(has(completions({"--json", "flash", "--db-dir", TEST_DEVICES_DIR, "show", "w25q6"}), "W25Q64JV"));
}

TEST(completion, OfDeviceNamesOfEveryScheme) {
    const WORDS names = completions({"name", "show", "kes"});
    for (const char* name : {"KES50C6", "KES50", "KES_50"}) {
        EXPECT_TRUE(has(names, name)) << name;
    }
    EXPECT_TRUE(has(completions({"name", "show", "osp"}), "OSPREY-8"));
    EXPECT_TRUE(has(completions({"part", "from-device", "osp"}), "OSPREY-8"));
    EXPECT_TRUE(has(completions({"part", "from-pcf", "BLU_"}), "BLU_R35"));
    EXPECT_TRUE(has(completions({"part", "complete", "kes5"}), "KES50"));
    EXPECT_TRUE(has(completions({"opn", "index", "kes50"}), "KES50C6"));
}

TEST(completion, OfValuesOfOptions) {
    EXPECT_EQ(completions({"profile", "show", "--family", "kest"}), WORDS{"KESTREL"});
    EXPECT_TRUE(has(completions({"profile", "show", "--device", "osp"}), "OSPREY-8"));
    EXPECT_TRUE(has(completions({"profile", "show", "--part", "kes50"}), "KES50C6"));
}

TEST(completion, OfEnumerators) {
    EXPECT_EQ(completions({"enum", "list", "op"}), WORDS{"option-bit"});
    EXPECT_TRUE(has(completions({"enum", "value", "option-bit", "AES"}), "AES_KEYS"));
    EXPECT_EQ(completions({"enum", "value", "nonsense", ""}), WORDS{});
}

TEST(completion, OfMembersAndBlocks) {
    EXPECT_EQ(completions({"hps", "add", "nand", "device_i"}), WORDS{"device_id="});
    EXPECT_EQ(completions({"hps", "add", "nand", "device_id=1", "manu"}), WORDS{"manufacturer_id="});
    EXPECT_EQ(completions({"params", "read", "hps"}), (WORDS{"HPS SPI", "HPS NAND"}));
}

TEST(completion, OfColumnsOfEveryList) {
    EXPECT_EQ(completions({"part", "list", "--fields", "packa"}), (WORDS{"package_name", "package"}));
    EXPECT_EQ(completions({"part", "list", "--fields", "name,orde"}), WORDS{"name,orderable"});
    EXPECT_EQ(completions({"flash", "list", "--fields", "ind"}), WORDS{"index"});
    EXPECT_EQ(completions({"enum", "list", "--fields", ""}), (WORDS{"value", "name"}));
    EXPECT_EQ(completions({"profile", "tables", "--fields", "k"}), WORDS{"key"});
    EXPECT_EQ(completions({"flash", "dump", "--fields", "asc"}), WORDS{"asc_voltage"});
}

TEST(completion, OfWhatOptionsAskFor) {
    EXPECT_EQ(completions({"hps", "spi", "--hps", ""}), (WORDS{"HPS 1", "HPS 2"}));
    EXPECT_TRUE(has(completions({"profile", "show", "--pcf", "blu_"}), "BLU_R35"));
    EXPECT_TRUE(has(completions({"flash", "define", "--like", "w25q6"}), "W25Q64JV"));
    EXPECT_EQ(completions({"flash", "define", "program_u"}), WORDS{"program_utime="});
}

TEST(completion, LeavesFilesToTheShell) {
    EXPECT_EQ(completions({"flash", "check", ""}), WORDS{});
    EXPECT_EQ(completions({"--db-dir", ""}), WORDS{});
    EXPECT_EQ(completions({"flash", "show", "W25Q64JV", ""}), WORDS{}) << "there is no second name";
}

TEST(completion, SaysNothingWhenItFails) {
    const SCRATCH scratch;
    EXPECT_EQ(completions({"--db-dir", scratch.directory().string(), "flash", "show", ""}), WORDS{});
    EXPECT_EQ(completions({"--set", "nonsense", "flash", "show", ""}), WORDS{});
}
