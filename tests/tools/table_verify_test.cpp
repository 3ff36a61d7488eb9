#include <filesystem>
#include <map>

#include "command_fixture.h"
#include "flash_source.h"
#include "pgmdev/profiles/fixture.h"

// `flash verify` and `profile verify`.

namespace {

namespace profile_ref = dev_info_reference;

/// What became of each check.
using OUTCOMES = std::map<std::string, std::string>;

OUTCOMES outcomes_of(const JSON& answer) {
    OUTCOMES outcomes;
    for (const JSON& check : answer.at("checks")) {
        outcomes[check.at("check").get<std::string>()] = check.at("outcome").get<std::string>();
    }
    return outcomes;
}

std::vector<std::string> failed_checks(const JSON& answer) {
    std::vector<std::string> failed;
    for (const JSON& check : answer.at("checks")) {
        if (check.at("outcome") == "failed") {
            failed.push_back(check.at("check").get<std::string>());
        }
    }
    return failed;
}

/// Verifies a file of these bytes; the names of the checks that fail.
std::vector<std::string> failures_of(const std::string& noun, const std::string& bytes) {
    const SCRATCH scratch;
    const PROCESS_RESULT result = run_command({"--json", noun, "verify", scratch.write("x.pcf", bytes)});
    const JSON answer = json_of(result.output);
    EXPECT_EQ(answer.at("sound"), result.exit_code == DONE);
    EXPECT_TRUE(result.exit_code == DONE || result.exit_code == INTERNAL_ERROR);
    return failed_checks(answer);
}

std::string flash_payload(const std::string& name = "CHIP") {
    return flash_reference::payload({flash_reference::sample(name)});
}

using CHECK_NAMES = std::vector<std::string>;

}  // namespace

TEST(table_verify, ASoundDatabase) {
    const SCRATCH scratch;
    const std::string pcf = scratch.write("x.pcf", flash_reference::file(flash_payload()));
    const PROCESS_RESULT result = run_command({"--json", "flash", "verify", pcf});
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    const JSON answer = json_of(result.output);
    EXPECT_EQ(keys_of(answer), (CHECK_NAMES{"query", "source", "sound", "stamp", "compiled_from", "checks"}));
    EXPECT_EQ(answer.at("query"), pcf);
    EXPECT_TRUE(answer.at("source").is_null());
    EXPECT_EQ(answer.at("sound"), true);
    EXPECT_EQ(answer.at("stamp"), flash_reference::STAMP);
    OUTCOMES expected;
    for (const char* name : {"file", "magic", "stamp", "size", "stream", "stream end", "checksum slot", "version",
                             "counts", "records", "end", "rest", "default rows", "values", "own table"}) {
        expected[name] = "passed";
    }
    expected["origin"] = "skipped";
    EXPECT_EQ(outcomes_of(answer), expected);
}

TEST(table_verify, ForPeople) {
    const SCRATCH scratch;
    const std::string pcf = scratch.write("x.pcf", flash_reference::file(flash_payload()));
    const PROCESS_RESULT result = run_command({"flash", "verify", pcf});
    EXPECT_TRUE(contains(result.output, "passed   magic            PGMIO_FM\n")) << result.output;
    EXPECT_TRUE(result.output.ends_with(pcf + " is sound\n")) << result.output;
}

