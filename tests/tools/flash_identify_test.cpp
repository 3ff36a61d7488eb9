#include "command_fixture.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

RECORD chip(const std::string& name, unsigned mfc_id, unsigned memory_type, unsigned memory_id) {
    RECORD record = flash_reference::sample(name);
    record.mfc_id = static_cast<BYTE>(mfc_id);
    record.memory_type = static_cast<BYTE>(memory_type);
    record.memory_id = static_cast<BYTE>(memory_id);
    return record;
}

RECORD signature(const std::string& name, unsigned memory_id, unsigned index) {
    RECORD record = flash_reference::sample(name);
    record.silicon_id = true;
    record.memory_id = static_cast<BYTE>(memory_id);
    record.memory_id_index = static_cast<BYTE>(index);
    return record;
}

/// What a device position answers with when a record was found.
JSON mapped(unsigned position, unsigned index, const RECORD& record) {
    JSON object{{"position", position}, {"mapped", true}, {"index", index}};
    object.update(record_object(index, record));
    return object;
}

JSON unmapped(unsigned position) {
    return {{"position", position}, {"mapped", false}, {"index", nullptr}};
}

const std::vector<std::string> BESIDES{"given",       "telling",        "by_hand", "sure",   "missing_bytes",
                                       "ambiguities", "contradictions", "fitting", "oddity", "nearest"};

/// A device without what is told of it besides (flash_candidates_test.cpp), which must be there.
void take_off_besides(JSON& device, const std::string& candidates) {
    for (const std::string& key : BESIDES) {
        EXPECT_EQ(device.erase(key), 1U) << key;
    }
    EXPECT_EQ(device.erase(candidates), 1U);
}

/// The answer to a chain, without it.
JSON plain_json_of(const std::string& output) {
    JSON document = json_of(output);
    for (JSON& device : document["devices"]) {
        take_off_besides(device, "candidates");
    }
    return document;
}

/// The answers of a batch, without it.
std::vector<JSON> plain_lines_of(const std::string& output) {
    std::vector<JSON> lines = json_lines_of(output);
    for (JSON& line : lines) {
        if (!line.contains("error")) {
            take_off_besides(line, "admitted");
        }
    }
    return lines;
}

using QUERY = std::vector<std::string>;
using DEVICES = std::vector<JSON>;

JSON chain_found(const QUERY& query, const DEVICES& devices, const JSON& longest_program_utime) {
    return found_answer(query, {{"devices", devices}, {"longest_program_utime", longest_program_utime}});
}

JSON chain_missing(const QUERY& query, const DEVICES& devices, const JSON& longest_program_utime) {
    return missing_answer(query, {{"devices", devices}, {"longest_program_utime", longest_program_utime}});
}

const RECORD SLOW = [] {
    RECORD record = chip("SLOW", 0x20, 0xBA, 0x18);
    record.program_utime = 5000;
    return record;
}();
const RECORD FAST = [] {
    RECORD record = chip("FAST", 0xEF, 0x70, 0x17);
    record.program_utime = 700;
    return record;
}();

}  // namespace

TEST(flash_identify, OneDevice) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "EF7017"});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    const JSON document = plain_json_of(result.output);
    EXPECT_EQ(document, chain_found({"EF7017"}, {mapped(0, 1, FAST)}, 700));
    EXPECT_EQ(keys_of(document), (std::vector<std::string>{"query", "found", "devices", "longest_program_utime"}));
    EXPECT_EQ(keys_of(document.at("devices").at(0)), keys_of(mapped(0, 1, FAST)));
}

TEST(flash_identify, ChainOfDevices) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "EF7017", "20BA18", "EF7017"});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(plain_json_of(result.output),
              chain_found({"EF7017", "20BA18", "EF7017"}, {mapped(0, 1, FAST), mapped(1, 0, SLOW), mapped(2, 1, FAST)},
                          5000));
}

