#include <filesystem>
#include <iterator>
#include <set>

#include "command_fixture.h"
#include "support/json_schema.h"

// The verb `schema`, and that every answer is as its schema says.

namespace {

using WORDS = std::vector<std::string>;

JSON schema_of(const WORDS& verb) {
    WORDS arguments{"schema"};
    arguments.insert(arguments.end(), verb.begin(), verb.end());
    const PROCESS_RESULT result = run_command(arguments);
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    return json_of(result.output);
}

/// The words that lead to each verb, and to each option, that answers in JSON: the titles of the schemas.
std::vector<WORDS> all_verbs() {
    std::vector<WORDS> verbs;
    const JSON all = schema_of({});
    for (const auto& [name, schema] : all.at("$defs").items()) {
        if (schema.contains("title")) {
            std::istringstream title(schema.at("title").get<std::string>());
            verbs.emplace_back(std::istream_iterator<std::string>(title), std::istream_iterator<std::string>());
            verbs.back().erase(verbs.back().begin());  // "pgmdev"
        }
    }
    return verbs;
}

/// An option is called without its dashes where schemas are asked for.
WORDS words_of_schema(WORDS verb) {
    for (std::string& word : verb) {
        word.erase(0, word.find_first_not_of('-'));
    }
    return verb;
}

/// One question, or a batch of them, to one verb.
struct RUN {
    WORDS verb;
    WORDS arguments;
    std::string input;
    int exit_code;
};

const std::string FLASH_TABLE = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
const std::string FLASH_DATABASE_FILE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";
const std::string SFDP_DUMP = std::string(TEST_SFDP_DIR) + "/SST26VF064B.sfdp";
const std::string SHORT_SFDP_DUMP = std::string(TEST_SFDP_DIR) + "/BY25Q32ES.sfdp";
const std::string PROFILE_TABLE = std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv";
const std::string PROFILE_DATABASE_FILE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";

const std::vector<RUN> SINGLE{
    {{"flash", "list"}, {}, "", DONE},
    {{"flash", "list"}, {"--fields", "asc_voltage,device_name"}, "", DONE},
    {{"flash", "list"}, {"--all-rows"}, "", DONE},
    {{"flash", "list"}, {"no*such"}, "", NOT_FOUND},
    {{"flash", "show"}, {"--all-rows", "M45PE80"}, "", DONE},
    {{"flash", "show"}, {"--index", "99999"}, "", NOT_FOUND},
    {{"profile", "show"}, {"--index", "99999"}, "", NOT_FOUND},
    {{"profile", "show"}, {"--pcf", "nothing"}, "", NOT_FOUND},
    {{"profile", "tables"}, {"--family"}, "", DONE},
    {{"part", "list"}, {"kes*"}, "", DONE},
    {{"device", "list"}, {}, "", DONE},
    {{"family", "list"}, {}, "", DONE},
    {{"opn", "list"}, {"kes*"}, "", DONE},
    {{"part", "info"}, {"KES50C6"}, "", DONE},
    {{"part", "info"}, {"KESTREL"}, "", DONE},
    {{"part", "info"}, {"KES75-F169-C4"}, "", DONE},
    {{"part", "info"}, {"nothing"}, "", NOT_FOUND},
    {{"part", "from-pcf"}, {"--all", "KES_50"}, "", DONE},
    {{"hps", "nand"}, {"--hps", "0"}, "", DONE},
    {{"hps", "spi"}, {"--hps", "1"}, "", DONE},
    {{"doctor"}, {}, "", DONE},
    {{"--version"}, {}, "", DONE},
    {{"flash", "show"}, {"W25Q64JV"}, "", DONE},
    {{"flash", "show"}, {"W25Q6"}, "", NOT_FOUND},
    {{"flash", "identify"}, {"20BA18", "EF7017"}, "", DONE},
    {{"flash", "identify"}, {"20BA18", "000000"}, "", NOT_FOUND},
    {{"flash", "identify"}, {"rubbish"}, "", WRONG_USAGE},
    {{"flash", "identify"}, {"--sfdp", SFDP_DUMP, "BF2643"}, "", DONE},
    {{"flash", "identify"}, {"--sfdp", SHORT_SFDP_DUMP, "684A16"}, "", NOT_FOUND},
    {{"flash", "identify"}, {"--system", TEST_SFDP_DIR}, "", NOT_FOUND},
    {{"flash", "sfdp"}, {SFDP_DUMP}, "", DONE},
    {{"flash", "sfdp"}, {SHORT_SFDP_DUMP, "--id", "684016"}, "", DONE},
    {{"flash", "sfdp"}, {FLASH_TABLE}, "", INTERNAL_ERROR},
    {{"flash", "decode"}, {"rubbish"}, "", INTERNAL_ERROR},
    {{"flash", "reseal"}, {"rubbish"}, "", WRONG_USAGE},
    {{"flash", "check"}, {FLASH_TABLE}, "", DONE},
    {{"flash", "check"}, {PROFILE_TABLE}, "", INTERNAL_ERROR},
    {{"flash", "dump"}, {FLASH_DATABASE_FILE}, "", DONE},
    {{"flash", "dump"}, {FLASH_DATABASE_FILE, "--fields", "ini"}, "", DONE},
    {{"flash", "dump"}, {FLASH_DATABASE_FILE, "--annotate"}, "", DONE},
    {{"flash", "diff"}, {FLASH_DATABASE_FILE, FLASH_TABLE}, "", DONE},
    {{"flash", "verify"}, {FLASH_DATABASE_FILE, FLASH_TABLE}, "", DONE},
    {{"flash", "verify"}, {FLASH_TABLE}, "", INTERNAL_ERROR},
    {{"profile", "diff"}, {PROFILE_DATABASE_FILE, PROFILE_TABLE}, "", DONE},
    {{"profile", "verify"}, {PROFILE_DATABASE_FILE}, "", DONE},
    {{"profile", "list"}, {}, "", DONE},
    {{"profile", "show"}, {"--family", "kestrel"}, "", DONE},
    {{"profile", "show"}, {"--family", "corncrake"}, "", DONE},
    {{"profile", "show"}, {"--device", "nothing"}, "", NOT_FOUND},
    {{"profile", "show"}, {"--part", "KES50C6"}, "", DONE},
    {{"profile", "check"}, {PROFILE_TABLE}, "", DONE},
    {{"profile", "dump"}, {PROFILE_DATABASE_FILE}, "", DONE},
    {{"name", "show"}, {"KES50C6"}, "", DONE},
    {{"name", "show"}, {"KES50C66"}, "", NOT_FOUND},
    {{"part", "from-device"}, {"OSPREY-8"}, "", DONE},
    {{"part", "from-device"}, {"OSPREY-88"}, "", NOT_FOUND},
    {{"part", "from-pcf"}, {"BLU_R35"}, "", DONE},
    {{"part", "from-pcf"}, {"KES_50"}, "", NOT_FOUND},
    {{"part", "complete"}, {"KES50"}, "", DONE},
    {{"part", "complete"}, {"nothing"}, "", NOT_FOUND},
    {{"opn", "name"}, {"1337"}, "", DONE},
    {{"opn", "name"}, {"0xFFFFFFF0"}, "", NOT_FOUND},
    {{"opn", "name"}, {"rubbish"}, "", WRONG_USAGE},
    {{"opn", "index"}, {"KES50C6"}, "", DONE},
    {{"opn", "index"}, {"KES50C7"}, "", NOT_FOUND},
    {{"opn", "hash"}, {"KES50C6"}, "", DONE},
    {{"opn", "hash"}, {"KES50C66"}, "", NOT_FOUND},
    {{"opn", "from-hash"}, {"0xDCB59F75E910"}, "", DONE},
    {{"opn", "from-hash"}, {"5"}, "", NOT_FOUND},
    {{"enum", "name"}, {"option-bit", "21"}, "", DONE},
    {{"enum", "name"}, {"option-bit", "0xFFFF"}, "", NOT_FOUND},
    {{"enum", "value"}, {"option-bit", "aes_keys"}, "", DONE},
    {{"enum", "value"}, {"option-bit", "AES_KEY"}, "", NOT_FOUND},
    {{"enum", "list"}, {"sector"}, "", DONE},
    {{"hps", "kinds"}, {}, "", DONE},
    {{"hps", "nand"}, {}, "", DONE},
    {{"hps", "spi"}, {"--fields", "device_name"}, "", DONE},
    {{"hps", "remove", "nand"}, {"99"}, "", NOT_FOUND},
    {{"params", "list"}, {}, "", DONE},
    {{"params", "read"}, {"1"}, "", NOT_FOUND},
    {{"params", "show"}, {"1", "DWORD"}, "", NOT_FOUND},
    {{"params", "remove"}, {"1"}, "", NOT_FOUND},
};

const std::vector<RUN> BATCHES{
    {{"flash", "show"}, {"-"}, "W25Q64JV\nnothing\n\n", NOT_FOUND},
    {{"flash", "identify"}, {"-"}, "EF7017\n000000\n\nrubbish\n", NOT_FOUND},
    {{"flash", "decode"}, {"-"}, "rubbish\n\n", INTERNAL_ERROR},
    {{"profile", "show"}, {"--family", "-"}, "kestrel\nnothing\n\n", NOT_FOUND},
    {{"name", "show"}, {"-"}, "KES50C6\nnothing\n\n", NOT_FOUND},
    {{"part", "from-device"}, {"-"}, "OSPREY-8\nnothing\n\n", NOT_FOUND},
    {{"part", "from-pcf"}, {"-"}, "BLU_R35\nnothing\n\n", NOT_FOUND},
    {{"part", "info"}, {"-"}, "KES50C6\nnothing\nOSPREY\n\n", NOT_FOUND},
    {{"part", "complete"}, {"-"}, "KES50\nnothing\n\n", NOT_FOUND},
    {{"opn", "name"}, {"-"}, "1337\n0xFFFFFFF0\n\nrubbish\n", NOT_FOUND},
    {{"opn", "index"}, {"-"}, "KES50C6\nnothing\nKES50C7\n\n", NOT_FOUND},
    {{"opn", "hash"}, {"-"}, "KES50C6\nnothing\n\n", NOT_FOUND},
    {{"opn", "from-hash"}, {"-"}, "0xDCB59F75E910\n5\n\nrubbish\n", NOT_FOUND},
    {{"enum", "name"}, {"sector", "-"}, "1\n0xFFFF\n\nrubbish\n", NOT_FOUND},
    {{"enum", "value"}, {"sector", "-"}, "UFM1\n\n", NOT_FOUND},
};

/// Runs a verb with answers in JSON, in a module directory of its own.
class SCHEMA_TEST : public testing::Test {
protected:
    PROCESS_RESULT answered(const RUN& run) const {
        WORDS arguments{"--json", "--module-dir", m_scratch.directory().string()};
        arguments.insert(arguments.end(), run.verb.begin(), run.verb.end());
        arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
        PROCESS_RESULT result = run_command(arguments, run.input);
        EXPECT_EQ(result.exit_code, run.exit_code) << testing::PrintToString(arguments) << result.errors;
        return result;
    }

