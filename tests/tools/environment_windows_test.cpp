#include "command_fixture.h"

// Upper and lower case do not count in the names of variables: whatever has an effect is told.

namespace {

const std::map<std::string, std::string> MIXED{
    {"tessary_module_dir", R"(Q:\none)"}, {"Pgm_Allow_M45PE", "on"}, {"Tessary_Config_File", R"(Q:\none.conf)"}};

PROCESS_RESULT run_in_mixed_case(const std::vector<std::string>& arguments) {
    PROCESS process{{TEST_COMMAND}, "", MIXED, {}};
    process.command.insert(process.command.end(), arguments.begin(), arguments.end());
    return run_process(process);
}

JSON named(const JSON& list, const std::string& key, const std::string& name) {
    for (const JSON& each : list) {
        if (each.at(key) == name) {
            return each;
        }
    }
    ADD_FAILURE() << "no " << name << " in " << list.dump();
    return {};
}

}  // namespace

TEST(environment, DoctorTellsWhatCounts) {
    const JSON told = json_of(run_in_mixed_case({"--json", "doctor"}).output);
    const JSON module = named(told.at("directories"), "name", "module");
    EXPECT_EQ(module.at("path"), R"(Q:\none)");
    EXPECT_EQ(module.at("origin"), JSON::array({"environment variable TESSARY_MODULE_DIR"}));
    EXPECT_EQ(named(told.at("switches"), "key", "PGM_ALLOW_M45PE").at("value"), "on");
}

TEST(environment, AFileThatIsNotThereIsWarnedOf) {
    const PROCESS_RESULT result = run_in_mixed_case({"opn", "name", "1337"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_TRUE(contains(result.errors, R"(there is no file Q:\none.conf)")) << result.errors;
}
