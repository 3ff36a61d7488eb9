#include <algorithm>
#include <map>
#include <set>

#include "dev.h"
#include "tools/command_fixture.h"

// Lists with filters, and everything about a name.

namespace {

JSON listed(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--json");
    return json_of(run_command(arguments).output);
}

TEST(PartList, FiltersAsTheDeviceLibraryDoes) {
    const JSON rows = listed({"part", "list", "kes50?c*", "--family", "kestrel", "--speed", "6", "--temperature",
                              "commercial", "--package", "pqfp", "--pins", "160"});
    for (const JSON& row : rows) {
        EXPECT_EQ(row["family"], "KESTREL");
        EXPECT_TRUE(row["name"].get<std::string>().starts_with("KES50")) << row;
        EXPECT_EQ(row["hidden"], false);
    }
    const JSON hidden = listed({"part", "list", "KES50C6", "--hidden"});
    ASSERT_EQ(hidden.size(), 1U);
    EXPECT_EQ(hidden[0], (JSON{{"name", "KES50C6"},
                               {"number", 1166},
                               {"device", "KES50"},
                               {"family", "KESTREL"},
                               {"package_name", "KES50"},
                               {"pgm_name", "KES50"},
                               {"pgm_part_pcf", "KES_50"},
                               {"orderable", true},
                               {"production", true},
                               {"hidden", true},
                               {"package", "LQFP"},
                               {"pins", 144},
                               {"speed", 6},
                               {"temperature", "COMMERCIAL"}}));
    EXPECT_EQ(listed({"part", "list", "KES50C6"}), JSON::array());
}

TEST(PartList, NamesTheFilterThatNothingPasses) {
    expect_failure(run_command({"part", "list", "--family", "kestral"}), NOT_FOUND,
                   {"no part passes --family kestral; did you mean KESTREL"});
    const std::pair<std::vector<std::string>, std::string> nearest_values[]{
        {{"--package", "FGBA"}, "no part passes --package FGBA; did you mean FBGA"},
        {{"--package", "elephant"}, "no part passes --package elephant; there are BGA, "},
        {{"--pins", "1000"}, "no part passes --pins 1000; did you mean 896, 1152"},
        {{"--pins", "99999"}, "no part passes --pins 99999; did you mean 2397"},
        {{"--speed", "0"}, "no part passes --speed 0; did you mean 1"},
        {{"--temperature", "INDUSTRAIL"}, "no part passes --temperature INDUSTRAIL; did you mean INDUSTRIAL"}};
    for (const auto& [filter, expected] : nearest_values) {
        std::vector<std::string> arguments{"device", "list"};
        arguments.insert(arguments.end(), filter.begin(), filter.end());
        expect_failure(run_command(arguments), NOT_FOUND, {expected});
    }
}

TEST(PartList, TellsOfADeviceWithoutParts) {
    EXPECT_EQ(listed({"device", "list", "--device", "kesr50", "--fields", "name,parts"}),
              json_of(R"([{"name": "KESR50", "parts": 0}])"));
    expect_failure(run_command({"part", "list", "--device", "kesr50"}), NOT_FOUND,
                   {"no part passes --device kesr50: there is that device, but only programmer files may name it\n"});
    expect_failure(run_command({"device", "list", "--device", "KESR50", "--production"}), NOT_FOUND,
                   {"KESR50: there is"});
    expect_failure(run_command({"part", "list", "--device", "KESR5"}), NOT_FOUND,
                   {"no part passes --device KESR5; did"});
}

TEST(PartList, TellsOfEachPartWhatItCanBeFilteredBy) {
    const JSON rows = listed({"part", "list", "--hidden"});
    std::map<std::string, std::set<std::string>> values;
    for (const JSON& row : rows) {
        for (const char* key : {"package", "pins", "speed", "temperature"}) {
            EXPECT_FALSE(row.at(key).is_null()) << row;
            values[key].insert(text_of(row.at(key)));
        }
    }
    const DEV_PART_MANAGER manager;
    for (const auto& [key, all] : values) {
        for (const std::string& value : all) {
            const auto filter = [&, &name = key](const char* filtered) { return name == filtered ? value : "ANY"; };
            std::vector<int> expected;
            manager.filter_part_list(&expected, "ANY", "ANY", filter("package"), filter("pins"), filter("speed"), false,
                                     false, true, filter("temperature"));
            std::vector<int> found;
            for (const JSON& row : rows) {
                if (text_of(row.at(key)) == value) {
                    found.push_back(row.at("number").get<int>());
                }
            }
            EXPECT_EQ(found, expected) << key << " " << value;
        }
    }
}

TEST(PartInfo, TellsEverythingAboutAPart) {
    const JSON info = listed({"part", "info", " kes50c6 "});
    EXPECT_EQ(info["query"], " kes50c6 ");
    EXPECT_EQ(info["found"], true);
    EXPECT_EQ(info["scheme"], "name");
    EXPECT_EQ(info["name"], "KES50C6");
    EXPECT_EQ(info["device"], "KES50");
    EXPECT_EQ(info["family"], "KESTREL");
    EXPECT_EQ(info["opn_index"], 1337);
    EXPECT_EQ(info["opn_hash"], 0xDCB59F75E910);
    EXPECT_EQ(info.at("number"), 1166);
    for (const char* key : {"orderable", "production", "hidden"}) {
        EXPECT_EQ(info.at(key), true) << key;
    }
    EXPECT_EQ(info["profile"], (JSON{{"index", 41}, {"rule", "family"}, {"key", "family KESTREL"}}));
    EXPECT_EQ(info["parts"], JSON{"KES50C6"});
    EXPECT_EQ(info["package"], "LQFP");
    EXPECT_EQ(info["pins"], 144);
    EXPECT_EQ(info["speed"], 6);
    EXPECT_EQ(info["temperature"], "COMMERCIAL");
}

TEST(PartInfo, TellsWhatAllPartsHaveAlike) {
    const JSON info = listed({"part", "info", "KES75F169"});
    EXPECT_GT(info["parts"].size(), 1U);
    EXPECT_EQ(info["package"], "FBGA");
    EXPECT_EQ(info["pins"], 169);
    EXPECT_EQ(info["speed"], nullptr);
    EXPECT_EQ(info.at("production"), nullptr);
}

TEST(PartInfo, TellsWhichSchemeANameBelongsTo) {
    const std::pair<const char*, const char*> schemes[]{{"KES75F169", "package_name"},
                                                        {"KES75D", "pgm_name"},
                                                        {"OSPREY-8", "device"},
                                                        {"KES_50", "pgm_part_pcf"},
                                                        {"KESTREL_PCF", "pgm_family_pcf"},
                                                        {"AVOCET", "family"},
                                                        {"KES75-F169-C4", "alias"}};
    for (const auto& [name, scheme] : schemes) {
        const JSON info = listed({"part", "info", name});
        EXPECT_EQ(info["scheme"], scheme) << name;
        EXPECT_FALSE(info["parts"].empty()) << name;
    }
    EXPECT_EQ(listed({"part", "info", "KES75-F169-C4"})["parts"], JSON{"KES75F169C4"});
    expect_failure(run_command({"part", "info", "KES5O"}), NOT_FOUND, {"did you mean KES50"});
}

TEST(PartInfo, WithoutProfilesTheCatalogAnswers) {
    const JSON whole = listed({"part", "info", "KES50C6"});
    const SCRATCH scratch;
    const std::vector<std::string> here{"--db-dir", scratch.directory().string(), "--json", "part", "info"};
    const auto asked = [&here](const std::string& name, const std::string& input) {
        std::vector<std::string> arguments = here;
        arguments.push_back(name);
        return run_command(arguments, input);
    };
    for (const char* code : {"database_missing", "database_damaged"}) {
        const PROCESS_RESULT result = asked("KES50C6", "");
        EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
        JSON info = json_of(result.output);
        EXPECT_EQ(info["error"]["code"], code);
        EXPECT_TRUE(contains(result.errors, info["error"]["message"].get<std::string>())) << result.errors;
        EXPECT_EQ(info["profile"], nullptr);
        info.erase("error");
        info["profile"] = whole["profile"];
        info["query"] = whole["query"];
        EXPECT_EQ(info, whole);

        const PROCESS_RESULT batch = asked("-", "KES50C6\nno such name\nKES50C6\n");
        EXPECT_EQ(batch.exit_code, INTERNAL_ERROR);
        EXPECT_EQ(lines_of(batch.errors).size(), 2U) << batch.errors;  // what is wrong with the database once
        const std::vector<std::string> lines = lines_of(batch.output);
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_EQ(json_of(lines[0]), json_of(lines[2]));
        EXPECT_EQ(json_of(lines[0])["error"]["code"], code);
        EXPECT_FALSE(json_of(lines[1]).contains("error"));
        EXPECT_EQ(asked("no such name", "").exit_code, NOT_FOUND);           // no profile is looked for
        const std::string of_families = asked("-", "KESTREL_PCF\n").output;  // nor one of parts of several families
        EXPECT_FALSE(json_of(of_families).contains("error"));
        EXPECT_EQ(lines_of(asked("-", "KES50C6\nKESTREL_PCF\n").output).at(1) + "\n", of_families);
        scratch.write("programmer/pgm_dev_info.pcf", "PGMIO_DM");
    }
    const PROCESS_RESULT people = run_command({"--db-dir", scratch.directory().string(), "part", "info", "KES50C6"});
    EXPECT_EQ(people.exit_code, INTERNAL_ERROR);
    EXPECT_TRUE(contains(people.output, "LQFP"));
    EXPECT_FALSE(contains(people.output, "profile"));
    EXPECT_TRUE(
        people.errors.starts_with("pgmdev: the profile database cannot be read, since it is cut after 8 bytes"));
}

TEST(PartFromPcf, TellsTheDifferenceBetweenOneAndAll) {
    expect_failure(run_command({"part", "from-pcf", "KES_50"}), NOT_FOUND, {"--all lists the 40 parts"});
    const JSON all = listed({"part", "from-pcf", "kes_50", "--all"});
    EXPECT_EQ(all["part"], nullptr);
    EXPECT_EQ(all["parts"].size(), 40U);
    const JSON both = listed({"part", "from-pcf", "BLU_R35", "--all"});
    EXPECT_NE(std::find(both["parts"].begin(), both["parts"].end(), both["part"]), both["parts"].end());
}

TEST(FlashList, ChoosesRecords) {
    const JSON rows =
        listed({"flash", "list", "w25q*", "--maker", "winbond", "--size", "128 mbit", "--voltage", "1.8"});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["device_name"], "W25Q128JW");
    EXPECT_EQ(rows[1]["device_name"], "W25Q128JWM");
    expect_failure(run_command({"flash", "list", "--size", "3x"}), WRONG_USAGE, {"\"3x\" is not a size"});
    expect_failure(run_command({"flash", "list", "no*such"}), NOT_FOUND, {"no*such"});
    expect_failure(run_command({"flash", "list", "--maker", "Winbnod", "--voltage", "9V"}), NOT_FOUND,
                   {"none passes --maker Winbnod; did you mean Winbond; none passes --voltage 9V"});
    expect_failure(run_command({"flash", "list", "--maker", "winb"}), NOT_FOUND,
                   {"none passes --maker winb; did you mean Winbond\n"});
    expect_failure(run_command({"flash", "list", "--voltage", "9", "--maker", "w*"}), NOT_FOUND,
                   {"passes all filters; none passes --voltage 9; there are 1.2V, 1.8V, 3.3V\n"});
    expect_failure(run_command({"-q", "flash", "list", "--voltage", "9"}), NOT_FOUND, {"none passes --voltage 9\n"});
    expect_failure(run_command({"flash", "list", "--size", "3"}), NOT_FOUND,
                   {"none passes --size 3; did you mean 2 Mbit, 4 Mbit\n"});
    expect_failure(run_command({"flash", "list", "--size", "1bit"}), NOT_FOUND,
                   {"none passes --size 1bit; did you mean 512 Kbit\n"});
    expect_failure(run_command({"part", "list", "KES50C6"}), NOT_FOUND, {"with --hidden there is 1"});
}

