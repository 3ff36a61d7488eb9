#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "dstr.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "stl.h"
#include "support/reports.h"
#include "tools/command_fixture.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

std::string upper(std::string text) {
    stl_toupper(text);
    return text;
}

std::string lower(std::string text) {
    stl_tolower(text);
    return text;
}

std::string part_name(int part) {
    return upper(dstr_get_user_string(part));
}

/// The first part that a test can use; none fails the test.
std::string part_where(const std::function<bool(const std::string&)>& holds) {
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        if (std::string name = part_name(part); !name.empty() && holds(name)) {
            return name;
        }
    }
    ADD_FAILURE() << "the catalog has no such part";
    return "NONE";
}

/// A part that has a package name and a programming name of its own.
std::string ordinary_part() {
    return part_where([](const std::string& name) {
        const std::string package_name = GRAMMAR::get_package_name(name, true);
        return !package_name.empty() && package_name != name && GRAMMAR::get_pgm_name(name, false, true).size() >= 5;
    });
}

/// A part with an ordering-code index.
std::string ordered_part() {
    return part_where([](const std::string& name) { return PGMDEV_MGR::get_opn_enum(name) != INVALID_DWORD; });
}

std::string all_parts() {
    std::string lines;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const std::string name = part_name(part);
        lines += name.empty() ? "" : name + "\n";
    }
    return lines;
}

TEST(NameCommand, ShowsEverySpelling) {
    const std::string name = ordinary_part();
    const std::string package_name = GRAMMAR::get_package_name(name, false);
    const std::string pgm_name = GRAMMAR::get_pgm_name(name, false, false);
    const PROCESS_RESULT result = run_command({"--json", "name", "show", " " + lower(name)});
    EXPECT_EQ(result.exit_code, DONE);
    const JSON answer = json_of(result.output);
    EXPECT_EQ(keys_of(answer),
              (std::vector<std::string>{"query", "found", "name", "package_name", "pgm_name", "pgm_part_pcf",
                                        "pgm_family_pcf", "dev_part_pcf", "dev_family_pcf", "pcf_family_pcf", "family",
                                        "pcf_device", "use_full_name", "use_package_name", "possible_full_name"}));
    EXPECT_EQ(answer["name"], name);
    EXPECT_EQ(answer["package_name"], package_name);
    EXPECT_EQ(answer["pgm_name"], pgm_name);
    EXPECT_EQ(answer["pgm_part_pcf"], GRAMMAR::get_pgm_part_pcf(pgm_name));
    EXPECT_EQ(answer["pgm_family_pcf"], GRAMMAR::get_pgm_family_pcf(pgm_name));
    EXPECT_EQ(answer["family"], GRAMMAR::get_family(pgm_name));
    EXPECT_EQ(answer["use_full_name"], false);
    EXPECT_EQ(answer["possible_full_name"], PGMDEV_MGR::get_possible_full_name(name));

    const JSON package = json_of(run_command({"--json", "name", "show", package_name}).output);
    EXPECT_EQ(package["package_name"], package_name);
    EXPECT_EQ(package["pgm_name"], pgm_name);
    EXPECT_EQ(package["possible_full_name"], PGMDEV_MGR::get_possible_full_name(package_name));
}

TEST(NameCommand, ShowsTextToPeople) {
    const std::string name = ordinary_part();
    const PROCESS_RESULT result = run_command({"name", "show", name});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(contains(result.output, "package name "));
    EXPECT_TRUE(contains(result.output, GRAMMAR::get_package_name(name, false) + "\n"));
}

TEST(NameCommand, SuggestsNamesThatAreNearlyRight) {
    const std::string name = ordinary_part();
    std::string swapped = name;
    std::swap(swapped[name.size() - 1], swapped[name.size() - 2]);
    for (const std::string& typed : {name + "0", name.substr(0, name.size() - 1) + "#", "x" + name, swapped}) {
        expect_failure(run_command({"name", "show", typed}), NOT_FOUND,
                       {"no device is named \"" + typed + "\"", "did you mean ", name});
    }
    const PROCESS_RESULT strange = run_command({"name", "show", "@@@@@@@@@@@@@@@@@@@@"});
    expect_failure(strange, NOT_FOUND, {"no device is named"});
    const JSON answer = json_of(run_command({"--json", "name", "show", swapped}).output);
    EXPECT_EQ(answer["found"], false);
    EXPECT_NE(std::find(answer["candidates"].begin(), answer["candidates"].end(), name), answer["candidates"].end());
    EXPECT_FALSE(contains(strange.errors, "did you mean"));
}

