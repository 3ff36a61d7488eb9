#include <algorithm>

#include "command_fixture.h"

// Responses of the shipped table that several chips give, with three bytes and with all: what else it may be, and what a
// mistake would do.

namespace {

JSON identified(const std::string& response, int exit_code = DONE) {
    const PROCESS_RESULT result = run_command({"--json", "flash", "identify", response});
    EXPECT_EQ(result.exit_code, exit_code) << response << result.errors;
    return json_of(result.output).at("devices").at(0);
}

/// The other devices that it may be: of the rows, then of what is known besides.
std::vector<std::string> possible(const JSON& device) {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        if (name != device.at("device_name") && std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    };
    for (const JSON& candidate : device.at("candidates")) {
        if (candidate.at("standing") != "passed_over" && candidate.at("standing") != "ruled_out") {
            add(candidate.at("device_name"));
        }
    }
    for (const JSON& ambiguity : device.at("ambiguities")) {
        for (const JSON& chip : ambiguity.at("chips")) {
            add(chip.at("device_name"));
        }
    }
    return names;
}

std::vector<std::string> risks(const JSON& device) {
    std::vector<std::string> all;
    for (const JSON& ambiguity : device.at("ambiguities")) {
        EXPECT_FALSE(ambiguity.at("harm").get<std::string>().empty());
        all.push_back(ambiguity.at("risk"));
    }
    return all;
}

using DEVICE_NAMES = std::vector<std::string>;

struct COLLISION {
    const char* response;
    const char* answered;
    DEVICE_NAMES also;
    DEVICE_NAMES risks;  ///< of what is known besides, the worst first
};

const std::vector<COLLISION> OF_THREE_BYTES{
    {"012018",
     "S25FL128S1",
     {"S25FS128S", "S25FS128S0", "S25FL128S0", "S25FL129P1", "S25FL129P0", "S25FL128P1", "S25FL128P0"},
     {"data", "voltage"}},
    {"010219", "S25FL256S1", {"S25FS256S", "S25FS256S0", "S25FL256S0"}, {"data", "voltage"}},
    {"010220", "S25FL512S", {"S25FS512S"}, {"voltage"}},
    {"20BB21", "N25Q00A", {"MT25QU01G"}, {"data"}},
    {"20BA21", "N25Q00", {"MT25QL01G"}, {"data"}},
    {"C84019", "GD25Q256", {"GD25S512MD", "GD25B256", "GD25Q256C"}, {"data", "protection"}},
    {"856014", "P25Q80H", {"P25Q80L", "P25Q80SL"}, {"voltage"}},
    {"856015", "P25Q16H", {"P25Q16L", "P25Q16SL"}, {"voltage"}},
    {"856016", "P25Q32H", {"P25Q32L", "P25Q32SL"}, {"voltage"}},
    {"856017", "P25Q64H", {"P25Q64L", "P25Q64SL"}, {"voltage"}},
    {"856018", "P25Q128H", {"P25Q128L", "P25Q128SL"}, {"voltage"}},
    {"C22536", "MX25U3235F", {"MX25L3239E"}, {"voltage"}},
    {"C22537", "MX25U6435F", {"MX25L6439E"}, {"voltage"}},
    {"EF4019", "W25Q256JV", {"W25Q256FV"}, {"flow"}},
    {"C22019", "MX25L25635E", {"MX25L25635F", "MX25L25645G"}, {"flow"}},
    {"C86019", "GD25LQ256D", {"GD25LQ256H"}, {"protection"}},
};

/// Responses that are longer, but not long enough.
const std::vector<COLLISION> OF_FOUR_AND_FIVE_BYTES{
    {"0120184D",
     "S25FL129P0",
     {"S25FS128S", "S25FS128S0", "S25FL128S1", "S25FL128S0", "S25FL129P1"},
     {"data", "voltage"}},
    {"0120184D00", "S25FL129P0", {"S25FS128S0", "S25FL128S0"}, {"voltage"}},
    {"0120184D01", "S25FL129P1", {"S25FS128S", "S25FL128S1"}, {"voltage"}},
    {"01201803", "S25FL128P0", {"S25FL128P1"}, {}},
    {"0102194D", "S25FL256S0", {"S25FS256S", "S25FS256S0", "S25FL256S1"}, {"data", "voltage"}},
    {"0102194D00", "S25FL256S0", {"S25FS256S0"}, {"voltage"}},
    {"0102194D01", "S25FL256S1", {"S25FS256S"}, {"voltage"}},
    {"0102204D", "S25FL512S", {"S25FS512S"}, {"voltage"}},
    {"0102204D00", "S25FL512S", {"S25FS512S"}, {"voltage"}},
    {"20BB2110", "N25Q00A", {"MT25QU01G"}, {"data"}},
    {"20BA1810", "N25Q128A13", {"MT25QL128"}, {}},
};

struct DECISION {
    const char* response;
    const char* device;
};

const std::vector<DECISION> BY_FURTHER_BYTES{
    {"0120184D0180", "S25FL128S1"}, {"0120184D0080", "S25FL128S0"}, {"0120184D0181", "S25FS128S"},
    {"0120184D0081", "S25FS128S0"}, {"0102194D0180", "S25FL256S1"}, {"0102194D0080", "S25FL256S0"},
    {"0102194D0181", "S25FS256S"},  {"0102194D0081", "S25FS256S0"}, {"0102204D0080", "S25FL512S"},
    {"0102204D0081", "S25FS512S"},  {"20BB21104400", "MT25QU01G"},  {"20BB21104000", "MT25QU01G"},
    {"20BB21100000", "N25Q00A"},    {"20BA21104400", "MT25QL01G"},  {"20BA21100000", "N25Q00"},
    {"20BA18104400", "MT25QL128"},  {"20BA18104000", "MT25QL128"},  {"20BA181040", "MT25QL128"},
    {"20BA18104500", "MT25QL128"},  {"20BA181048", "MT25QL128"},    {"20BA18100000", "N25Q128A13"},
    {"20BB211040", "MT25QU01G"},    {"20BB211000", "N25Q00A"},      {"0120180300", "S25FL128P0"},
    {"0120180301", "S25FL128P1"},   {"7F372013", "A25L40PT"},
};

void expect_collision(const std::string& response, const COLLISION& collision) {
    const JSON device = identified(response);
    EXPECT_EQ(device.at("device_name"), collision.answered) << response;
    EXPECT_EQ(device.at("sure"), false) << response;
    EXPECT_EQ(possible(device), collision.also) << response;
    EXPECT_EQ(risks(device), collision.risks) << response;
}

}  // namespace