    /// One document is what comes, and it fits.
    void expect_fitting(const RUN& run) const {
        SCOPED_TRACE(testing::PrintToString(run.verb) + testing::PrintToString(run.arguments));
        const std::string output = answered(run).output;
        EXPECT_EQ(JSON_SCHEMA(schema_of(words_of_schema(run.verb))).faults_of(json_of(output)), "");
    }

    const SCRATCH& scratch() const { return m_scratch; }

    /// What changes files, one after the other.
    std::vector<RUN> changing_runs() const {
        const std::string block = m_scratch.path("block.bin");
        return {
            {{"flash", "compile"}, {FLASH_TABLE, m_scratch.path("out.pcf")}, "", DONE},
            {{"profile", "compile"}, {PROFILE_TABLE, m_scratch.path("profiles.pcf")}, "", DONE},
            {{"hps", "add", "nand"},
             {"manufacturer_id=0xEC", "device_id=0xD3", "device_byte_size=0x40000000"},
             "",
             DONE},
            {{"hps", "add", "spi"}, {"--like", "0"}, "", DONE},
            {{"params", "list"}, {}, "", DONE},
            {{"params", "read"}, {"1", block}, "", DONE},
            {{"params", "write"}, {"1", block}, "", DONE},
            {{"hps", "edit", "nand"}, {"0", "device_id=1"}, "", DONE},
            {{"hps", "edit", "spi"}, {"0", "code_a=1"}, "", DONE},
            {{"params", "show"}, {"1", "BYTE"}, "", DONE},
            {{"params", "set"}, {"0", "BYTE=1"}, "", DONE},
            {{"hps", "remove", "nand"}, {"0"}, "", DONE},
            {{"hps", "remove", "spi"}, {"0"}, "", DONE},
            {{"params", "write"}, {"1", block}, "", DONE},
            {{"params", "remove"}, {"1"}, "", DONE},
        };
    }

