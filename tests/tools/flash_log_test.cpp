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
    {"0000000    40ef    0018\n0000003\n", "EF401800", 1},
    {"0000000 40ef 0018  |.@..|\n", "EF401800", 1},
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
    {"[    1.4] spi-nor spi0.0: w25q128 (16384 Kbytes)\n[    1.5] 4 fixed-partitions partitions found\n", "w25q128", 1},
    {"[    0.9] spi-nor spi0.0: Winbond W25Q64JV (8192 Kbytes)\n", "w25q64jv", 1},
    {"SF: Detected S25FL256S_64K with page size 256 Bytes, erase size 64 KiB, total 32 MiB\n", "S25FL256S_64K", 1},
    {"Found Winbond flash chip \"W25Q128.V\" (16384 kB, SPI) on linux_spi.\n", "W25Q128.V", 1},
    {"Found Macronix flash chip \"MX25L3205(A)\" (4096 kB, SPI).\n", "MX25L3205(A)", 1},
    {"Detected: Winbond W25Q128 256 sectors size: 128Mb\n", "W25Q128", 1},
    {"Read JEDEC ID:\n0xc2 0x20 0x18\nflash chip: unknown\n", "C22018", 2},
    {"SF: Got idcodes\n00000000: ef 40 18 00 00    .@...\nSF: Detected W25Q128BV with page size 256 Bytes\n",
     "EF40180000", 2},
    {"# cat /sys/bus/spi/devices/spi0.0/spi-nor/jedec_id\n20bb20104400\n", "20BB20104400", 2},
    {"Xilinx First Stage Boot Loader\nFlashID=0x1 0x2 0x20\nSPANSION 512M Bits\n", "010220", 2},
    {"RDID returned 0x20 0xbb 0x21 0x10 0x44 0x00. compare_id: id1 0x20, id2 0xbb21\n", "20BB21104400", 1},
    {"Info : device id = 0x10036413\nInfo : Found flash device 'micron n25q128' (ID 0x0018ba20)\n", "20BA18", 2},
    {"## ID code: 0x1F 0x45 0x01 0x00\n", "1F450100", 1},
    {"SPI flash vendor: 0xef, device id: 0x4018\n", "EF4018", 1},
    {"Flash: 0x1840ef (manufacturer: ef, memory type: 40, capacity: 18)\n", "EF4018", 1},
    {"$ xxd id.bin\n00000000: 9fc2 2539 c225 39                        ..%9.%9\n", "C22539C22539", 2},
    {"00000000  ff c8 40 18 c8 40                                 |..@..@|\n00000006\n", "C84018C840", 1},
    {"expected JEDEC ID EF4018\nJEDEC ID: C22018\n", "C22018", 2},
    {"RDID = 0xEF,0x40,0x18\n", "EF4018", 1},
    {"READ: 0xEF 0x40 0x18\n", "EF4018", 1},
    {"WRITE: 0x9F\n  read = 0xEF, 0x40, 0x18\r\n", "EF4018", 2},
    {"[12:00:01] Response: [0x9F 0x20 0xBA 0x18 0x10 0x44 0x0]\n", "20BA18104400", 1},
    {"Write: 0x9F 0x00 0x00\nRead: 0xEF 0x40 0x18\n", "EF4018", 2},
    {"write: 0x5A 0 0 0 0\nread: 0x53 0x46 0x44 0x50 0x06 0x01\nwrite: 0x9f\nread: 0xC2 0x20 0x18\n", "C22018", 4},
    {"tx: 0x03 0x00 0x00 0x00\nrx: 0xc2 0x20 0x18\ntx: 0x9F\nrx: 0xef 0x40 0x18\n", "EF4018", 4},
    {"000000: ef40 18ff\n", "EF4018FF", 1},
    {"0x00000 ef40 1800\n", "EF401800", 1},
    {"JEDEC ID is as expected: EF4018\n", "EF4018", 1},
    {"JEDEC ID not as expected: C22018\n", "C22018", 1},
    {"JEDEC ID (as expected) EF4018\n", "EF4018", 1},
    {"as expected, JEDEC ID EF4018\n", "EF4018", 1},
    {"RDID ok as expected: ef 40 18\n", "EF4018", 1},
    {"Flash ID matches expected 0xEF4018\n", "EF4018", 1},
    {"flash id OK (expected ef4018, got ef4018)\n", "EF4018", 1},
    {"Expected JEDEC ID:\nef 40 18\nActual:\nc2 20 18\n", "C22018", 4},
    {"Expected JEDEC ID:\n\nef 40 18\n\nActual JEDEC ID:\n \nc2 20 18\n", "C22018", 7},
    {"JEDEC ID:\nnone\nef 40 18\nJEDEC ID:\n\nc2 20 18\n", "C22018", 6},
    {"expected ID:\nJEDEC ID: C22018\n", "C22018", 2},
    {"expected JEDEC ID:\nread: 0xC2 0x20 0x18\n", "C22018", 2},
    {"expected JEDEC ID EF4018:\nC2 20 18\n", "C22018", 2},
    {"expected JEDEC ID EF4018, got:\nC2 20 18\n", "C22018", 2},
    {"JEDEC ID (expecting three bytes):\nC2 20 18\n", "C22018", 2},
    {"expected JEDEC ID EF4018, got JEDEC ID C22018\n", "C22018", 1},
    {"JEDEC ID mismatch: expected EF 40 18, got C2 20 18\n", "C22018", 1},
    {"unexpected JEDEC id bytes: c2, 20, 18\n", "C22018", 1},
    {"[    0.9] spi-nor spi0.0: expected n25q256a, found w25q256jv\n", "w25q256jv", 1},
    {"flash_id: 0xef4018\n", "EF4018", 1},
    {"chip_id=0xEF4018, size=16777216\n", "EF4018", 1},
    {"JEDEC-ID: EF-40-18\n", "EF4018", 1},
    {"manufacturer_id=0xef device_id=0x4018\n", "EF4018", 1},
    {"Read: 0x12 0x34 0x56\nRead: 0xEF 0x40 0x18\n", "EF4018", 2},
};