TEST(table_verify, DamageOfTheFile) {
    const std::string good = flash_reference::file(flash_payload());
    EXPECT_EQ(failures_of("flash", good), CHECK_NAMES{});
    EXPECT_EQ(failures_of("flash", ""), CHECK_NAMES{"file"});
    EXPECT_EQ(failures_of("flash", good.substr(0, 46)), CHECK_NAMES{"file"});
    EXPECT_EQ(failures_of("flash", "PGMIO_DM" + good.substr(8)), CHECK_NAMES{"magic"});
    EXPECT_EQ(failures_of("flash", good.substr(0, 8) + std::string(32, 'a') + good.substr(40)), CHECK_NAMES{"stamp"});
    EXPECT_EQ(failures_of("flash", good.substr(0, 40) + std::string(4, '\xFF') + good.substr(44)), CHECK_NAMES{"size"});
    EXPECT_EQ(failures_of("flash", good.substr(0, 40) + std::string(4, '\0') + good.substr(44)), CHECK_NAMES{"size"});
    EXPECT_EQ(failures_of("flash", good.substr(0, good.size() - 20) + std::string(2, '\0')), CHECK_NAMES{"stream"});
    std::string flipped = good;
    flipped[60] = static_cast<char>(flipped[60] ^ 0x55);
    EXPECT_EQ(failures_of("flash", flipped), CHECK_NAMES{"stream"});
    EXPECT_EQ(failures_of("flash", good.substr(0, good.size() - 2) + "xy" + std::string(2, '\0')),
              CHECK_NAMES{"stream end"});
    EXPECT_EQ(failures_of("flash", good.substr(0, good.size() - 1) + "x"), CHECK_NAMES{"checksum slot"});
}

TEST(table_verify, DamageOfThePayload) {
    const std::string good = flash_payload();
    const auto failures = [](const std::string& payload) {
        return failures_of("flash", flash_reference::file(payload));
    };
    const auto changed = [&good](std::size_t offset, char byte) {
        std::string payload = good;
        payload[offset] = byte;
        return payload;
    };
    EXPECT_EQ(failures(changed(0, 2)), CHECK_NAMES{"version"});
    EXPECT_EQ(failures(changed(4, 0)), CHECK_NAMES{"counts"});
    EXPECT_EQ(failures(changed(8, 32)), CHECK_NAMES{"counts"});
    EXPECT_EQ(failures(changed(4, 2)), CHECK_NAMES{"records"});
    EXPECT_EQ(failures(changed(12, 3)), CHECK_NAMES{"records"});
    EXPECT_EQ(failures(changed(good.size() - 5, '3')), CHECK_NAMES{"records"});
    EXPECT_EQ(failures(changed(good.size() - 1, '3')), CHECK_NAMES{"end"});
    EXPECT_EQ(failures(good + "x"), CHECK_NAMES{"rest"});
    for (std::size_t length = 1; length < good.size(); ++length) {
        EXPECT_EQ(failures(good.substr(0, length)).size(), 1U) << length;
    }
}

TEST(table_verify, DefaultRows) {
    PGMDEV_SFL_FLASH_INFO none = flash_reference::sample("A");
    none.default_dev = false;
    EXPECT_EQ(failures_of("flash", flash_reference::file(flash_reference::payload({none}))),
              CHECK_NAMES{"default rows"});
    const PGMDEV_SFL_FLASH_INFO one = flash_reference::sample("A");
    EXPECT_EQ(failures_of("flash", flash_reference::file(flash_reference::payload({one, one}))),
              CHECK_NAMES{"default rows"});
    EXPECT_EQ(failures_of("flash", flash_reference::file(flash_reference::payload({one, none}))), CHECK_NAMES{});
}

TEST(table_verify, WithTheSourceTable) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", FLASH_SOURCE().row().text());
    const std::string other = scratch.write("u.csv", FLASH_SOURCE().row({{"die_count", "2"}}).text());
    const std::string faulty = scratch.write("v.csv", FLASH_SOURCE().row({{"die_count", "two"}}).text());
    const std::string pcf = scratch.path("t.pcf");
    ASSERT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    const auto outcome = [&](const std::string& table, int exit_code) {
        const PROCESS_RESULT result = run_command({"--json", "flash", "verify", pcf, table});
        EXPECT_EQ(result.exit_code, exit_code) << result.errors;
        EXPECT_EQ(json_of(result.output).at("source"), table);
        return outcomes_of(json_of(result.output)).at("source");
    };
    EXPECT_EQ(outcome(csv, DONE), "passed");
    EXPECT_EQ(outcome(other, INTERNAL_ERROR), "failed");
    EXPECT_EQ(outcome(faulty, INTERNAL_ERROR), "failed");
    EXPECT_TRUE(contains(run_command({"flash", "verify", pcf, pcf}).errors,
                         pcf + ": hint: this is a packed database, no source table: see pgmdev flash dump --csv"));
    EXPECT_EQ(scratch.file_count(), 5U);  // three tables, the database and its text: verifying leaves nothing
}

