#include <sstream>

#include "command_fixture.h"
#include "pgmdev_sfl_flash_info.h"
#include "tools/sfdp_dumps.h"

// `flash sfdp`, and `flash identify --sfdp`, on dumps of real chips. What each must give was worked out by another reader:
// tests/data/sfdp/README.md.

namespace {

using WORDS = std::vector<std::string>;

JSON comparison_of(const JSON& device, const std::string& member) {
    for (const JSON& each : device.at("comparison")) {
        if (each.at("member") == member) {
            return each;
        }
    }
    return nullptr;
}

/// The only device; whether it is what it is mapped to, the exit code tells as well.
JSON identified(const std::string& dump, const std::string& response) {
    const PROCESS_RESULT result = run_command({"--json", "flash", "identify", "--sfdp", dump_file(dump), response});
    JSON device = json_of(result.output).at("devices").at(0);
    bool contradicts = false;
    for (const JSON& each : device.at("ranking")) {
        contradicts = contradicts || (each.at("index") == device.at("index") && !each.at("contradicting").empty());
    }
    EXPECT_EQ(result.exit_code, contradicts ? NOT_FOUND : DONE) << response << result.errors;
    EXPECT_FALSE(contradicts && device.at("sure").get<bool>()) << response;
    return device;
}

}  // namespace

TEST(flash_sfdp, ShippedDumpsGiveWhatTheOtherReaderGives) {
    const JSON expected = json_of(read_file(SFDP_DIRECTORY + "/expected.json"));
    EXPECT_EQ(expected.size(), 16U);
    for (const auto& [file, parts] : expected.items()) {
        const JSON answer = decoded((SFDP_DIRECTORY + "/").append(file));
        for (const auto& [key, value] : parts.items()) {
            ASSERT_TRUE(answer.contains(key)) << file << " " << key;
            EXPECT_EQ(answer.at(key).sorted(), value.sorted()) << file << " " << key;
        }
        for (const std::string& key : keys_of(answer)) {
            EXPECT_TRUE(parts.contains(key) || key == "query" || key == "found" || key == "record") << key;
        }
    }
}

TEST(flash_sfdp, SizeIsThatOfTheIndex) {
    std::size_t count = 0;
    for (const std::string& line : lines_of(read_file(SFDP_DIRECTORY + "/index.csv"))) {
        std::istringstream stream(line);
        WORDS cells(5);
        for (std::string& cell : cells) {
            std::getline(stream, cell, ',');
        }
        if (cells[0] != "file") {
            EXPECT_EQ(std::to_string(decoded(SFDP_DIRECTORY + "/" + cells[0]).at("density_bits").get<unsigned long>()),
                      cells[4]);
            ++count;
        }
    }
    EXPECT_EQ(count, 16U);
}
TEST(flash_sfdp, PeopleSeeAllAndTheRecord) {
    const PROCESS_RESULT result = run_command({"flash", "sfdp", dump_file("MT25QU256A"), "--id", "20BB19104400"});
    EXPECT_EQ(result.exit_code, DONE);
    for (const std::string part :
         {"SFDP 1.6 (JESD216B)", "FF84 4-byte instructions 1.0, 2 words at 80h", "256 Mbit, 33554432 bytes",
          "3 or 4 bytes", "2: 64 KiB with D8 (4-byte DC), 160 ms typical, 1600 ms at most",
          "whole die, 84000 ms typical, 2016000 ms at most", "pages of 256 bytes, 120 us typical, 2880 us at most",
          "4-4-4 with EB, 10 dummy clocks (1 mode, 9 wait)", "70 bit 7",
          ("UNKNOWN, UNKNOWN-20BB19104400, FALSE, 0x19, 2, 0xBB, 1, 0x20, 0, 0x19, TRUE, NONE, TRUE, TRUE, FALSE, "
           "FALSE, FALSE, TRUE, 1, 268435456, 65536, FALSE, TRUE, 2016, 2, 2880, 0x00, 0x00, 0x00, 255, 255, FALSE, "
           "3.3V\n"),
          "\nbulk_erase_time=2016\n", "  asc_voltage         3.3V: not told"}) {
        EXPECT_TRUE(contains(result.output, part)) << part << "\nin\n" << result.output;
    }
}

TEST(flash_sfdp, RowCompilesToTheRecord) {
    const JSON record = decoded(dump_file("XM25QH32D")).at("record");
    const std::string table = read_file(std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv");
    const SCRATCH scratch;
    std::string header;
    for (std::size_t i = 0; i < 8; ++i) {
        header += lines_of(table)[i] + "\n";
    }
    const std::string source = scratch.write("one.csv", header + record.at("row").get<std::string>() + "\n");
    const PROCESS_RESULT compiled = run_command({"flash", "compile", source, scratch.path("one.pcf")});
    EXPECT_EQ(compiled.exit_code, DONE) << compiled.errors;
    const JSON dumped = json_of(run_command({"--json", "flash", "dump", scratch.path("one.pcf")}).output).at(0);
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const std::string name(member.name);
        EXPECT_EQ(dumped.at(name), record.at(name)) << name;
    }
}