    RUN page_run() const { return {{"page"}, {m_scratch.path("page")}, "", DONE}; }

    static RUN define_run() {
        return {{"flash", "define"},
                {},
                "1\nNumonyx\nM25PX80\n14\n2\n71\n1\n20\n0\nN\nN\nN\nN\nN\nN\n1\n8\n64\n80\n3\n5000\n1C\n1C\n0\n7\n5\nN"
                "\n3.3V\n",
                DONE};
    }

private:
    SCRATCH m_scratch;
};

}  // namespace

TEST_F(SCHEMA_TEST, EveryAnswerToOneQuestionFits) {
    for (const RUN& run : SINGLE) {
        expect_fitting(run);
    }
}

TEST_F(SCHEMA_TEST, EveryVerbIsAskedHere) {
    std::set<WORDS> asked;
    for (const std::vector<RUN>& runs : {SINGLE, BATCHES, changing_runs(), {define_run(), page_run()}}) {
        for (const RUN& run : runs) {
            asked.insert(run.verb);
        }
    }
    for (const WORDS& verb : all_verbs()) {
        EXPECT_EQ(asked.count(verb), 1U) << testing::PrintToString(verb);
    }
}

TEST_F(SCHEMA_TEST, TheFailureOfEveryVerbFits) {
    for (const WORDS& verb : all_verbs()) {
        if (verb.front().starts_with('-')) {
            continue;  // an option that is an answer of its own does not fail
        }
        WORDS arguments{"--json"};
        arguments.insert(arguments.end(), verb.begin(), verb.end());
        arguments.emplace_back("--no-such-option");
        const PROCESS_RESULT result = run_command(arguments);
        json_failure(result, WRONG_USAGE, "usage");
        EXPECT_EQ(JSON_SCHEMA(schema_of(verb)).faults_of(json_of(result.output)), "") << testing::PrintToString(verb);
    }
}