TEST(FlashList, ShowsSwitchedOffRowsWithTheirSwitch) {
    const JSON off = listed({"flash", "list", "M45PE80", "--all-rows"});
    ASSERT_FALSE(off.empty());
    EXPECT_EQ(off[0]["index"], nullptr);
    EXPECT_EQ(off[0]["enabled"], false);
    EXPECT_EQ(off[0]["switch"], "PGM_ALLOW_M45PE");
    const JSON on = listed({"--set", "PGM_ALLOW_M45PE=on", "flash", "list", "M45PE80", "--all-rows"});
    EXPECT_EQ(on[0]["enabled"], true);
    const JSON enabled = listed({"--set", "PGM_ALLOW_M45PE=on", "flash", "list", "M45PE80"});
    EXPECT_EQ(on[0]["index"], enabled[0]["index"]);
    expect_failure(run_command({"flash", "show", "M45PE80"}), NOT_FOUND, {"--set PGM_ALLOW_M45PE=on"});
}

TEST(ProfileShow, FindsByProgrammerFileAndIndex) {
    EXPECT_EQ(listed({"profile", "show", "--pcf", "kes_r30"})["rule"], "pcf");
    EXPECT_EQ(listed({"profile", "show", "--pcf", "KES_50"})["rule"], "family");
    EXPECT_EQ(listed({"profile", "show", "--index", "41"})["family"], "KESTREL");
    expect_failure(run_command({"profile", "show", "--index", "78"}), NOT_FOUND, {"there is no record \"78\""});
    expect_failure(run_command({"profile", "show", "--family", "kestrl"}), NOT_FOUND, {"did you mean KESTREL"});
    EXPECT_EQ(
        listed({"profile", "tables", "--family", "kestrel"}),
        JSON::array(
            {{{"table", "family"}, {"number", 6}, {"name", "KESTREL"}, {"index", 41}, {"key", "family KESTREL"}}}));
    EXPECT_EQ(
        listed({"profile", "tables", "kes50c6"}),
        JSON::array(
            {{{"table", "part"}, {"number", 1166}, {"name", "KES50C6"}, {"index", 41}, {"key", "family KESTREL"}}}));
    EXPECT_EQ(listed({"profile", "tables", "kes50"}).at(0).at("table"), "device");
}

}  // namespace