TEST(flash_identify, UnmappedDevicesAreAnsweredToo) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "000000", "EF7017"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(plain_json_of(result.output),
              chain_missing({"000000", "EF7017"}, {unmapped(0), mapped(1, 1, FAST)}, 700));
}

TEST(flash_identify, NoDeviceMapped) {
    const FLASH_DATABASE database({SLOW});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "FFFFFF"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(plain_json_of(result.output), chain_missing({"FFFFFF"}, {unmapped(0)}, nullptr));
}

TEST(flash_identify, ForPeople) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"flash", "identify", "EF7017", "123456"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(result.output, "FAST") && contains(result.output, "EF7017")) << result.output;
    EXPECT_TRUE(contains(result.output, "123456")) << result.output;
    EXPECT_TRUE(contains(result.output, "700 us")) << result.output;
}

TEST(flash_identify, ForPeopleTheByteIsNamedThatPassesAnotherDeviceOver) {
    RECORD later = chip("NEW", 0x44, 0xBB, 0x21);
    later.mfc_id_index = 4;
    const PROCESS_RESULT result =
        FLASH_DATABASE({later, chip("OLD", 0x20, 0xBB, 0x21)}).run({"flash", "identify", "20BB21104400"});
    EXPECT_TRUE(contains(result.output, "NEW, record 0\n")) << result.output;
    EXPECT_TRUE(contains(result.output, "  passed over   OLD (byte 4 = 44 decides)\n")) << result.output;
}

TEST(flash_identify, EverySpellingOfAResponse) {
    const FLASH_DATABASE database({FAST});
    for (const char* spelling : {"EF7017", "ef7017", "eF7017", "EF 70 17", "EF:70:17", "EF-70-17", "0xEF7017",
                                 "0XEF7017", "0xEF 0x70 0x17", " EF7017 ", "EF7017000000", "EF 70-17:FF"}) {
        const PROCESS_RESULT result = database.run({"flash", "identify", "--", spelling});
        EXPECT_EQ(result.exit_code, DONE) << spelling << ": " << result.errors;
        EXPECT_TRUE(contains(result.output, "FAST")) << spelling;
    }
}

TEST(flash_identify, WrongResponses) {
    const FLASH_DATABASE database({FAST});
    for (const char* response : {"", " ", ":", "E", "EF7", "EF701", "EG7017", "0x", "0xE", "EF,70,17", "W25Q64JV",
                                 "EF\t7017", "E F", "\xC3\xA4"}) {
        expect_failure(database.run({"flash", "identify", "--", response}), WRONG_USAGE, {"identification response"});
    }
    expect_failure(database.run({"flash", "identify", "EF7017", "-"}), WRONG_USAGE,
                   {"- reads all responses from standard input: no other one stands beside it"});
}

TEST(flash_identify, ResponseOf256BytesAtMost) {
    RECORD last = chip("LAST", 0xEF, 0, 0x77);
    last.memory_type_index = 255;
    last.memory_id_index = 254;
    const FLASH_DATABASE database({last});
    std::string response = "EF";
    for (int i = 1; i < 256; ++i) {
        response += i == 254 ? "77" : "00";
    }
    EXPECT_EQ(database.run({"flash", "identify", response}).exit_code, DONE);
    expect_failure(database.run({"flash", "identify", response + "00"}), WRONG_USAGE, {"256"});
}

TEST(flash_identify, MissingBytesAreZero) {
    RECORD exact = chip("ZERO", 0xEF, 0x00, 0x70);
    exact.memory_type_index = 3;
    exact.memory_id_index = 1;
    const FLASH_DATABASE database({exact});
    EXPECT_EQ(database.run({"flash", "identify", "EF70"}).exit_code, DONE);
    EXPECT_EQ(database.run({"flash", "identify", "EF701701"}).exit_code, NOT_FOUND);
}