TEST_F(SCHEMA_TEST, FailuresWithEveryKeyFit) {
    const std::string none = scratch().path("none");
    const std::vector<RUN> runs{
        {{"flash", "list"}, {"--db-dir", none}, "", INTERNAL_ERROR},
        {{"flash", "show"}, {"x", "--db-dir", none}, "", INTERNAL_ERROR},
        {{"flash", "identify"}, {"20BA18", "--db-dir", none}, "", INTERNAL_ERROR},
        {{"flash", "check"}, {none}, "", INTERNAL_ERROR},
        {{"flash", "compile"}, {none, scratch().path("out.pcf")}, "", INTERNAL_ERROR},
        {{"flash", "dump"}, {none}, "", INTERNAL_ERROR},
        {{"flash", "diff"}, {FLASH_TABLE, none}, "", INTERNAL_ERROR},
        {{"flash", "verify"}, {none}, "", INTERNAL_ERROR},
        {{"profile", "show"}, {"--family", "x", "--db-dir", none}, "", INTERNAL_ERROR},
        {{"profile", "tables"}, {"--db-dir", none}, "", INTERNAL_ERROR},
        {{"part", "info"}, {"KES50C6", "--db-dir", none}, "", INTERNAL_ERROR},
        {{"params", "write"}, {"1", none}, "", WRONG_USAGE},
        {{"params", "write"}, {"1", FLASH_TABLE}, "", WRONG_USAGE},
    };
    for (const RUN& run : runs) {
        expect_fitting(run);
        EXPECT_TRUE(json_of(answered(run).output).contains("error")) << testing::PrintToString(run.verb);
    }
}