TEST(NameCommand, PassesOverAByteOrderMarkBeforeABatch) {
    const PROCESS_RESULT batch = run_command({"--json", "name", "show", "-"}, "\xEF\xBB\xBFKES50C6\r\nKES50C6\n");
    EXPECT_EQ(batch.exit_code, DONE) << batch.errors;
    const std::vector<JSON> answers = json_lines_of(batch.output);
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].at("query"), "KES50C6");
    EXPECT_EQ(answers[0], answers[1]);
}

TEST(NameCommand, AByteOrderMarkAloneIsNoLine) {
    for (const std::vector<std::string>& verb :
         {std::vector<std::string>{"name", "show", "-"}, {"part", "info", "-"}}) {
        const PROCESS_RESULT nothing = run_command(verb, "\xEF\xBB\xBF");
        EXPECT_EQ(nothing.exit_code, DONE);
        EXPECT_EQ(nothing.output + nothing.errors, "");
        for (const std::string input : {"\xEF\xBB\xBF\n", "\n", "KES50C6\n\xEF\xBB\xBF"}) {
            EXPECT_EQ(run_command(verb, input).exit_code, NOT_FOUND) << input;
        }
    }
}

TEST(NameCommand, AnswersABatchLineByLine) {
    const std::string name = ordinary_part();
    const PROCESS_RESULT result =
        run_command({"--json", "name", "show", "-"}, lower(name) + "\n\n  no_such_name \r\n" + name);
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const std::vector<JSON> answers = json_lines_of(result.output);
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers[0], json_of(run_command({"--json", "name", "show", lower(name)}).output));
    EXPECT_EQ(answers[1], refused_line("", BLANK_LINE));
    EXPECT_EQ(answers[2]["query"], "  no_such_name ");
    EXPECT_EQ(answers[2]["found"], false);
    EXPECT_EQ(answers[2]["name"], "NO_SUCH_NAME");
    EXPECT_EQ(answers[2]["package_name"], "");
    EXPECT_EQ(answers[3], json_of(run_command({"--json", "name", "show", name}).output));
}

TEST(NameCommand, AnswersForAllPartsAtOnce) {
    const PROCESS_RESULT result = run_command({"--json", "name", "show", "-"}, all_parts());
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(lines_of(result.output).size(), lines_of(all_parts()).size());
}

TEST(PartCommand, CompletesNames) {
    const std::string name = ordinary_part();
    for (const std::string& asked :
         {name, GRAMMAR::get_package_name(name, false), GRAMMAR::get_pgm_name(name, false, false)}) {
        const std::string expected = PGMDEV_MGR::get_possible_full_name(asked);
        const PROCESS_RESULT result = run_command({"--json", "part", "complete", lower(asked)});
        EXPECT_EQ(result.exit_code, DONE);
        EXPECT_EQ(json_of(result.output), found_answer(lower(asked), JSON{{"name", lower(asked)}, {"part", expected}}));
        EXPECT_EQ(run_command({"part", "complete", asked}).output, expected + "\n");
    }
    expect_failure(run_command({"part", "complete", name + "0"}), NOT_FOUND, {"did you mean ", name});
}

TEST(PartCommand, FindsPartsOfDevices) {
    const std::string device = dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(1));
    const PROCESS_RESULT result = run_command({"--json", "part", "from-device", lower(device)});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(json_of(result.output),
              found_answer(lower(device), JSON{{"name", lower(device)},
                                               {"part", PGMDEV_MGR::get_part_name_from_dev(device)},
                                               {"hidden", false}}));
    const PROCESS_RESULT unknown = run_command({"part", "from-device", device + "#"});
    expect_failure(unknown, NOT_FOUND, {"did you mean ", upper(device)});
    EXPECT_FALSE(contains(unknown.errors, "internal error"));
}

