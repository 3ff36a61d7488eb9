#include "command_fixture.h"
#include "flash_source.h"
#include "pgmdev/profiles/fixture.h"

// `flash dump --annotate`, `profile dump --annotate` and `flash dump --plain-csv`.

namespace {

std::string payload() {
    return flash_reference::payload({flash_reference::sample("A"), flash_reference::sample("B")});
}

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += "0123456789ABCDEF"[std::size_t{static_cast<unsigned char>(byte)} >> 4];
        text += "0123456789ABCDEF"[std::size_t{static_cast<unsigned char>(byte)} & 0xF];
    }
    return text;
}

/// The bytes that the fields show, and that each follows the one before.
std::string bytes_shown(const JSON& answer) {
    std::string text;
    for (const JSON& field : answer.at("payload")) {
        EXPECT_EQ(field.at("offset"), text.size() / 2);
        EXPECT_EQ(field.at("size"), field.at("bytes").get<std::string>().size() / 2);
        text += field.at("bytes").get<std::string>();
    }
    return text;
}

PROCESS_RESULT annotate(const std::string& noun, const std::string& bytes, bool json) {
    const SCRATCH scratch;
    const std::string pcf = scratch.write("x.pcf", bytes);
    std::vector<std::string> arguments{noun, "dump", "--annotate", pcf};
    if (json) {
        arguments.insert(arguments.begin(), "--json");
    }
    return run_command(arguments);
}

JSON annotated(const std::string& noun, const std::string& bytes, int exit_code) {
    const PROCESS_RESULT result = annotate(noun, bytes, true);
    EXPECT_EQ(result.exit_code, exit_code) << result.errors;
    return json_of(result.output);
}

}  // namespace

TEST(annotate, EveryByteOfThePayload) {
    const JSON answer = annotated("flash", flash_reference::file(payload()), DONE);
    EXPECT_EQ(bytes_shown(answer), hex(payload()));
    EXPECT_EQ(answer.at("payload").size(), 3 + 2 * (flash_reference::MEMBERS + 1) + 1);
    EXPECT_EQ(answer.at("faults"), JSON::array());
    const JSON& field = answer.at("payload")[3];
    EXPECT_EQ(keys_of(field),
              (std::vector<std::string>{"offset", "size", "bytes", "tag", "record", "member", "element", "value"}));
    EXPECT_EQ(field.at("offset"), 12);
    EXPECT_EQ(field.at("tag"), "STRING");
    EXPECT_EQ(field.at("record"), 0);
    EXPECT_EQ(field.at("member"), "manufacturer_name");
    EXPECT_EQ(field.at("value"), "Maker");
    EXPECT_EQ(field.at("bytes"), hex("\2\5Maker"));
}

TEST(annotate, TheHeadComesFirst) {
    const std::string bytes = flash_reference::file(payload());
    const JSON head = annotated("flash", bytes, DONE).at("head");
    ASSERT_EQ(head.size(), 5U);
    std::size_t offset = 0;
    for (const JSON& field : head) {
        EXPECT_EQ(field.at("offset"), offset);
        offset += field.at("size").get<std::size_t>();
    }
    EXPECT_EQ(offset, bytes.size());
    EXPECT_EQ(head[0].at("value"), "PGMIO_FM");
    EXPECT_EQ(head[1].at("value"), flash_reference::STAMP);
}

TEST(annotate, ForPeople) {
    const PROCESS_RESULT result = annotate("flash", flash_reference::file(payload()), false);
    EXPECT_EQ(result.exit_code, DONE);
    const std::vector<std::string> lines = lines_of(result.output);
    ASSERT_EQ(lines.size(), 5 + 3 + 2 * (flash_reference::MEMBERS + 1) + 1);
    EXPECT_EQ(lines[0], "00000000  file               8 bytes  magic              PGMIO_FM");
    EXPECT_EQ(lines[8],
              "0000000c  record 0      STRING      manufacturer_name                   \"Maker\"  "
              "[02054D616B6572]");
    EXPECT_TRUE(contains(result.output, "sec_erase_time                      6 s  [0606000000]")) << result.output;
}

TEST(annotate, DamageEndsItWhereItIs) {
    for (std::size_t length = 1; length < payload().size(); ++length) {
        const std::string cut = payload().substr(0, length);
        const JSON answer = annotated("flash", flash_reference::file(cut), INTERNAL_ERROR);
        const std::string shown = bytes_shown(answer);
        EXPECT_EQ(shown, hex(cut).substr(0, shown.size())) << length;
        EXPECT_EQ(answer.at("faults").size(), 1U) << length;
    }
}

TEST(annotate, FilesThatAreNone) {
    EXPECT_EQ(annotated("flash", "", INTERNAL_ERROR).at("head"), JSON::array());
    EXPECT_EQ(annotated("flash", std::string(100, 'x'), INTERNAL_ERROR).at("payload"), JSON::array());
    EXPECT_EQ(annotated("profile", flash_reference::file(payload()), INTERNAL_ERROR).at("faults")[0].at("check"),
              "magic");
}

TEST(annotate, ProfilesWithIndexTables) {
    namespace ref = dev_info_reference;
    const std::string body = ref::records(ref::rows()) + ref::tables({});
    const JSON answer = annotated("profile", ref::file(body), DONE);
    EXPECT_EQ(bytes_shown(answer), hex(body));
    const JSON& last = answer.at("payload").back();
    EXPECT_EQ(last.at("member"), "part");
    EXPECT_EQ(last.at("element"), DEV_PART_MAX - 1);
    EXPECT_TRUE(last.at("value").is_null());
}

TEST(annotate, OneFormAtATime) {
    const SCRATCH scratch;
    const std::string pcf = scratch.write("x.pcf", flash_reference::file(payload()));
    expect_failure(run_command({"flash", "dump", "--csv", "--annotate", pcf}), WRONG_USAGE, {"--plain-csv"});
}

TEST(plain_csv, HasNoBlanksAndCompilesToTheSame) {
    const std::string pcf = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";
    const PROCESS_RESULT result = run_command({"flash", "dump", "--plain-csv", pcf});
    ASSERT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.output.find(' '), std::string::npos);
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", result.output);
    ASSERT_EQ(run_command({"flash", "compile", csv, scratch.path("t.pcf")}).exit_code, DONE);
    EXPECT_EQ(read_file(scratch.path("t.pcf")), read_file(pcf));
}

TEST(plain_csv, OneChangedCellIsOneChangedLine) {
    const SCRATCH scratch;
    const auto dump = [&](const PGMDEV_SFL_FLASH_INFO& record) {
        const std::string pcf = scratch.write(
            "x.pcf", flash_reference::file(flash_reference::payload({flash_reference::sample("A"), record})));
        return lines_of(run_command({"flash", "dump", "--plain-csv", pcf}).output);
    };
    PGMDEV_SFL_FLASH_INFO longer = flash_reference::sample("B");
    longer.manufacturer_name = "A-maker-with-a-long-name";
    const std::vector<std::string> before = dump(flash_reference::sample("B"));
    const std::vector<std::string> after = dump(longer);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i + 1 < before.size(); ++i) {
        EXPECT_EQ(before[i], after[i]);
    }
    EXPECT_NE(before.back(), after.back());
}