TEST_F(SCHEMA_TEST, EveryLineOfABatchFits) {
    for (const RUN& run : BATCHES) {
        SCOPED_TRACE(testing::PrintToString(run.verb));
        const JSON_SCHEMA schema = JSON_SCHEMA(schema_of(words_of_schema(run.verb)));
        const std::vector<JSON> answers = json_lines_of(answered(run).output);
        const WORDS questions = lines_of(run.input);
        ASSERT_EQ(answers.size(), questions.size());
        for (std::size_t i = 0; i < answers.size(); ++i) {
            EXPECT_EQ(schema.faults_of(answers[i]), "") << answers[i];
            EXPECT_EQ(answers[i].at("query"), questions[i]);
            EXPECT_EQ(answers[i].contains("candidates") || answers[i].contains("error"), answers[i]["found"] == false);
        }
    }
}

TEST_F(SCHEMA_TEST, ABatchGivesTheObjectsThatSingleQuestionsGive) {
    for (const RUN& run : SINGLE) {
        const bool batch =
            std::any_of(BATCHES.begin(), BATCHES.end(), [&run](const RUN& other) { return other.verb == run.verb; });
        if (!batch || run.exit_code == WRONG_USAGE || run.verb == WORDS{"flash", "identify"}) {
            continue;  // the chain of identify has another answer than its single devices
        }
        RUN of_a_batch = run;
        of_a_batch.input = of_a_batch.arguments.back() + "\n";
        of_a_batch.arguments.back() = "-";
        EXPECT_EQ(json_lines_of(answered(of_a_batch).output), std::vector<JSON>{json_of(answered(run).output)})
            << testing::PrintToString(run.verb);
    }
}

TEST_F(SCHEMA_TEST, WhatChangesFilesFits) {
    for (const RUN& run : changing_runs()) {
        expect_fitting(run);
    }
}

TEST_F(SCHEMA_TEST, EveryPageFits) {
    expect_fitting(page_run());
}

TEST_F(SCHEMA_TEST, ADescriptionOfAFlashFits) {
    const RUN define = define_run();
    expect_fitting(define);
    const std::string encoded = json_of(answered(define).output).at("encoded");
    expect_fitting({{"flash", "decode"}, {encoded}, "", DONE});
    EXPECT_EQ(json_of(answered({{"flash", "decode"}, {encoded}, "", DONE}).output).at("found"), true);
}

