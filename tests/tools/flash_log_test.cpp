#include "command_fixture.h"

// The response of a flash in what other programs print.

namespace {

PROCESS_RESULT found_in(const std::string& log) {
    return run_command({"--json", "flash", "identify", "--log", "-"}, log);
}

struct LOG {
    const char* text;
    const char* response;  ///< or the name
    unsigned line;
};

const std::vector<LOG> LOGS{
    {"starting\n[    1.203] spi-nor spi0.0: unrecognized JEDEC id bytes: ef, 40, 18\n", "EF4018", 2},
    {"spi-nor spi0.0: unrecognized JEDEC id bytes: ef 40 18 00 00 00\n", "EF4018000000", 1},
    {"m25p80 spi1.0: unrecognized JEDEC id 9d6018\n", "9D6018", 1},
    {"SF: Unsupported flash IDs: manuf c2, jedec 2018, ext_jedec 0000\n", "C220180000", 1},
    {"RDID returned 0xef 0x40 0x18. probe: id1 0xef, id2 0x4018\n", "EF4018", 1},
    {"Info : Found flash device 'win w25q128fv/jv' (ID 0x1840ef)\n", "EF4018", 1},
    {"Jedec ID          : ef\nmemory type       : 40\nmemory capacity   : 18\n", "EF4018", 3},
    {"Manufacturer: ef\nDevice: 4018\nDetected flash size: 16MB\n", "EF4018", 2},
    {"Manufacturer ID: 0xEF, Memory type: 0x40, capacity: 0x18\n", "EF4018", 1},
    {"Manufacturer ID : EF\nDevice ID : 4018\n", "EF4018", 2},
    {"flash ID: 0xEF 0x40 0x18 0x00\r\n", "EF401800", 1},
    {"Flash JEDEC ID: EFh 40h 18h\n", "EF4018", 1},
    {"JEDEC ID (9Fh): EF 40 18\n", "EF4018", 1},
    {"jedec id [c2 28 17] expect [c2 28 16]\n", "C22817", 1},
    {"RX | FF EF 40 18 00 00 __ __ | .@..\n", "EF40180000", 1},
    {"00000000: ef40 18ff ffff ffff  .@......\n00000010: ffff ffff\n", "EF4018FFFFFFFFFF", 1},
    {"00000000  ef 40 18 00 00 00 00 00  00 00 00 00 00 00 00 00  |.@..............|\n", "EF40180000000000", 1},
    {"0000000 40ef 0018\n0000004\n", "EF401800", 1},
    {"ef 40 18\n", "EF4018", 1},
    {"spinor id is: ef 40 18\n", "EF4018", 1},
    {"SFNOR: Id: ef 40 18\n", "EF4018", 1},
    {"spi_flash_read_id -> 0xef4018\n", "EF4018", 1},
    {"vendor id 0xef, memory type 0x40, capacity 0x18\n", "EF4018", 1},
    {"jedec_id: ef4018", "EF4018", 1},
    {"SF: Detected w25q128jv with page size 256 Bytes, erase size 4 KiB, total 16 MiB\n", "w25q128jv", 1},
    {"[    0.9] spi-nor spi0.0: mx25l25635e (32768 Kbytes)\n", "mx25l25635e", 1},
    {"m25p80 m25p800: s25fl128s1 (16384 Kbytes)\n", "s25fl128s1", 1},
    {"[    0.9] spi-nor spi0.0: found w25q256jv, expected n25q256a\n", "w25q256jv", 1},
};

}  // namespace

TEST(flash_log, FindsTheResponseInUsualOutputs) {
    for (const LOG& log : LOGS) {
        const PROCESS_RESULT result = found_in(log.text);
        EXPECT_EQ(result.exit_code, DONE) << log.text << result.errors;
        const JSON document = json_of(result.output);
        EXPECT_EQ(document.at("query"), JSON::array({log.response})) << log.text;
        EXPECT_EQ(document.at("log").at("line"), log.line) << log.text;
        EXPECT_EQ(document.at("log").at("text"),
                  lines_of(log.text).at(log.line - 1).substr(0, lines_of(log.text).at(log.line - 1).find('\r')));
        EXPECT_EQ(document.at("devices").at(0).at("mapped"), true) << log.text;
    }
}

TEST(flash_log, PrefersWhatIsSaidToBeAnIdentification) {
    const JSON document = json_of(found_in("ef 70 17\n"
                                           "SF: Detected mx25l25635e with page size 256 Bytes\n"
                                           "spi-nor spi0.0: unrecognized JEDEC id bytes: ef, 40, 18\n"
                                           "JEDEC ID: C22018\n")
                                      .output);
    EXPECT_EQ(document.at("query"), JSON::array({"EF4018"}));
    EXPECT_EQ(document.at("log").at("others"), JSON::parse(R"([{"line":4,"text":"JEDEC ID: C22018"}])"));
}

TEST(flash_log, TellsThatALogTellsNothing) {
    for (const std::string& log : {std::string(), std::string("hello\nworld is bad 12\n"), std::string(1 << 20, '\0'),
                                   std::string("53 46 44 50 06 01 01 ff\n"), std::string("JEDEC ID: EF\n")}) {
        const PROCESS_RESULT result = found_in(log);
        EXPECT_EQ(result.exit_code, NOT_FOUND);
        EXPECT_TRUE(contains(result.errors, "no line of the log")) << result.errors;
        EXPECT_EQ(json_of(result.output).at("devices"), JSON::array());
    }
}

TEST(flash_log, AnIdleBusIsNoChip) {
    const PROCESS_RESULT result = found_in("SF: unrecognized JEDEC id bytes: ff, ff, ff\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(json_of(result.output).at("devices").at(0).at("oddity").at("kind"), "idle");
}

TEST(flash_log, SuggestsNamesThatTheTableHas) {
    const PROCESS_RESULT result = found_in("SF: Detected mx25l25635x with page size 256 Bytes\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(result.errors, "no flash is named \"mx25l25635x\"; did you mean MX25L25635E"))
        << result.errors;
}

TEST(flash_log, ReadsOnlyTheBeginningOfLongLinesAndFiles) {
    const std::string late = std::string(5000, 'x') + " JEDEC ID: EF4018\n";
    EXPECT_EQ(found_in(late).exit_code, NOT_FOUND);
    EXPECT_EQ(found_in(std::string(17 << 20, '\n') + "JEDEC ID: EF4018\n").exit_code, NOT_FOUND);
}

TEST(flash_log, ReadsAFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("boot.txt", "JEDEC ID: EF4018\n");
    const PROCESS_RESULT result = run_command({"flash", "identify", "--log", file});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(lines_of(result.output).at(0), "Line 1: JEDEC ID: EF4018");
    expect_failure(run_command({"flash", "identify", "--log", scratch.path("none.txt")}), INTERNAL_ERROR,
                   {"the log cannot be read", "none.txt"});
}