TEST(PartCommand, FindsHiddenPartsOfDevicesThatHaveNoOthers) {
    EXPECT_EQ(PGMDEV_MGR::get_part_name_from_dev("AVORT35"), "");
    const PROCESS_RESULT result = run_command({"part", "from-device", "avort35"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.output, "AVORT35B256C7\n");
    EXPECT_TRUE(contains(result.errors, "has hidden parts only")) << result.errors;
    EXPECT_EQ(run_command({"-q", "part", "from-device", "AVORT35"}).errors, "");
    EXPECT_EQ(json_of(run_command({"--json", "part", "from-device", "AVORT35"}).output),
              found_answer("AVORT35", JSON{{"name", "AVORT35"}, {"part", "AVORT35B256C7"}, {"hidden", true}}));
}

TEST(PartCommand, SaysThatADeviceHasNoPart) {
    expect_failure(run_command({"part", "from-device", "KESR50"}), NOT_FOUND,
                   {"the device \"KESR50\" has no part: only programmer files may name it"});
    EXPECT_EQ(GRAMMAR::get_family(std::string("KESR50")), "KESTREL");
}

TEST(PartCommand, FindsPartsOfProgrammerFileParts) {
    const std::string name = part_where([](const std::string& part) {
        const std::string pcf = GRAMMAR::get_pgm_part_pcf(part);
        return !pcf.empty() && !PGMDEV_MGR::get_part_name_from_pcf(pcf).empty();
    });
    const std::string pcf = GRAMMAR::get_pgm_part_pcf(name);
    const std::string expected = PGMDEV_MGR::get_part_name_from_pcf(pcf);
    EXPECT_EQ(run_command({"part", "from-pcf", lower(pcf)}).output, expected + "\n");
    expect_failure(run_command({"part", "from-pcf", pcf + "#"}), NOT_FOUND, {pcf});
    const std::string nameless = "pgmdev: there is no part with the programmer-file part name \"\"";
    EXPECT_TRUE(run_command({"part", "from-pcf", ""}).errors.starts_with(nameless));
    expect_failure(run_command({"part", "from-pcf", " ", "--all"}), NOT_FOUND, {nameless});
    expect_failure(run_command({"part", "from-pcf", "BLUEBIRD_RT180_PRE", "--all"}), NOT_FOUND,
                   {"its devices have no parts"});

    const PROCESS_RESULT batch = run_command({"--json", "part", "from-pcf", "-"}, pcf + "\nnone_such\n");
    EXPECT_EQ(batch.exit_code, NOT_FOUND);
    EXPECT_EQ(json_lines_of(batch.output),
              (std::vector<JSON>{found_answer(pcf, {{"name", pcf}, {"part", expected}}),
                                 missing_answer("none_such", {{"name", "none_such"}, {"part", nullptr}})}));
}

TEST(OpnCommand, TranslatesBetweenIndexNameAndHash) {
    const std::string name = ordered_part();
    const DWORD index = PGMDEV_MGR::get_opn_enum(name);
    const QWORD hash = PGMDEV_MGR::get_opn_hash(name);
    const JSON expected{{"index", index}, {"name", name}, {"hash", hash}};
    const std::string hash_text = std::to_string(hash);
    for (const auto& question : {std::pair<std::string, std::string>{"name", std::to_string(index)},
                                 {"index", lower(name)},
                                 {"hash", lower(name)},
                                 {"from-hash", hash_text}}) {
        const PROCESS_RESULT single = run_command({"--json", "opn", question.first, question.second});
        EXPECT_EQ(single.exit_code, DONE) << question.first;
        EXPECT_EQ(json_of(single.output), found_answer(question.second, expected)) << question.first;
        const PROCESS_RESULT batch = run_command({"--json", "opn", question.first, "-"}, question.second);
        EXPECT_EQ(json_lines_of(batch.output), std::vector<JSON>{found_answer(question.second, expected)})
            << question.first;
    }
}

TEST(OpnCommand, HashesAreReadInHexadecimalToo) {
    const std::string text = run_command({"opn", "hash", ordered_part()}).output;
    const std::string hash = text.substr(text.find("0x"), 14);
    EXPECT_EQ(run_command({"opn", "from-hash", hash}).output, text);
    EXPECT_EQ(run_command({"opn", "from-hash", "0xFFFF" + hash.substr(2)}).output, text);
}

TEST(OpnCommand, SaysWhatIsNotFound) {
    expect_failure(run_command({"opn", "name", "0xFFFFFFFE"}), NOT_FOUND, {"index 4294967294"});
    expect_failure(run_command({"opn", "from-hash", "0"}), NOT_FOUND, {"hash 0"});
    const std::string name = ordered_part();
    for (const char* verb : {"index", "hash"}) {
        expect_failure(run_command({"opn", verb, name + "#"}), NOT_FOUND, {"no part is named", "did you mean ", name});
    }
    const std::string unordered =
        part_where([](const std::string& part) { return PGMDEV_MGR::get_opn_enum(part) == INVALID_DWORD; });
    expect_failure(run_command({"opn", "index", unordered}), NOT_FOUND, {"has no ordering-code index"});
    EXPECT_EQ(json_lines_of(run_command({"--json", "opn", "hash", "-"}, "no_such\n").output),
              (std::vector<JSON>{
                  missing_answer("no_such", JSON{{"index", nullptr}, {"name", "NO_SUCH"}, {"hash", nullptr}})}));
}

TEST(OpnCommand, RefusesWhatIsNoNumber) {
    for (const char* text : {"x", "-1", "4294967296", "1 2"}) {
        expect_failure(run_command({"opn", "name", "--", text}), WRONG_USAGE, {"ordering-code index"});
    }
    for (const char* text : {"x", "0x", "0xG", "18446744073709551616"}) {
        expect_failure(run_command({"opn", "from-hash", text}), WRONG_USAGE, {"is not a hash"});
    }
}

TEST(EnumCommand, TranslatesBetweenNamesAndValues) {
    EXPECT_EQ(run_command({"enum", "name", "sector", "8"}).output, "DONE_BITS\n");
    EXPECT_EQ(run_command({"enum", "value", "option-bit", "aes_keys"}).output, "21\n");
    EXPECT_EQ(json_of(run_command({"--json", "enum", "name", "block", "0x8"}).output),
              found_answer("0x8", JSON{{"value", 8}, {"name", "CC_CS_VIO"}}));
    EXPECT_EQ(json_of(run_command({"--json", "enum", "value", "sof-setting", "sof_file_error_rev4"}).output)["value"],
              11);
    EXPECT_EQ(run_command({"enum", "value", "sector", ""}).output, "0\n");
}

TEST(EnumCommand, ListsAllValues) {
    const std::pair<const char*, std::size_t> sizes[]{
        {"block", 75}, {"sector", 8}, {"option-bit", 42}, {"sof-setting", 20}};
    for (const auto& [type, size] : sizes) {
        const JSON list = json_of(run_command({"--json", "enum", "list", type}).output);
        ASSERT_EQ(list.size(), size) << type;
        EXPECT_EQ(list[0]["value"], 1);
        EXPECT_EQ(list[size - 1]["value"], size);
        EXPECT_EQ(lines_of(run_command({"enum", "list", type}).output).size(), size + 1);
    }
}

TEST(EnumCommand, SaysWhatIsNotFoundAndWhatIsWrong) {
    expect_failure(run_command({"enum", "name", "sector", "9"}), NOT_FOUND, {"sector has no name for the value 9"});
    expect_failure(run_command({"enum", "name", "sector", "0"}), NOT_FOUND, {"value 0"});
    expect_failure(run_command({"enum", "value", "option-bit", "AES_KYES"}), NOT_FOUND, {"did you mean AES_KEYS"});
    expect_failure(run_command({"enum", "list", "colour"}), WRONG_USAGE, {"block, sector, option-bit, sof-setting"});
    expect_failure(run_command({"enum", "name", "sector", "x"}), WRONG_USAGE, {"\"x\" is not a value"});
    EXPECT_EQ(json_lines_of(run_command({"--json", "enum", "name", "sector", "-"}, "1\n9\n").output),
              (std::vector<JSON>{found_answer("1", {{"value", 1}, {"name", "UFM1"}}),
                                 missing_answer("9", {{"value", 9}, {"name", nullptr}})}));
}

}  // namespace
