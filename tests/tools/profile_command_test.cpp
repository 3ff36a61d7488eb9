#include <filesystem>

#include "command_fixture.h"
#include "dstr.h"
#include "pgmdev/profiles/fixture.h"

// The noun `profile`.

namespace {

namespace profile_ref = dev_info_reference;

const std::string SOURCE = std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv";
const std::string DATABASE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";

/// Runs the command on the database of the build, with an outbox of the test's own.
PROCESS_RESULT run_profile(const std::vector<std::string>& arguments, const std::string& input = "") {
    const SCRATCH outbox;
    std::vector<std::string> all{"--db-dir", TEST_DEVICES_DIR, "--set",
                                 "TESSARY_OUTBOX_DIR=" + outbox.directory().string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return run_command(all, input);
}

using RULE_AND_INDEX = std::pair<std::string, int>;

/// What a question is answered with.
RULE_AND_INDEX found(const std::string& option, const std::string& name) {
    const PROCESS_RESULT result = run_profile({"--json", "profile", "show", option, name});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    const JSON document = json_of(result.output);
    return {document.at("rule").get<std::string>(), document.at("index").get<int>()};
}

/// The number of the row of the source that begins so, from 0.
int row(const std::string& beginning) {
    const std::vector<std::string> lines = lines_of(read_file(SOURCE));
    for (std::size_t i = 2; i < lines.size(); ++i) {
        if (lines[i].starts_with(beginning)) {
            return static_cast<int>(i) - 2;
        }
    }
    return -1;
}

/// A real part of a programmer file, and its device.
std::pair<std::string, std::string> part_of(const std::string& pcf) {
    for (const std::string& line : lines_of(read_file(std::string(TEST_DEVICES_DIR) + "/../h/pgm_parts.txt"))) {
        std::istringstream stream(line);
        std::string part;
        std::string device;
        stream >> part >> device;
        if (line.ends_with(" " + pcf)) {
            return {part, device};
        }
    }
    return {};
}

}  // namespace

TEST(profile_show, SaysWhichRuleFoundTheRecord) {
    EXPECT_EQ(found("--family", "kestrel"), (RULE_AND_INDEX{"family", row("KESTREL,")}));
    EXPECT_EQ(found("--family", "Generic"), (RULE_AND_INDEX{"family", 1}));
    EXPECT_EQ(found("--family", "Corncrake"), (RULE_AND_INDEX{"generic", 1}));
    EXPECT_EQ(found("--device", "Generic"), (RULE_AND_INDEX{"device", row(",,GENERIC,")}));
    EXPECT_EQ(found("--part", "Generic"), (RULE_AND_INDEX{"part", row(",,,GENERIC")}));
    const auto [part, device] = part_of("KES_R30");
    ASSERT_NE(part, "");
    EXPECT_EQ(found("--part", part), (RULE_AND_INDEX{"pcf", row(",KES_R30,")}));
    EXPECT_EQ(found("--device", device), (RULE_AND_INDEX{"pcf", row(",KES_R30,")}));
    const auto [other, ignored] = part_of("KES_12");
    EXPECT_EQ(found("--part", other), (RULE_AND_INDEX{"family", row("KESTREL,")}));
    const auto [stranded, none] = part_of("CRN_C15");
    EXPECT_EQ(found("--part", stranded), (RULE_AND_INDEX{"generic", 1}));
}

TEST(profile_show, GivesTheMembersInRecordOrder) {
    const PROCESS_RESULT result = run_profile({"--json", "profile", "show", "--family", "KESTREL"});
    const JSON document = json_of(result.output);
    std::vector<std::string> keys{"query", "found", "index", "rule"};
    for (const profile_ref::COLUMN& column : profile_ref::COLUMNS) {
        keys.emplace_back(column.name);
    }
    EXPECT_EQ(keys_of(document), keys);
    EXPECT_EQ(document["family"], "KESTREL");
    EXPECT_EQ(document["pcf"], "");
    EXPECT_EQ(document["device"], nullptr);
    EXPECT_EQ(document["ekp_alg_family"], "DEV_FAMILY_KESTREL");
    EXPECT_EQ(document["cmp_fbgen_start_block"], "NPCF_BLOCK_CB_HEADER2");
    EXPECT_EQ(document["default_prog_mode"], nullptr);
    EXPECT_EQ(document["use_sdm"], false);
    EXPECT_EQ(document["aes_n_v_key_bits"], 256);
}

TEST(profile_show, ForPeople) {
    const PROCESS_RESULT result = run_profile({"profile", "show", "--family", "Corncrake"});
    const std::vector<std::string> lines = lines_of(result.output);
    ASSERT_EQ(lines.size(), dev_info_reference::MEMBERS + 1);
    EXPECT_EQ(
        lines[0],
        "family Corncrake: record 1, keyed by family GENERIC, found as a stand-in, because its family has no record");
    EXPECT_EQ(lines[1], "  family = 72 (GENERIC)");
    EXPECT_EQ(lines.back(), "  dummy_bool = FALSE");
}

TEST(profile_show, NamesThatAreNotKnown) {
    expect_failure(run_profile({"profile", "show", "--family", "dodo"}), NOT_FOUND, {"no family is named \"dodo\""});
    expect_failure(run_profile({"profile", "show", "--part", "dodo"}), NOT_FOUND, {"no part is named \"dodo\""});
    expect_failure(run_profile({"profile", "show", "--device", ""}), NOT_FOUND, {"no device is named \"\""});
    expect_failure(run_profile({"profile", "show"}), WRONG_USAGE, {"--family, --device and --part"});
    expect_failure(run_profile({"profile", "show", "--family", "Kestrel", "--part", "x"}), WRONG_USAGE, {"one of"});
}

TEST(profile_show, ABatch) {
    const PROCESS_RESULT result =
        run_profile({"--json", "profile", "show", "--family", "-"}, "Kestrel\n\n dodo \nheron\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const std::vector<JSON> documents = json_lines_of(result.output);
    ASSERT_EQ(documents.size(), 4U);
    EXPECT_EQ(documents[0]["family"], "KESTREL");
    EXPECT_EQ(documents[1], refused_line("", BLANK_LINE));
    EXPECT_EQ(documents[2], missing_answer(" dodo ", {{"index", nullptr}, {"rule", nullptr}, {"family", "dodo"}}));
    EXPECT_EQ(documents[3]["family"], "HERON");
}

TEST(profile_list, AllRecords) {
    const JSON document = json_of(run_profile({"--json", "profile", "list"}).output);
    ASSERT_EQ(document.size(), 78U);
    EXPECT_EQ(document[1]["index"], 1);
    EXPECT_EQ(document[1]["family"], "GENERIC");
    EXPECT_EQ(document[1].size(), dev_info_reference::MEMBERS + 1);
    const std::vector<std::string> lines = lines_of(run_profile({"profile", "list"}).output);
    ASSERT_EQ(lines.size(), 79U);
    EXPECT_TRUE(lines[2].starts_with("1      family GENERIC"));
}

TEST(profile_compile, ThereAndBack) {
    const SCRATCH scratch;
    const std::string pcf = scratch.path("out.pcf");
    const PROCESS_RESULT result = run_profile({"--json", "profile", "compile", SOURCE, pcf});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(json_of(result.output)["records"], 78);
    EXPECT_EQ(read_file(pcf), read_file(DATABASE));
    EXPECT_EQ(run_profile({"profile", "dump", pcf, "--csv"}).output, read_file(SOURCE));
    EXPECT_EQ(run_profile({"--json", "profile", "dump", pcf}).output,
              run_profile({"--json", "profile", "list"}).output);
}

TEST(profile_compile, ATableWithFaultsLeavesTheOutput) {
    const SCRATCH scratch;
    std::string text = read_file(SOURCE);
    const std::string csv = scratch.write("t.csv", text.replace(text.find("\nKESTREL,") + 1, 7, "DODO___"));
    const std::string pcf = scratch.write("out.pcf", std::string(profile_ref::MAGIC) + "old");
    expect_failure(
        run_profile({"profile", "compile", csv, pcf}), INTERNAL_ERROR,
        {"row family DODO___: member family: found \"DODO___\"", "[found", "pgm/pgmdev/pgmdev_dev_info_manager"});
    EXPECT_EQ(read_file(pcf), std::string(profile_ref::MAGIC) + "old");
    EXPECT_EQ(scratch.file_count(), 2U);
}

TEST(profile_check, TellsEveryFault) {
    const SCRATCH scratch;
    std::string text = read_file(SOURCE);
    text.replace(text.find("\nKESTREL,") + 1, 7, "DODO___");
    const std::string csv = scratch.write("t.csv", text + "x\n");
    const PROCESS_RESULT result = run_profile({"--json", "profile", "check", csv});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    const JSON document = json_of(result.output);
    EXPECT_EQ(document["records"], 0);
    ASSERT_EQ(document["faults"].size(), 3U);
    EXPECT_EQ(keys_of(document["faults"][1]), (std::vector<std::string>{"severity", "line", "column", "row", "member",
                                                                        "cell", "condition", "expected"}));
    const std::string unreviewed = scratch.write("good.csv", read_file(SOURCE));  // without accepted warnings beside it
    const PROCESS_RESULT good = run_profile({"profile", "check", unreviewed});
    EXPECT_EQ(good.exit_code, DONE);
    EXPECT_TRUE(good.output.starts_with("78 records, "));
    EXPECT_TRUE(contains(good.errors, "warning: family CORNCRAKE has no row"));
}

TEST(profile_dump, WhatNoSourceTableCanHold) {
    const SCRATCH scratch;
    const auto dump = [&](const std::vector<profile_ref::CELLS>& rows, bool csv) {
        const std::string pcf = scratch.write(
            "x.pcf", profile_ref::file(profile_ref::records(rows) + profile_ref::tables(profile_ref::TABLES())));
        std::vector<std::string> arguments{"profile", "dump", pcf};
        if (csv) {
            arguments.emplace_back("--csv");
        }
        return run_profile(arguments);
    };
    std::vector<profile_ref::CELLS> rows = profile_ref::rows();
    EXPECT_EQ(dump(rows, true).exit_code, DONE);
    rows[5][81] = "two words";
    expect_failure(dump(rows, true), INTERNAL_ERROR, {"record 5: dummy_string \"two words\""});
    rows[5] = profile_ref::sample("KESTREL");
    rows[5][1] = "PCF";
    expect_failure(dump(rows, true), INTERNAL_ERROR, {"record 5 has 2 keys"});
    rows.pop_back();
    expect_failure(dump(rows, true), INTERNAL_ERROR, {"77 records"});
    EXPECT_EQ(dump(rows, false).exit_code, DONE);
    expect_failure(run_profile({"profile", "dump", scratch.path("missing")}), INTERNAL_ERROR,
                   {"the profile database cannot be read", "there is no such file"});
}