TEST(flash_sfdp, RefusalTellsByteFieldAndExpectation) {
    const std::string bytes = read_file(dump_file("W25Q128JV"));
    const SCRATCH scratch;
    const std::string file = scratch.write("cut.sfdp", bytes.substr(0, 150));
    const std::string message =
        "the SFDP dump is refused: byte 96h, basic table: found a dump of 150 bytes, expected 16 words, up to C0h";
    expect_failure(run_command({"flash", "sfdp", file}), INTERNAL_ERROR, {message, file});
    const JSON error = json_failure(run_command({"--json", "flash", "sfdp", file}), INTERNAL_ERROR, "sfdp_refused");
    EXPECT_EQ(error.at("message"), message);
    EXPECT_EQ(error.at("path"), file);
}

TEST(flash_sfdp, WhatIsNoDumpIsSaid) {
    expect_failure(run_command({"flash", "sfdp", "nothing"}), WRONG_USAGE,
                   {"\"nothing\" is neither a file nor pairs of hexadecimal digits"});
    expect_failure(run_command({"flash", "sfdp", SFDP_DIRECTORY}), WRONG_USAGE,
                   {"the dump cannot be read: it is a directory"});
    expect_failure(run_command({"flash", "sfdp", "-"}), INTERNAL_ERROR, {"byte 00h, signature: found the end"});
    expect_failure(run_command({"flash", "sfdp", "-"}, std::string(5 << 20, 'x')), WRONG_USAGE,
                   {"it is far larger than any SFDP area"});
}

#if defined(__linux__)
TEST(flash_sfdp, AFileOfTheKernelHoldsMoreThanItTells) {
    expect_failure(run_command({"flash", "sfdp", "/proc/sys/kernel/ostype"}), INTERNAL_ERROR,
                   {"byte 00h, signature: found 4C 69 6E 75, expected 53 46 44 50"});
}
#endif

TEST(flash_identify_sfdp, ShowsRecordAndChipSideBySide) {
    const JSON device = identified("MT25QU256A", "20BB19104400");
    EXPECT_EQ(device.at("device_name"), "MT25QU256A");
    EXPECT_EQ(comparison_of(device, "device_bit_size"), (JSON{{"member", "device_bit_size"},
                                                              {"unit", "bits"},
                                                              {"record", "268435456"},
                                                              {"chip", "268435456 bits"},
                                                              {"agrees", true}}));
    EXPECT_EQ(comparison_of(device, "sec_erase_time").at("chip"), "160 ms typical, 1600 ms at most");
    EXPECT_EQ(comparison_of(device, "bulk_erase_time").at("chip"), "84000 ms typical, 2016000 ms at most");
    EXPECT_EQ(comparison_of(device, "flag_status").at("chip"), "ready by 70 bit 7");
    EXPECT_EQ(device.at("sfdp").at("density_bits"), 268435456);
    EXPECT_EQ(device.at("record").at("memory_id"), 0x19);
}

TEST(flash_identify_sfdp, DisagreementsAreTold) {
    // The chip that answers is not the one that the dump is of: half as large, with another way to wait.
    const JSON device = identified("W25Q128JV", "20BB19104400");
    EXPECT_EQ(device.at("sure"), false);
    EXPECT_EQ(comparison_of(device, "device_bit_size").at("agrees"), false);
    EXPECT_EQ(comparison_of(device, "device_bit_size").at("chip"), "134217728 bits");
    EXPECT_EQ(comparison_of(device, "byte4_addressing").at("agrees"), false);
    EXPECT_EQ(comparison_of(device, "flag_status").at("agrees"), false);
    EXPECT_EQ(comparison_of(device, "device_sector_byte").at("agrees"), true);
    const PROCESS_RESULT text = run_command({"flash", "identify", "--sfdp", dump_file("W25Q128JV"), "20BB19104400"});
    EXPECT_TRUE(contains(text.output, "3 of 8 members disagree")) << text.output;
    EXPECT_TRUE(contains(text.output, "!  device_bit_size")) << text.output;
}