TEST(flash_collisions, AreToldOfThreeBytesAndOfThoseThatOnlyRepeatThem) {
    for (const COLLISION& collision : OF_THREE_BYTES) {
        const std::string bytes = collision.response;
        for (const std::string& response : {bytes, bytes + bytes, bytes + "FFFFFF", bytes + "00"}) {
            expect_collision(response, collision);
        }
    }
}

TEST(flash_collisions, AreToldOfBytesThatDecideLittle) {
    for (const COLLISION& collision : OF_FOUR_AND_FIVE_BYTES) {
        expect_collision(collision.response, collision);
    }
}

TEST(flash_collisions, AreDecidedByFurtherBytesWhereBytesDecide) {
    for (const DECISION& decision : BY_FURTHER_BYTES) {
        const JSON device = identified(decision.response);
        EXPECT_EQ(device.at("device_name"), decision.device) << decision.response;
        EXPECT_EQ(device.at("sure"), true) << decision.response;
        EXPECT_EQ(device.at("ambiguities"), JSON::array()) << decision.response;
    }
}

TEST(flash_collisions, SayFirstWhatCouldDamageData) {
    const PROCESS_RESULT result = run_command({"flash", "identify", "012018"});
    EXPECT_EQ(result.exit_code, DONE);
    const std::string danger = "256 KiB sectors: erasing by 64 KiB would wipe the neighbours; read 6 bytes to tell\n";
    EXPECT_TRUE(contains(result.output, danger)) << result.output;
    EXPECT_LT(result.output.find(danger), result.output.find("a part for 1.8V"));
    EXPECT_LT(result.output.find("a part for 1.8V"), result.output.find("recognised by"));
}

TEST(flash_collisions, CandidatesTellWhatTheyCompareAndWhereTheyDiffer) {
    const JSON device = identified("20BB21");
    EXPECT_EQ(device.at("missing_bytes"), JSON::array({4}));
    EXPECT_EQ(device.at("given"), 3);
    EXPECT_EQ(device.at("telling"), 3);
    const JSON& open = device.at("candidates").at(0);
    EXPECT_EQ(open.at("device_name"), "MT25QU01G");
    EXPECT_EQ(open.at("standing"), "open");
    EXPECT_EQ(open.at("compared").at(2).at("position"), 4);
    EXPECT_EQ(open.at("compared").at(2).at("given"), false);
    EXPECT_EQ(open.at("differs").at(0).at("member"), "die_count");
    EXPECT_EQ(open.at("differs").at(0).at("risk"), "data");
    EXPECT_EQ(open.at("differs").at(0).at("taken"), "4");
    EXPECT_EQ(open.at("differs").at(0).at("other"), "2");
    EXPECT_EQ(device.at("candidates").back().at("standing"), "taken");
    EXPECT_EQ(device.at("candidates").back().at("index"), device.at("index"));
}