/// Names of logs, what they are mapped to, and what they may be as well.
struct NAMED {
    const char* name;
    const char* device;  ///< null: none
    std::vector<const char*> also;
};

const std::vector<NAMED> NAMED_DEVICES{
    {"w25q128", "W25Q128JV", {"W25Q128JW", "W25Q128JVM", "W25Q128JWM"}},
    {"w25q128jv", "W25Q128JV", {"W25Q128JVM"}},
    {"W25Q128.V", "W25Q128JV", {"W25Q128JVM"}},
    {"W25Q128JVSIQ", "W25Q128JV", {}},
    {"s25fl256s1", "S25FL256S1", {"S25FS256S", "S25FS256S0", "S25FL256S0"}},
    {"s25fl256s", "S25FL256S1", {"S25FS256S", "S25FS256S0", "S25FL256S0"}},
    {"s25fl128s0", "S25FL128S0", {}},
    {"mt25qu512a", "MT25QU512A", {}},
    {"n25q256a", "N25Q256A", {"MT25QL256A", "N25Q256AX1"}},
    {"n25q00a", "N25Q00A", {"MT25QU01G", "N25Q00"}},
    {"w25q16jv-im/jm", "W25Q16JVM", {}},
    {"m25p80", "M25P80", {}},
    {"n25q128", nullptr, {"N25Q128A13", "N25Q128A11"}},
    {"N25Q128_3V", nullptr, {"N25Q128A13", "N25Q128A11"}},
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

TEST(flash_log, NamesStandForRowsAndTellWhatElseItMayBe) {
    for (const NAMED& named : NAMED_DEVICES) {
        const PROCESS_RESULT result = found_in(std::string("spi-nor spi0.0: ") + named.name + " (16384 Kbytes)\n");
        EXPECT_EQ(result.exit_code, named.device != nullptr ? DONE : NOT_FOUND) << named.name << result.errors;
        const JSON device = json_of(result.output).at("devices").at(0);
        EXPECT_EQ(device.at("mapped"), named.device != nullptr) << named.name;
        EXPECT_EQ(device.value("device_name", ""), named.device != nullptr ? named.device : "");
        EXPECT_EQ(device.at("sure"), false) << named.name;
        std::vector<std::string> also;
        for (const JSON& other : device.at("nearest")) {
            also.push_back(other.at("device_name"));
        }
        EXPECT_EQ(also, std::vector<std::string>(named.also.begin(), named.also.end())) << named.name;
    }
}

TEST(flash_log, ANameIsToldToBeNoMoreThanThat) {
    const PROCESS_RESULT result =
        run_command({"flash", "identify", "--log", "-"}, "[    1.4] spi-nor spi0.0: w25q128 (16384 Kbytes)\n");
    const std::vector<std::string> lines = lines_of(result.output);
    EXPECT_TRUE(contains(lines.at(1), "Device 0 (w25q128): Winbond W25Q128JV, record ")) << lines.at(1);
    EXPECT_EQ(lines.at(2),
              "  named         by a name alone, not by its response: W25Q128 shares the record of W25Q128JV: answers "
              "EF4018 as W25Q128JV does");
    EXPECT_EQ(
        lines.at(3),
        "  one of        W25Q128JV, W25Q128JW, W25Q128JVM, W25Q128JWM; identify the bytes that it answers to RDID "
        "(9F) to tell");
    EXPECT_EQ(lines.at(4), "  danger        W25Q128JW, W25Q128JWM: a part for 1.8V: 3.3V on it may destroy it");
    const PROCESS_RESULT none =
        run_command({"flash", "identify", "--log", "-"}, "[    1.4] spi-nor spi0.0: n25q128 (16384 Kbytes)\n");
    EXPECT_EQ(none.exit_code, NOT_FOUND);
    EXPECT_EQ(lines_of(none.output).at(1), "Device 0 (n25q128): no record has this name");
    EXPECT_TRUE(contains(lines_of(none.output).at(2), "  may be        Micron N25Q128A13 (")) << none.output;
}

TEST(flash_log, PrefersWhatIsSaidToBeAnIdentification) {
    const JSON document = json_of(found_in("ef 70 17\n"
                                           "SF: Detected mx25l25635e with page size 256 Bytes\n"
                                           "spi-nor spi0.0: unrecognized JEDEC id bytes: ef, 40, 18\n"
                                           "JEDEC ID: C22018\n")
                                      .output);
    EXPECT_EQ(document.at("query"), JSON::array({"EF4018"}));
    EXPECT_EQ(document.at("log").at("others"), json_of(R"([{"line":4,"text":"JEDEC ID: C22018"}])"));
}

TEST(flash_log, TellsThatALogTellsNothing) {
    for (const std::string& log :
         {std::string(), std::string("hello\nworld is bad 12\n"), std::string(1 << 20, '\0'),
          std::string("53 46 44 50 06 01 01 ff\n"), std::string("JEDEC ID: EF\n"),
          std::string("read: 0x53 0x46 0x44 0x50 0x06\n"), std::string("read: 0xff 0xff 0x53 0x46 0x44 0x50 0x06\n"),
          std::string("read id\nread: 0x53 0x46 0x44 0x50 0x06\n"),
          std::string("00000000: 50444653 ff010106 10000109 ff000030    SFDP............\n"),
          std::string("0000000 5346 4450 0601 00ff\n"), std::string("00000000 ff01010650444653\n"),
          std::string("tx: 0x03 0x00 0x00 0x00\nrx: 0xef 0x40 0x18\n")}) {
        const PROCESS_RESULT result = found_in(log);
        EXPECT_EQ(result.exit_code, NOT_FOUND);
        EXPECT_TRUE(contains(result.errors, "no line of the log")) << result.errors;
        EXPECT_EQ(json_of(result.output).at("devices"), JSON::array());
    }
}

// Each has the identification of a flash, which is none there.
TEST(flash_log, TakesNoBytesOfWhichALineSaysSomethingElse) {
    const std::string bytes = "0xEF 0x40 0x18";
    std::string page = "read:";
    for (int i = 0; i < 7; ++i) {
        page += " " + bytes;
    }
    for (const std::string& log : std::vector<std::string>{"addr: " + bytes,
                                                           "WRITE: " + bytes,
                                                           "tx: " + bytes,
                                                           "sent = " + bytes,
                                                           "data: " + bytes,
                                                           bytes + " read:",
                                                           "read at " + bytes,
                                                           "read: addr " + bytes,
                                                           "read: " + bytes + " from 0x000000",
                                                           "read: " + bytes + " = 4145176",
                                                           "write, read: " + bytes,
                                                           "last read: " + bytes,
                                                           "read " + bytes,
                                                           "read: 0xEF4018",
                                                           "read: EF 40 18",
                                                           "read: 0xEF40 0x18 0x00",
                                                           "read: 0xEF 0x40",
                                                           "[read: " + bytes,
                                                           "read: 0x 0xEF 0x40 0x18",
                                                           page}) {
        const PROCESS_RESULT result = found_in(log + "\n");
        EXPECT_EQ(result.exit_code, NOT_FOUND) << log;
        EXPECT_EQ(json_of(result.output).at("devices"), JSON::array()) << log;
    }
}

// What a program wanted, and what it got instead may be a part that nothing is known of.
TEST(flash_log, TakesNoIdentificationThatWasExpected) {
    for (const std::string log :
         {"expected JEDEC ID EF4018, got C22018\n", "expected SPI flash ID: EF4018, read C22018\n",
          "expected the JEDEC ID EF4018\n", "Expected manufacturer id 0xef, device id 0x4018\n",
          "Expected manufacturer id 0xef\nExpected device id 0x4018\n",
          "expected flash chip \"W25Q64JV\" (id 0x1840ef)\n", "Expected RDID: 0xEF 0x40 0x18\n",
          "flash id: expecting ef4018\n", "expected JEDEC ID:\nEF 40 18\n", "JEDEC ID, expected:\nEF4018\n",
          "Expected ID:\n00000000: ef 40 18\n", "JEDEC ID: EF, expected\n0xEF 0x40 0x18\n"}) {
        const PROCESS_RESULT result = found_in(log);
        EXPECT_EQ(result.exit_code, NOT_FOUND) << log;
        EXPECT_EQ(json_of(result.output).at("devices"), JSON::array()) << log;
    }
}

// A name says more than bytes of which nobody says that they are an identification.
TEST(flash_log, PrefersANameToWhatWasReceived) {
    const JSON document = json_of(found_in("read: 0xEF 0x40 0x18\n"
                                           "SF: Detected mx25l25635e with page size 256 Bytes\n")
                                      .output);
    EXPECT_EQ(document.at("query"), JSON::array({"mx25l25635e"}));
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
    const std::string next = "\nJEDEC ID: EF4018\n";
    EXPECT_EQ(found_in(std::string(15 << 20, 'x') + next).exit_code, DONE);
    EXPECT_EQ(found_in(std::string(17 << 20, 'x') + next).exit_code, NOT_FOUND);
}

TEST(flash_log, ReadsAFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("boot.txt", "JEDEC ID: EF4018\n");
    const PROCESS_RESULT result = run_command({"flash", "identify", "--log", file});
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(lines_of(result.output).at(0), "Line 1: JEDEC ID: EF4018");
    expect_failure(run_command({"flash", "identify", "--log", scratch.path("none.txt")}), INTERNAL_ERROR,
                   {"the log cannot be read: there is no such file: ", "none.txt"});
    expect_failure(run_command({"flash", "identify", "--log", scratch.directory().string()}), INTERNAL_ERROR,
                   {"the log cannot be read: it is a directory: "});
}

TEST(flash_log, ReadsUtf16AndPassesOverMarks) {
    for (const auto& [before, line] : {std::pair("starting\r\n", 2), std::pair("", 1)}) {
        const std::string text = before + std::string("JEDEC ID: EF4018\r\n");
        std::string little("\xFF\xFE");
        std::string big("\xFE\xFF");
        for (const char character : text) {
            (little += character) += '\0';
            (big += '\0') += character;
        }
        for (const std::string& log : {little, big, "\xEF\xBB\xBF" + text}) {
            const PROCESS_RESULT result = found_in(log);
            EXPECT_EQ(result.exit_code, DONE) << result.errors;
            const JSON told = json_of(result.output).at("log");
            EXPECT_EQ(told.at("line"), line);
            EXPECT_EQ(told.at("text"), "JEDEC ID: EF4018");
        }
    }
}

// It may stand for something that was lost.
TEST(flash_log, KeepsABinaryZeroOfOtherLogs) {
    EXPECT_NE(found_in(std::string("JEDEC ID: EF40\0"
                                   "18\n",
                                   18))
                  .exit_code,
              DONE);
}