/// Values that are read as they are, and that no table may hold.
TEST(table_verify, ValuesOutsideOfTheirRange) {
    const SCRATCH scratch;
    PGMDEV_SFL_FLASH_INFO sectors = flash_reference::sample("CHIP");
    sectors.device_sector_byte = 65537;
    const std::string pcf = scratch.write("x.pcf", flash_reference::file(flash_reference::payload({sectors})));
    const PROCESS_RESULT result = run_command({"--json", "flash", "verify", pcf});
    EXPECT_EQ(result.exit_code, INTERNAL_ERROR);
    const JSON answer = json_of(result.output);
    EXPECT_EQ(failed_checks(answer), CHECK_NAMES{"own table"});
    for (const JSON& check : answer.at("checks")) {
        if (check.at("check") == "own table") {
            EXPECT_TRUE(contains(text_of(check.at("detail")), "65537")) << check;
        }
    }
    EXPECT_EQ(scratch.file_count(), 1U);
}

TEST(table_verify, WhatCannotBeRead) {
    expect_failure(run_command({"flash", "verify", "/nowhere/x.pcf"}), INTERNAL_ERROR, {});
    expect_failure(run_command({"flash", "verify"}), WRONG_USAGE, {});
}

TEST(table_verify, ShippedDatabases) {
    for (const auto& [noun, table, name] : {std::tuple{"flash", "/flash/pgm_flash.csv", "pgm_flash"},
                                            std::tuple{"profile", "/dev_info/pgm_dev_info.csv", "pgm_dev_info"}}) {
        const std::string pcf = std::string(TEST_DEVICES_DIR) + "/programmer/" + name + ".pcf";
        const PROCESS_RESULT result = run_command({"--json", noun, "verify", pcf, std::string(TEST_DATA_DIR) + table});
        EXPECT_EQ(result.exit_code, DONE) << result.output << result.errors;
        for (const auto& [check, outcome] : outcomes_of(json_of(result.output))) {
            EXPECT_EQ(outcome, "passed") << check;
        }
    }
}

TEST(table_verify, Profiles) {
    const std::string good = profile_ref::records(profile_ref::rows()) + profile_ref::tables({});
    const auto failures = [](const std::string& payload) { return failures_of("profile", profile_ref::file(payload)); };
    const auto with_rows = [&](const std::vector<profile_ref::CELLS>& rows) {
        return failures(profile_ref::records(rows) + profile_ref::tables({}));
    };
    EXPECT_EQ(failures(good), CHECK_NAMES{"own table"});  // index tables that name no record at all
    profile_ref::TABLES tables;
    tables.part[3] = 78;
    EXPECT_EQ(failures(profile_ref::records(profile_ref::rows()) + profile_ref::tables(tables)),
              CHECK_NAMES{"index entries"});
    tables = {};
    tables.device.pop_back();
    EXPECT_EQ(failures(profile_ref::records(profile_ref::rows()) + profile_ref::tables(tables)),
              CHECK_NAMES{"index tables"});
    EXPECT_EQ(failures(profile_ref::records(profile_ref::rows())), CHECK_NAMES{"index tables"});
    EXPECT_EQ(failures(good + "x"), CHECK_NAMES{"rest"});

    std::vector<profile_ref::CELLS> rows = profile_ref::rows();
    rows[5] = profile_ref::sample("KESTREL");
    rows[5][1] = "PCF";
    EXPECT_EQ(with_rows(rows), CHECK_NAMES{"default rows"});
    rows = profile_ref::rows();
    rows.pop_back();
    EXPECT_EQ(with_rows(rows), CHECK_NAMES{"default rows"});
}

TEST(table_verify, EnumeratorsWithoutAName) {
    std::string payload = profile_ref::records(profile_ref::rows()) + profile_ref::tables({});
    // The family is the first member of record 0: its tag is at 12.
    ASSERT_EQ(payload[12], 7);
    payload[13] = 74;
    payload[14] = 1;
    EXPECT_EQ(failures_of("profile", profile_ref::file(payload)), CHECK_NAMES{"values"});
}
