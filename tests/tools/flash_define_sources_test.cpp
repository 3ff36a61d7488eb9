#include "command_fixture.h"

// What `flash define` takes from another flash, and from what a flash says of itself.

namespace {

TEST(flash_define_sources, AreAsOfAnotherFlash) {
    PGMDEV_SFL_FLASH_INFO other = flash_reference::sample();
    other.memory_type_index = PGMDEV_SFL_FLASH_INFO::NONE;  // what is compared of a response is told by one's own
    const FLASH_DATABASE database({other});
    const std::string& like = other.device_name;
    const PROCESS_RESULT run = database.run({"--json", "flash", "define", "--like", like, "--id", "857114",
                                             "device_name=mine", "die_count=2", "memory_type=72", "program_utime=6ms"});
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    const JSON flash = json_of(run.output).at("flashes").at(0);
    EXPECT_EQ(flash.at("device_name"), "MINE");
    EXPECT_EQ(flash.at("mfc_id"), 0x85);
    EXPECT_EQ(flash.at("memory_type"), 0x72);
    EXPECT_EQ(flash.at("memory_type_index"), 1);
    EXPECT_EQ(flash.at("die_count"), 2);
    EXPECT_EQ(flash.at("program_utime"), 6000);
    EXPECT_EQ(flash.at("device_sector_byte"), flash_reference::sample().device_sector_byte);
    expect_failure(database.run({"flash", "define", "--like", "NONE-SUCH"}), WRONG_USAGE,
                   {"--like: like is \"NONE-SUCH\", accepted: a flash of the database, or another name of one"});
}

TEST(flash_define_sources, AreAsTheFlashSaysOfItself) {
    const std::string dump = std::string(TEST_SFDP_DIR) + "/BY25Q32ES.sfdp";
    const PROCESS_RESULT run =
        run_command({"--json", "flash", "define", "--sfdp", dump, "--id", "684A16", "manufacturer_name=BoyaMicro",
                     "device_name=BY25Q32ES", "asc_voltage=3.3V"});
    EXPECT_EQ(run.exit_code, DONE) << run.errors;
    const JSON flash = json_of(run.output).at("flashes").at(0);
    EXPECT_EQ(flash.at("device_bit_size"), 33554432);
    EXPECT_EQ(flash.at("device_sector_byte"), 65536);
    EXPECT_EQ(flash.at("byte4_addressing"), false);
    EXPECT_EQ(flash.at("mfc_id"), 0x68);
    std::vector<std::string> assumed;
    for (const JSON& assumption : flash.at("assumed")) {
        assumed.push_back(assumption.at("member"));
    }
    // The table of this flash ends before words 10, 11 and 14; the rest is what no SFDP tells.
    EXPECT_EQ(assumed, (std::vector<std::string>{"startup_protected", "aai_mode", "die_count", "protection_mask",
                                                 "protection_value", "unprotect_value", "protection_division",
                                                 "bottom_value", "sdm_support", "flag_status", "bulk_erase_time",
                                                 "sec_erase_time", "program_utime"}));
    EXPECT_EQ(json_of(run_command({"--json", "flash", "decode", json_of(run.output).at("encoded")}).output)
                  .at("record")
                  .at("device_name"),
              "BY25Q32ES");
    const SCRATCH scratch;
    scratch.write("own.sfdp", "SFDP");
    const std::string file = scratch.write("chip.txt",
                                           "sfdp = own.sfdp\nid = 684A16\nmanufacturer_name = A\n"
                                           "device_name = B\nasc_voltage = 3.3V\n");
    expect_failure(run_command({"flash", "define", "@" + file}), WRONG_USAGE,
                   {file + ":1: sfdp is \"own.sfdp\", accepted: an SFDP dump that a record follows from",
                    "the description is refused: 1 fault\n"});
}

TEST(flash_define_sources, TakeFurtherNamesOfAnotherFlash) {
    const auto like = [](const std::string& name) {
        const PROCESS_RESULT run =
            run_command({"--json", "flash", "define", "--like", name, "--id", "C86517", "device_name=MINE"});
        EXPECT_EQ(run.exit_code, DONE) << run.errors;
        return json_of(run.output).at("encoded");
    };
    EXPECT_EQ(like("w25q128fv"), like("W25Q128JV"));
    EXPECT_NE(like("W25Q64FV"), like("W25Q128JV"));
    expect_failure(run_command({"flash", "define", "--like", "W25Q128JVV", "--id", "C86517"}), WRONG_USAGE,
                   {"like is \"W25Q128JVV\"", "another name of one; did you mean W25Q128JV, "});
}

#ifndef _WIN32  // where a backslash is no part of a name
TEST(flash_define_sources, ADumpStandsBesideADescriptionOfAnyName) {
    const SCRATCH scratch;
    scratch.write("own.sfdp", "SFDP");
    const std::string file = scratch.write("my\\chip.txt", "sfdp = own.sfdp\n");
    expect_failure(run_command({"flash", "define", "@" + file}), WRONG_USAGE,
                   {file + ":1: sfdp is \"own.sfdp\"", "the SFDP dump is refused"});
}
#endif

}  // namespace