TEST(flash_collisions, ContradictionsAreToldFirst) {
    const PROCESS_RESULT result = run_command({"flash", "identify", "55BA18104400"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(
        lines_of(result.output).at(0),
        "Device 0 (55BA18104400): this is no Micron MT25QL128: byte 0 is 55, not 20; it is mapped by byte 1 = BA, "
        "byte 2 = 18, byte 4 = 44 only");
    const JSON device = identified("55BA18104400", NOT_FOUND);
    EXPECT_EQ(device.at("mapped"), true);
    EXPECT_EQ(device.at("sure"), false);
    EXPECT_EQ(device.at("contradictions"), json_of(R"([{"position":0,"found":"55","expected":"20"}])"));
}

/// Byte 4 of these chips has bits for options, so that no list of its values is complete.
TEST(flash_collisions, AVariantWithoutARowIsToldToBeOne) {
    const JSON device = identified("20BA18104C00", NOT_FOUND);
    EXPECT_EQ(device.at("device_name"), "N25Q128A13");
    EXPECT_EQ(device.at("sure"), false);
    EXPECT_EQ(device.at("contradictions"), json_of(R"([{"position":4,"found":"4C","expected":"[0-3]?"}])"));
    EXPECT_EQ(device.at("fitting"), JSON::array({"MT25QL128"}));
    const std::vector<std::string> lines = lines_of(run_command({"flash", "identify", "20BA18104C00"}).output);
    EXPECT_EQ(lines.at(0),
              "Device 0 (20BA18104C00): this is no Micron N25Q128A13: byte 4 is 4C, not 00 to 3F; it is mapped by "
              "byte 0 = 20, byte 1 = BA, byte 2 = 18 only");
    EXPECT_EQ(lines.at(1),
              "  rather        MT25QL128, of which this may be a variant that has no row: --as 0=MT25QL128 drives it "
              "so");
    EXPECT_EQ(identified("20BB21106800", NOT_FOUND).at("fitting"), JSON::array({"MT25QU01G"}));
    EXPECT_EQ(identified("0120184D0280", NOT_FOUND).at("fitting"), JSON::array());
    EXPECT_EQ(identified("20BA18104400").at("fitting"), JSON::array());
}

TEST(flash_collisions, NoResponseOfAnotherMakersChipIsTaken) {
    const JSON device = identified("EF4018FF0180");
    EXPECT_EQ(device.at("device_name"), "W25Q128JV");
    EXPECT_EQ(device.at("contradictions"), JSON::array());
    EXPECT_EQ(identified("C84019FF0180").at("device_name"), "GD25Q256");
}

TEST(flash_collisions, ResponsesThatNoChipGivesAreSaidInWords) {
    const struct {
        const char* response;
        const char* kind;
        const char* text;
    } cases[]{
        {"000000", "idle", "all zeros"},
        {"FFFFFFFFFFFF", "idle", "all ones"},
        {"EFEFEF", "stuck", "the same byte again and again"},
        {"7F7F7F", "continuation", "continuation codes"},
        {"7F7F9D6018", "continuation", "bank 3"},
        {"EF EF 40 18", "late", "EF 40 18 would be Winbond W25Q128JV"},
        {"4018FF", "first_byte_missing", "perhaps the first byte is missing"},
        {"DE8031", "shifted", "one clock too many"},
        {"77A00C", "shifted", "one clock too few"},
        {"1840EF", "reversed", "EF 40 18 would be Winbond W25Q128JV"},
        {"0018BA20", "reversed", "20 BA 18 would be Micron N25Q128A13"},
    };
    for (const auto& each : cases) {
        const JSON device = identified(each.response, NOT_FOUND);
        EXPECT_EQ(device.at("mapped"), false) << each.response;
        EXPECT_EQ(device.at("oddity").at("kind"), each.kind) << each.response;
        EXPECT_TRUE(contains(device.at("oddity").at("text"), each.text)) << device.at("oddity");
        const PROCESS_RESULT people = run_command({"flash", "identify", each.response});
        EXPECT_EQ(people.exit_code, NOT_FOUND);
        EXPECT_TRUE(contains(people.output, each.text)) << people.output;
    }
}

TEST(flash_collisions, ABitThatAShiftedResponseHasLostLeavesTwoDevices) {
    // One clock too few: EF 40 16 and EF 40 17, of which the last bit was not read, look alike.
    EXPECT_EQ(
        identified("77A00B", NOT_FOUND).at("oddity").at("text"),
        "one clock too few before the first byte was read: shifted by one bit it is EF 40 16, Winbond W25Q32JV, or "
        "EF 40 17, Winbond W25Q64JV: one bit was not read");
    // With one byte more only that byte is in doubt.
    EXPECT_EQ(
        identified("77A00B80", NOT_FOUND).at("oddity").at("text"),
        "one clock too few before the first byte was read: shifted by one bit it is EF 40 17 00, Winbond W25Q64JV");
}

TEST(flash_collisions, ThreeResponsesOfOneByteLookLikeOne) {
    const PROCESS_RESULT result = run_command({"--json", "flash", "identify", "EF", "40", "18"});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const std::string hint = json_of(result.output).at("hint");
    EXPECT_TRUE(contains(hint, "one response split by blanks: write \"EF 40 18\"")) << hint;
    EXPECT_TRUE(contains(result.errors, hint)) << result.errors;
    EXPECT_FALSE(json_of(run_command({"--json", "flash", "identify", "EF", "40"}).output).contains("hint"));
}

TEST(flash_collisions, NearestRecordsAreToldWhenNoneMatches) {
    const JSON device = identified("EF4023", NOT_FOUND);
    ASSERT_FALSE(device.at("nearest").empty());
    EXPECT_EQ(device.at("nearest").at(0).at("manufacturer_name"), "Winbond");
    EXPECT_EQ(device.at("candidates"), JSON::array());
}

TEST(flash_collisions, ChainsMixSignaturesAndDevicesMappedByHand) {
    const std::vector<std::string> chain{"EF4017", "silicon:13", "000000", "--as", "2=w25q128jv"};
    std::vector<std::string> arguments{"--json", "flash", "identify"};
    arguments.insert(arguments.end(), chain.begin(), chain.end());
    const PROCESS_RESULT result = run_command(arguments);
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    const JSON document = json_of(result.output);
    EXPECT_EQ(document.at("found"), true);
    EXPECT_EQ(document.at("devices").at(1).at("device_name"), "M25P80");
    EXPECT_EQ(document.at("devices").at(1).at("silicon_id"), true);
    EXPECT_EQ(document.at("devices").at(2).at("device_name"), "W25Q128JV");
    EXPECT_EQ(document.at("devices").at(2).at("by_hand"), true);
    unsigned longest = 0;
    for (const JSON& device : document.at("devices")) {
        longest = std::max(longest, device.at("program_utime").get<unsigned>());
    }
    EXPECT_EQ(document.at("longest_program_utime"), longest);
}

TEST(flash_collisions, MappingByHandRefusesWhatItCannotMap) {
    const auto refused = [](const std::vector<std::string>& rest, const std::string& why) {
        std::vector<std::string> arguments{"flash", "identify"};
        arguments.insert(arguments.end(), rest.begin(), rest.end());
        expect_failure(run_command(arguments), WRONG_USAGE, {why});
    };
    refused({"EF4017", "--as", "1=W25Q64JV"}, "there is no device at position 1");
    refused({"EF4017", "--as", "W25Q64JV"}, "expected POSITION=NAME");
    refused({"EF4017", "--as", "0="}, "expected POSITION=NAME");
    refused({"EF4017", "--as", "x=W25Q64JV"}, "is not a device position");
    refused({"EF4017", "--as", "0=W25Q128J"}, "no flash is named \"W25Q128J\"; did you mean W25Q128JV");
    refused({"-", "--as", "0=W25Q64JV"}, "--as goes with the responses of a chain");
    refused({"EF4017", "--as", "0=W25Q64JV", "--as", "0=W25Q64BV"},
            "the device at position 0 is mapped more than once");
    refused({"--log", "-", "--silicon"}, "--silicon goes with responses HEX");
    refused({"--system", "--silicon"}, "--system goes with no other way to identify");
    refused({}, "expected one of HEX, --log and --system");
    refused({"EF4017", "--log", "-"}, "expected one of HEX, --log and --system");
}