TEST(flash_identify_sfdp, TheFlashsOwnWordsChooseAmongCandidates) {
    const auto ranked = [](const std::string& dump, const std::string& response) {
        std::vector<std::string> names;
        const JSON device = identified(dump, response);
        for (const JSON& each : device.at("ranking")) {
            std::string name = each.at("device_name");
            for (const JSON& member : each.at("contradicting")) {
                name += " " + member.get<std::string>();
            }
            names.push_back(name);
        }
        return names;
    };
    EXPECT_EQ(ranked("W25Q512JV", "C84019"),
              (WORDS{"GD25S512MD", "GD25Q256 device_bit_size", "GD25B256 device_bit_size"}));
    EXPECT_EQ(ranked("W25Q256FV", "C84019"), (WORDS{"GD25Q256", "GD25B256", "GD25S512MD device_bit_size"}));
    EXPECT_EQ(
        ranked("W25Q128JV", "0120184D00"),
        (WORDS{"S25FL129P0 device_sector_byte", "S25FS128S0 device_sector_byte", "S25FL128S0 device_sector_byte"}));
    EXPECT_EQ(ranked("W25Q128JV", "EF4018"), WORDS{"W25Q128JV"});
    const auto sentence = [](const std::string& dump, const std::string& response) {
        const PROCESS_RESULT result = run_command({"flash", "identify", "--sfdp", dump_file(dump), response});
        for (const std::string& line : lines_of(result.output)) {
            if (line.starts_with("What the flash says of itself")) {
                return line;
            }
        }
        return std::string();
    };
    EXPECT_EQ(sentence("W25Q512JV", "C84019"),
              "What the flash says of itself decides: GD25S512MD, and not GD25Q256 (device_bit_size), GD25B256 "
              "(device_bit_size); --as 0=GD25S512MD drives it so");
    EXPECT_EQ(sentence("W25Q256FV", "C84019"),
              "What the flash says of itself decides: GD25Q256 or GD25B256, and not GD25S512MD (device_bit_size)");
    EXPECT_EQ(sentence("W25Q128JV", "20BB19104400"),
              "What the flash says of itself decides: it is none of these: MT25QU256A (device_bit_size)");
    EXPECT_EQ(sentence("W25Q128JV", "C22018"),
              "What the flash says of itself leaves all of them: MX25L12833F or MX25L12845E or MX25L12805D");
    EXPECT_EQ(sentence("W25Q128JV", "EF4018"), "");
    const std::vector<std::string> harmful =
        lines_of(run_command({"flash", "identify", "--sfdp", dump_file("W25Q512JV"), "C84019"}).output);
    EXPECT_TRUE(harmful.at(0).starts_with("What the flash says of itself decides: GD25S512MD")) << harmful.at(0);
    const PROCESS_RESULT by_hand =
        run_command({"flash", "identify", "--sfdp", dump_file("W25Q512JV"), "C84019", "--as", "0=GD25S512MD"});
    EXPECT_EQ(by_hand.exit_code, DONE) << by_hand.errors;
    EXPECT_FALSE(contains(by_hand.output, "What the flash says of itself decides")) << by_hand.output;
}

TEST(flash_identify_sfdp, TimesDisagreeOnlyBelowTheTypicalOnes) {
    PGMDEV_SFL_FLASH_INFO record = flash_reference::sample("TOO-QUICK");
    record.mfc_id = 0xEF;
    record.memory_type = 0x40;
    record.memory_id = 0x18;
    record.mfc_id_index = 0;
    record.memory_type_index = 1;
    record.memory_id_index = 2;
    record.die_count = 2;
    record.device_sector_byte = 65536;
    record.bulk_erase_time = 79;  // two dies of 40 s
    record.sec_erase_time = 0;    // not known
    record.program_utime = 704;
    record.aai_mode = false;
    const FLASH_DATABASE database({record});
    const PROCESS_RESULT result =
        database.run({"--json", "flash", "identify", "--sfdp", dump_file("W25Q128JV"), "EF4018"});
    const JSON device = json_of(result.output).at("devices").at(0);
    EXPECT_EQ(comparison_of(device, "bulk_erase_time").at("agrees"), false);
    EXPECT_EQ(comparison_of(device, "bulk_erase_time").at("chip"),
              "40000 ms typical, 240000 ms at most, each of 2 dies");
    EXPECT_EQ(comparison_of(device, "sec_erase_time").at("agrees"), true);
    EXPECT_EQ(comparison_of(device, "sec_erase_time").at("chip"),
              "160 ms typical, 2240 ms at most, taken: the record has none");
    EXPECT_EQ(comparison_of(device, "program_utime").at("agrees"), true);
}

TEST(flash_identify_sfdp, UnknownChipGetsItsRecord) {
    const FLASH_DATABASE database({flash_reference::sample("ANOTHER")});
    const PROCESS_RESULT result =
        database.run({"--json", "flash", "identify", "--sfdp", dump_file("W25Q512JV"), "EF4020"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const JSON device = json_of(result.output).at("devices").at(0);
    EXPECT_EQ(device.at("mapped"), false);
    EXPECT_EQ(device.at("comparison"), nullptr);
    EXPECT_EQ(device.at("record").at("device_bit_size"), 536870912);
    EXPECT_EQ(device.at("record").at("mfc_id"), 0xEF);
    EXPECT_EQ(device.at("record").at("device_name"), "UNKNOWN-EF4020");
}

TEST(flash_identify_sfdp, TakesOneResponse) {
    for (const WORDS& responses : {WORDS{"EF4018", "EF4018"}, WORDS{"-"}}) {
        WORDS arguments{"flash", "identify", "--sfdp", dump_file("W25Q128JV")};
        arguments.insert(arguments.end(), responses.begin(), responses.end());
        expect_failure(run_command(arguments), WRONG_USAGE, {"expected one response HEX with --sfdp"});
    }
    expect_failure(run_command({"flash", "identify"}), WRONG_USAGE, {"expected one of HEX, --log and --system"});
}
