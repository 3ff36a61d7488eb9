#include "command_fixture.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev_version.h"

// pgmdev --version.

TEST(version, IsToldToPeople) {
    const PROCESS_RESULT result = run_command({"--version"});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    const std::string text = PGMDEV_VERSION::library();
    EXPECT_EQ(result.output, "pgmdev " + text + "\nlibrary           " + text + "\ncatalog           " +
                                 PGMDEV_VERSION::catalog() + "\nflash database    stamp " + flash_reference::STAMP +
                                 ", body version 1"
                                 "\nprofile database  stamp " +
                                 dev_info_reference::STAMP +
                                 ", body version 1"
                                 "\nSPI flash list    stamp 9095cbfc6f5b69d3eb5d625df882a316"
                                 "\nNAND flash list   stamp 79b884d001a0760b19c475920183ef66\n");
}

TEST(version, IsToldToPrograms) {
    const JSON expected{{"command", PGMDEV_VERSION::library()},
                        {"library", PGMDEV_VERSION::library()},
                        {"catalog", PGMDEV_VERSION::catalog()},
                        {"formats",
                         {{"flash_database", {{"stamp", flash_reference::STAMP}, {"body_version", 1}}},
                          {"profile_database", {{"stamp", dev_info_reference::STAMP}, {"body_version", 1}}},
                          {"hps_spi_block", {{"stamp", "9095cbfc6f5b69d3eb5d625df882a316"}}},
                          {"hps_nand_block", {{"stamp", "79b884d001a0760b19c475920183ef66"}}}}}};
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--json", "--version"}, {"--version", "--json"}, {"flash", "--version", "--json"}}) {
        const PROCESS_RESULT result = run_command(arguments);
        EXPECT_EQ(result.exit_code, DONE);
        EXPECT_EQ(json_of(result.output), expected);
    }
}

TEST(version, ComesInsteadOfTheVerb) {
    const PROCESS_RESULT result = run_command({"flash", "list", "--version"});
    EXPECT_TRUE(result.output.starts_with("pgmdev ")) << result.output;
}

TEST(version, OfTheCatalogAreTwoCheckSums) {
    const std::string catalog = PGMDEV_VERSION::catalog();
    ASSERT_EQ(catalog.size(), 17U);
    EXPECT_EQ(catalog[8], '-');
    EXPECT_EQ(catalog.find_first_not_of("0123456789abcdef-"), std::string::npos);
    EXPECT_NE(catalog.substr(0, 8), catalog.substr(9));
}