TEST(flash_identify, SiliconAndDeviceRecordsAreApart) {
    const RECORD old = signature("OLD", 0x17, 0);
    const FLASH_DATABASE database({old, chip("NEW", 0x17, 0, 0)});
    const JSON silicon = plain_json_of(database.run({"--json", "flash", "identify", "--silicon", "17"}).output);
    EXPECT_EQ(silicon, chain_found({"17"}, {mapped(0, 0, old)}, 5000));
    EXPECT_EQ(json_of(database.run({"--json", "flash", "identify", "17"}).output)["devices"][0]["device_name"], "NEW");
    EXPECT_EQ(database.run({"flash", "identify", "--silicon", "18"}).exit_code, NOT_FOUND);
}

TEST(flash_identify, FirstRecordWinsAndSwitchesCount) {
    RECORD rare = chip("RARE", 0x20, 0xBA, 0x18);
    rare.ini = "RARE";
    const FLASH_DATABASE database({rare, chip("FIRST", 0x20, 0xBA, 0x18), chip("SECOND", 0x20, 0xBA, 0x18)});
    EXPECT_TRUE(contains(database.run({"flash", "identify", "20BA18"}).output, "FIRST"));
    EXPECT_TRUE(contains(database.run({"--set", "PGM_ALLOW_RARE=on", "flash", "identify", "20BA18"}).output, "RARE"));
}

TEST(flash_identify, Batch) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "-"}, "EF7017\n 20 BA 18 \r\nEF7017");
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(plain_lines_of(result.output), (std::vector<JSON>{found_answer("EF7017", mapped(0, 1, FAST)),
                                                                found_answer(" 20 BA 18 ", mapped(1, 0, SLOW)),
                                                                found_answer("EF7017", mapped(2, 1, FAST))}));
}

TEST(flash_identify, BatchGoesOnBehindTheUnknown) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "-"}, "EF7017\nEF7018\n20BA18\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(plain_lines_of(result.output),
              (std::vector<JSON>{found_answer("EF7017", mapped(0, 1, FAST)), missing_answer("EF7018", unmapped(1)),
                                 found_answer("20BA18", mapped(2, 0, SLOW))}));
}

TEST(flash_identify, BatchOfSignatures) {
    const FLASH_DATABASE database({signature("OLD", 0x17, 0)});
    const PROCESS_RESULT result = database.run({"flash", "identify", "--silicon", "-"}, "17\n17\n");
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(lines_of(result.output).size() % 2, 0U);
    EXPECT_TRUE(contains(result.output, "OLD"));
}

TEST(flash_identify, BatchGoesOnBehindLinesThatAreNoResponse) {
    const FLASH_DATABASE database({SLOW, FAST});
    const PROCESS_RESULT result = database.run({"--json", "flash", "identify", "-"}, "EF7017\nrubbish\n\n20BA18\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(result.errors, "rubbish")) << result.errors;
    EXPECT_EQ(plain_lines_of(result.output),
              (std::vector<JSON>{found_answer("EF7017", mapped(0, 1, FAST)),
                                 refused_line("rubbish",
                                              "\"rubbish\" is not an identification response: expected pairs of "
                                              "hexadecimal digits"),
                                 refused_line("", BLANK_LINE), found_answer("20BA18", mapped(1, 0, SLOW))}));
}

TEST(flash_identify, AZeroByteEndsNoMessage) {
    const std::string line = std::string("EF") + '\0' + "70";
    const std::string message =
        "\"" + line + "\" is not an identification response: expected pairs of hexadecimal digits";
    const PROCESS_RESULT result = run_command({"--json", "flash", "identify", "-"}, line + "\n");
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(json_of(result.output).at("error").at("message"), message);
    EXPECT_TRUE(contains(result.errors, "70\" is not an identification response")) << result.errors;
}

TEST(flash_identify, NothingEnabled) {
    RECORD rare = SLOW;
    rare.ini = "RARE";
    const PROCESS_RESULT result = FLASH_DATABASE({rare}).run({"flash", "identify", "20BA18"});
    EXPECT_EQ(result.exit_code, NOT_FOUND) << result.errors;
}