TEST(Lists, TellTheNamesNextToOneThatNothingFits) {
    const std::pair<std::vector<std::string>, std::string> misspelt[]{
        {{"flash", "list", "W25Q64J"}, "; did you mean W25Q64JV"},
        {{"part", "list", "KES50C9"}, "; did you mean KES50C6, KES50C7, KES50C8"},
        {{"device", "list", "KES5O"}, "; did you mean "},
        {{"family", "list", "kestrl"}, "; did you mean KESTREL"},
        {{"profile", "tables", "KESTRL"}, "; did you mean KESTREL"},
    };
    for (const auto& [command, meant] : misspelt) {
        const PROCESS_RESULT result = run_command(command);
        EXPECT_EQ(result.exit_code, NOT_FOUND);
        EXPECT_TRUE(contains(result.errors, meant)) << result.errors;
    }
    EXPECT_FALSE(contains(run_command({"flash", "list", "W25Q64J*Z"}).errors, "did you mean"));
}

// A name alone fits only itself.
TEST(Lists, TellThePatternOfNamesThatBeginWithTheOneGiven) {
    const std::vector<std::vector<std::string>> lists{{"flash", "list", "w25q64"},
                                                      {"flash", "list", "M45PE", "--all-rows"},
                                                      {"part", "list", "KES75"},
                                                      {"part", "list", "KES50", "--hidden"},
                                                      {"device", "list", "KES"},
                                                      {"family", "list", "KEST"},
                                                      {"opn", "list", "KES75"},
                                                      {"profile", "tables", "KES"},
                                                      {"flash", "list", "W25Q", "--size", "64"}};
    for (std::vector<std::string> list : lists) {
        const PROCESS_RESULT none = run_command(list);
        EXPECT_EQ(none.exit_code, NOT_FOUND);
        list.at(2) += "*";
        const std::string pattern = list.at(2);
        list.insert(list.begin(), "--json");
        const std::size_t rows = json_of(run_command(list).output).size();
        EXPECT_GE(rows, 1U) << pattern;
        EXPECT_TRUE(contains(none.errors, "; with \"" + pattern + "\" there " + (rows == 1 ? "is " : "are ") +
                                              std::to_string(rows) + "\n"))
            << none.errors;
    }
    EXPECT_FALSE(contains(run_command({"-q", "flash", "list", "W25Q64"}).errors, "there are"));
    const std::vector<std::vector<std::string>> vain{{"flash", "list", ""},
                                                     {"flash", "list", "XYZ"},
                                                     {"flash", "list", "W25Q", "--maker", "Micron"},
                                                     {"flash", "list", "W25Q64*Z"}};
    for (const std::vector<std::string>& list : vain) {
        EXPECT_FALSE(contains(run_command(list).errors, "*\" there ")) << list.back();
    }
}

/// One of them can stand for several families.
TEST(Lists, TellTheFamiliesOfAProgrammerFileFamily) {
    expect_failure(run_command({"part", "list", "--family", "Swift_PCF"}), NOT_FOUND,
                   {"no part passes --family Swift_PCF: that is what programmer files say for BUZZARD, GOSHAWK, GREBE, "
                    "KITE, PINTAIL, PTARMIGAN, SWIFT"});
}