TEST(schema, RowsOfListsHaveEveryMemberThatIsDescribed) {
    for (const WORDS& verb : {WORDS{"flash", "list"},
                              {"profile", "list"},
                              {"hps", "kinds"},
                              {"hps", "nand"},
                              {"hps", "spi"},
                              {"params", "list"}}) {
        WORDS arguments{"--json"};
        arguments.insert(arguments.end(), verb.begin(), verb.end());
        const JSON rows = json_of(run_command(arguments).output);
        ASSERT_FALSE(rows.empty());
        const JSON schema = schema_of(verb);
        const std::vector<std::string> described = keys_of(schema["anyOf"][0]["items"]["properties"]);
        const std::vector<std::string> keys = keys_of(rows[0]);
        // Those behind them come with options.
        EXPECT_TRUE(described.size() >= keys.size() && std::equal(keys.begin(), keys.end(), described.begin()))
            << testing::PrintToString(verb);
    }
}

TEST(schema, DocumentsThatDoNotFitAreTold) {
    const JSON_SCHEMA schema(schema_of({"enum", "value"}));
    EXPECT_EQ(schema.faults_of({{"query", "x"}, {"found", true}, {"value", 1}, {"name", "x"}}), "");
    for (const char* wrong :
         {R"({"query":"x","found":true,"value":1})", R"({"query":1,"found":true,"value":1,"name":""})",
          R"({"query":"x","found":true,"value":null,"name":"x"})",
          R"({"query":"x","found":false,"value":null,"name":"x"})",
          R"({"query":"x","found":false,"error":{"code":"usage"}})", R"([])", R"({"error":"x"})"}) {
        EXPECT_NE(schema.faults_of(json_of(wrong)), "") << wrong;
    }
    EXPECT_NE(schema.faults_of({{"query", "x"}, {"found", true}, {"value", 1}, {"name", "x"}, {"more", 1}}), "");
    EXPECT_NE(JSON_SCHEMA(JSON{{"minimum", 3}}).faults_of(5), "") << "a word that the validator does not know";
}

TEST(schema, OfAllVerbsInOneDocument) {
    const JSON all = schema_of({});
    EXPECT_EQ(all["$schema"], "https://json-schema.org/draft/2020-12/schema");
    const JSON one = schema_of({"flash", "show"});
    EXPECT_EQ(one["title"], "pgmdev flash show");
    EXPECT_EQ(all["$defs"]["flash-show"]["anyOf"], one["anyOf"]);
    const JSON of_flash = schema_of({"flash"});
    EXPECT_TRUE(of_flash["$defs"].contains("flash-list"));
    EXPECT_FALSE(of_flash["$defs"].contains("profile-list"));
    const JSON answer = json_of(run_command({"--json", "opn", "name", "1337"}).output);
    EXPECT_EQ(JSON_SCHEMA(all).faults_of(answer), "");
    EXPECT_NE(JSON_SCHEMA(of_flash).faults_of(answer), "");
    expect_failure(run_command({"schema", "flash", "lst"}), WRONG_USAGE, {"\"flash lst\"", "did you mean flash list"});
}

TEST(schema, AFileForEachVerb) {
    const JSON all = schema_of({});
    std::size_t count = 0;
    for (const auto& [name, schema] : all["$defs"].items()) {
        if (name != "failure") {
            const JSON file = json_of(read_file(std::string(TEST_SCHEMA_DIR) + "/" + name + ".json"));
            EXPECT_EQ(file["anyOf"], schema["anyOf"]) << name;
            ++count;
        }
    }
    const std::filesystem::directory_iterator files(TEST_SCHEMA_DIR);
    EXPECT_EQ(std::distance(begin(files), end(files)), static_cast<std::ptrdiff_t>(count));
}

TEST(schema, AFileThatCannotBeWrittenIsToldWithItsReason) {
    const SCRATCH scratch;
    const PROCESS_RESULT result = run_command({"--json", "schema", "--directory", scratch.path("none")});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    const JSON error = json_of(result.output).at("error");
    EXPECT_EQ(error.at("code"), "output_not_writable");
    EXPECT_EQ(error.at("message"), "the output cannot be written, since its directory does not exist");
}
