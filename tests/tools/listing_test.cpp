#include "command_fixture.h"

// Lists of objects: --csv and --fields.

namespace {

using WORDS = std::vector<std::string>;

FLASH_DATABASE two_records() {
    PGMDEV_SFL_FLASH_INFO awkward = flash_reference::sample("A,\"B\"");
    awkward.manufacturer_name = "=SUM(A1)";
    awkward.memory_id = 1;
    return FLASH_DATABASE({flash_reference::sample("PLAIN"), awkward});
}

}  // namespace

TEST(listing, CsvHasAHeaderAndQuotesWhatNeedsIt) {
    const PROCESS_RESULT result =
        two_records().run({"flash", "list", "--csv", "--fields", "device_name,manufacturer_name,memory_id,silicon_id"});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(result.output,
              "device_name,manufacturer_name,memory_id,silicon_id\r\n"
              "PLAIN,Maker,24,false\r\n"
              "\"A,\"\"B\"\"\",'=SUM(A1),1,false\r\n");
}

TEST(listing, CsvHasAllFieldsByDefault) {
    const FLASH_DATABASE database = two_records();
    const std::string csv = database.run({"flash", "list", "--csv"}).output;
    std::string header;
    for (const std::string& key : keys_of(json_of(database.run({"--json", "flash", "list"}).output)[0])) {
        header += (header.empty() ? "" : ",") + key;
    }
    EXPECT_EQ(csv.substr(0, csv.find("\r\n")), header);
}

TEST(listing, CsvTellsNullAsNothing) {
    const PROCESS_RESULT result = run_command({"profile", "list", "--csv", "--fields", "index,family,device"});
    EXPECT_TRUE(contains(result.output, "\r\n1,GENERIC,\r\n")) << result.output;
}

TEST(listing, FieldsAreChosenAndOrderedInJsonToo) {
    const JSON rows = json_of(two_records().run({"--json", "flash", "list", "--fields", "asc_voltage, INDEX"}).output);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(keys_of(rows[0]), (WORDS{"asc_voltage", "index"}));
    EXPECT_EQ(rows[1]["index"], 1);
}

TEST(listing, FieldsForPeople) {
    const PROCESS_RESULT result = two_records().run({"flash", "list", "--fields", "device_name,index"});
    EXPECT_EQ(result.output, "device_name  index\nPLAIN        0\nA,\"B\"        1\n");
}

TEST(listing, AFieldThatIsAskedForTwiceIsACellEachTime) {
    const FLASH_DATABASE database = two_records();
    const WORDS list{"flash", "list", "--fields", "index,device_name,INDEX"};
    WORDS as_csv = list;
    as_csv.emplace_back("--csv");
    EXPECT_EQ(database.run(as_csv).output, "index,device_name,index\r\n0,PLAIN,0\r\n1,\"A,\"\"B\"\"\",1\r\n");
    EXPECT_EQ(database.run(list).output, "index  device_name  index\n0      PLAIN        0\n1      A,\"B\"        1\n");
    WORDS as_json = list;
    as_json.insert(as_json.begin(), "--json");
    EXPECT_EQ(keys_of(json_of(database.run(as_json).output)[0]), (WORDS{"index", "device_name"}));
}

TEST(listing, EveryListHasTheOptions) {
    for (const WORDS& list : {WORDS{"flash", "list"},
                              {"profile", "list"},
                              {"hps", "kinds"},
                              {"hps", "nand"},
                              {"hps", "spi"},
                              {"params", "list"},
                              {"enum", "list", "sector"}}) {
        SCOPED_TRACE(testing::PrintToString(list));
        WORDS as_json{"--json"};
        as_json.insert(as_json.end(), list.begin(), list.end());
        const JSON rows = json_of(run_command(as_json).output);
        const std::string field = keys_of(rows[0])[1];
        WORDS as_csv = list;
        as_csv.insert(as_csv.end(), {"--csv", "--fields", field});
        const PROCESS_RESULT csv = run_command(as_csv);
        EXPECT_EQ(csv.exit_code, DONE) << csv.errors;
        EXPECT_TRUE(csv.output.starts_with(field + "\r\n"));
        EXPECT_EQ(lines_of(csv.output).size(), rows.size() + 1);
    }
}

TEST(listing, UnknownFieldsAreNamedWithSimilarOnes) {
    const FLASH_DATABASE database = two_records();
    expect_failure(database.run({"flash", "list", "--fields", "device_nam"}), WRONG_USAGE,
                   {"no field \"device_nam\"", "did you mean device_name"});
    expect_failure(database.run({"flash", "list", "--fields", "index,size"}), WRONG_USAGE,
                   {"no field \"size\"", "device_bit_size", "half_size"});
    expect_failure(database.run({"flash", "list", "--fields", "index,,ini"}), WRONG_USAGE, {"no field \"\""});
    expect_failure(database.run({"flash", "list", "--csv", "--fields", "#####"}), WRONG_USAGE,
                   {"the fields are index"});
    const JSON error = json_failure(database.run({"--json", "flash", "list", "--csv"}), WRONG_USAGE, "usage");
    EXPECT_EQ(error.at("message"), "expected one of --csv and --json");
}

TEST(listing, DumpsTakeFieldsButKeepTheirSourceTables) {
    const FLASH_DATABASE database = two_records();
    for (const char* form : {"--csv", "--plain-csv"}) {
        json_failure(run_command({"--json", "flash", "dump", database.file(), form}), WRONG_USAGE, "usage");
    }
    const JSON rows = json_of(run_command({"--json", "flash", "dump", database.file(), "--fields", "ini"}).output);
    EXPECT_EQ(rows[0], (JSON{{"ini", flash_reference::sample().ini}}));
    expect_failure(run_command({"flash", "dump", "--csv", database.file(), "--fields", "ini"}), WRONG_USAGE,
                   {"--csv and --fields"});
}
