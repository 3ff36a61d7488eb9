#include <algorithm>
#include <tuple>

#include "command_fixture.h"
#include "flash_source.h"

// `flash check`: the rows of a table as rows.

namespace {

using CHANGES = FLASH_SOURCE::CHANGES;

/// Line, member, and whether it is a fault or a warning.
struct FINDING {
    unsigned line;
    std::string member;
    std::string severity;

    bool operator==(const FINDING&) const = default;
};

void PrintTo(const FINDING& finding, std::ostream* stream) {
    *stream << finding.severity << " in line " << finding.line << " of " << finding.member;
}

using FINDINGS = std::vector<FINDING>;

/// Runs the check in both ways and expects them to agree in everything but the form.
JSON faults_of(const FLASH_SOURCE& source) {
    const SCRATCH scratch;
    const std::string file = scratch.write("table.csv", source.text());
    const PROCESS_RESULT result = run_command({"--json", "flash", "check", file});
    const PROCESS_RESULT text = run_command({"flash", "check", file});
    EXPECT_EQ(text.exit_code, result.exit_code);
    JSON faults = json_of(result.output).at("faults");
    const std::vector<std::string> lines = lines_of(text.errors);
    EXPECT_EQ(lines.size(), faults.size()) << text.errors;
    bool refused = false;
    for (std::size_t i = 0; i < faults.size() && i < lines.size(); ++i) {
        const auto severity = faults[i].at("severity").get<std::string>();
        refused = refused || severity == "fault";
        std::ostringstream beginning;
        beginning << file << ':' << faults[i].at("line") << ':' << faults[i].at("column") << ": " << severity << ": ";
        EXPECT_TRUE(lines[i].starts_with(beginning.str())) << lines[i];
        for (const char* key : {"device_name", "member", "cell", "expected"}) {
            EXPECT_FALSE(faults[i].at(key).get<std::string>().empty()) << faults[i];
            EXPECT_TRUE(contains(lines[i], faults[i].at(key).get<std::string>())) << lines[i];
        }
    }
    EXPECT_EQ(result.exit_code, refused ? INTERNAL_ERROR : DONE) << result.errors;
    return faults;
}

FINDINGS findings(const FLASH_SOURCE& source) {
    FINDINGS found;
    for (const JSON& fault : faults_of(source)) {
        found.push_back({fault.at("line").get<unsigned>(), fault.at("member").get<std::string>(),
                         fault.at("severity").get<std::string>()});
    }
    return found;
}

/// What is found in a table whose only row has these changes.
FINDINGS findings_of_row(const CHANGES& changes) {
    return findings(FLASH_SOURCE().row(changes));
}

FINDINGS one(const std::string& member, const std::string& severity) {
    return {{9, member, severity}};
}

}  // namespace

TEST(flash_check_rows, NothingIsWrongWithTheSample) {
    EXPECT_EQ(findings_of_row({}), FINDINGS{});
}

TEST(flash_check_rows, SectorsMustDivideTheDevice) {
    for (const char* sector : {"0", "65537", "3", "33554432", "134217728", "0xFFFFFFFF"}) {
        EXPECT_EQ(findings_of_row({{"device_sector_byte", sector}}), one("device_sector_byte", "fault")) << sector;
    }
    for (const char* sector : {"256", "4096", "0x10000", "16777216"}) {
        EXPECT_EQ(findings_of_row({{"device_sector_byte", sector}}), FINDINGS{}) << sector;
    }
    for (const char* bits : {"134217729", "134217736", "1", "7"}) {
        EXPECT_EQ(findings_of_row({{"device_bit_size", bits}, {"byte4_addressing", "TRUE"}}),
                  one("device_sector_byte", "fault"))
            << bits;
    }
}

TEST(flash_check_rows, DeviceHasASize) {
    EXPECT_EQ(findings_of_row({{"device_bit_size", "0"}}), one("device_bit_size", "fault"));
}

TEST(flash_check_rows, IndexesMustDiffer) {
    EXPECT_EQ(findings_of_row({{"memory_type_index", "2"}}), one("memory_type_index", "fault"));
    EXPECT_EQ(findings_of_row({{"mfc_id_index", "2"}}), one("mfc_id_index", "fault"));
    EXPECT_EQ(findings_of_row({{"mfc_id_index", "1"}}), one("mfc_id_index", "fault"));
    EXPECT_EQ(findings_of_row({{"memory_id_index", "0"}}), one("mfc_id_index", "fault"));
    EXPECT_EQ(findings_of_row({{"memory_id_index", "1"}}), one("memory_type_index", "fault"));
    EXPECT_EQ(findings_of_row({{"memory_type_index", "255"}}), FINDINGS{});
    EXPECT_EQ(findings_of_row({{"memory_id_index", "254"}, {"memory_type_index", "7"}, {"mfc_id_index", "3"}}),
              FINDINGS{});
}

TEST(flash_check_rows, SignaturesCompareOneByteOnly) {
    const CHANGES signature{
        {"silicon_id", "TRUE"}, {"memory_id_index", "0"}, {"memory_type_index", "0"}, {"mfc_id_index", "0"}};
    EXPECT_EQ(findings_of_row(signature), FINDINGS{});
}

TEST(flash_check_rows, NameWithoutDefaultRow) {
    const JSON faults = faults_of(FLASH_SOURCE()
                                      .row({{"device_name", "GOOD"}})
                                      .row({{"device_name", "LOST"}, {"memory_id", "1"}, {"default_dev", "FALSE"}})
                                      .row({{"device_name", "lost"}, {"memory_id", "2"}, {"default_dev", "FALSE"}}));
    ASSERT_EQ(faults.size(), 1U) << faults;  // one for the name
    EXPECT_EQ(faults[0].at("line"), 10);
    EXPECT_EQ(faults[0].at("severity"), "fault");
    EXPECT_EQ(faults[0].at("device_name"), "LOST");
    EXPECT_EQ(faults[0].at("member"), "default_dev");
}

TEST(flash_check_rows, NameWithTwoDefaultRows) {
    const FLASH_SOURCE source = FLASH_SOURCE()
                                    .row({{"device_name", "Twice"}, {"memory_id", "1"}})
                                    .row({{"device_name", "GOOD"}, {"memory_id", "2"}})
                                    .row({{"device_name", "TWICE"}, {"memory_id", "3"}})
                                    .row({{"device_name", "twice"}, {"memory_id", "4"}});
    EXPECT_EQ(findings(source), (FINDINGS{{11, "default_dev", "fault"}, {12, "default_dev", "fault"}}));
}

TEST(flash_check_rows, OneDefaultRowAmongMany) {
    EXPECT_EQ(findings(FLASH_SOURCE()
                           .row({{"memory_id", "1"}, {"default_dev", "FALSE"}})
                           .row({{"memory_id", "2"}})
                           .row({{"memory_id", "3"}, {"default_dev", "FALSE"}})),
              FINDINGS{});
}

TEST(flash_check_rows, DefaultRowMustBeEnabledWithItsName) {
    EXPECT_EQ(findings(FLASH_SOURCE()
                           .row({{"memory_id", "1"}, {"ini", "RARE"}})
                           .row({{"memory_id", "2"}, {"default_dev", "FALSE"}})),
              (FINDINGS{{10, "ini", "fault"}}));
    EXPECT_EQ(findings(FLASH_SOURCE()
                           .row({{"memory_id", "1"}, {"ini", "RARE"}})
                           .row({{"memory_id", "2"}, {"ini", "RARE"}, {"default_dev", "FALSE"}})),
              FINDINGS{});
    EXPECT_EQ(findings(FLASH_SOURCE()
                           .row({{"memory_id", "1"}, {"ini", "none"}})
                           .row({{"memory_id", "2"}, {"ini", "RARE"}, {"default_dev", "FALSE"}})),
              FINDINGS{});
}

TEST(flash_check_rows, TextsOfAtMost255Characters) {
    for (const char* member : {"manufacturer_name", "device_name", "ini", "asc_voltage"}) {
        const auto text = [](std::size_t length) { return std::string(length - 1, '1') + "V"; };  // a voltage, too
        EXPECT_EQ(findings_of_row({{member, text(255)}}), FINDINGS{}) << member;
        EXPECT_EQ(findings_of_row({{member, text(256)}}), one(member, "fault")) << member;
        EXPECT_EQ(findings_of_row({{member, text(700)}}), one(member, "fault")) << member;
    }
}

TEST(flash_check_rows, UnreachableRow) {
    const JSON faults = faults_of(FLASH_SOURCE()
                                      .row({{"device_name", "OTHER"}, {"memory_id", "1"}})
                                      .row({{"device_name", "WINNER"}})
                                      .row({{"device_name", "HIDDEN"}}));
    ASSERT_EQ(faults.size(), 1U) << faults;
    EXPECT_EQ(faults[0].at("severity"), "warning");
    EXPECT_EQ(faults[0].at("line"), 11);
    EXPECT_EQ(faults[0].at("device_name"), "HIDDEN");
    EXPECT_TRUE(contains(faults[0].at("expected"), "WINNER")) << faults[0];
    EXPECT_TRUE(contains(faults[0].at("expected"), "line 10")) << faults[0];
}

TEST(flash_check_rows, RowsThatHideOthers) {
    const auto hidden = [](const CHANGES& earlier, CHANGES later) {
        later["device_name"] = "LATER";
        return !findings(FLASH_SOURCE().row(earlier).row(later)).empty();
    };
    EXPECT_TRUE(hidden({}, {}));
    EXPECT_FALSE(hidden({}, {{"memory_id", "0x19"}}));
    EXPECT_FALSE(hidden({}, {{"memory_type", "0xBB"}}));
    EXPECT_FALSE(hidden({}, {{"mfc_id", "0x21"}}));
    EXPECT_TRUE(hidden({{"memory_type_index", "255"}}, {}));   // compares less than the later one
    EXPECT_FALSE(hidden({}, {{"memory_type_index", "255"}}));  // compares more
    EXPECT_FALSE(hidden({{"memory_type_index", "4"}}, {}));
    EXPECT_FALSE(hidden({{"ini", "RARE"}}, {}));  // not there without its switch
    EXPECT_TRUE(hidden({{"ini", "RARE"}}, {{"ini", "RARE"}}));
    EXPECT_FALSE(hidden({{"ini", "RARE"}}, {{"ini", "ODD"}}));
    EXPECT_FALSE(hidden({{"ini", "RARE"}}, {{"ini", "rare"}}));  // switches are compared exactly
    EXPECT_TRUE(hidden({}, {{"ini", "RARE"}}));
    EXPECT_FALSE(hidden({{"silicon_id", "TRUE"}}, {}));
    EXPECT_FALSE(hidden({}, {{"silicon_id", "TRUE"}}));
    EXPECT_TRUE(hidden({{"silicon_id", "TRUE"}}, {{"silicon_id", "TRUE"}, {"mfc_id", "0x21"}}));
    EXPECT_FALSE(hidden({{"silicon_id", "TRUE"}}, {{"silicon_id", "TRUE"}, {"memory_id", "0x21"}}));
    // The same three bytes, called by other names.
    EXPECT_TRUE(hidden(
        {}, {{"memory_id", "0xBA"}, {"memory_id_index", "1"}, {"memory_type", "0x18"}, {"memory_type_index", "2"}}));
}

TEST(flash_check_rows, UnusualValues) {
    const std::vector<std::tuple<std::string, std::string, bool>> values{
        {"die_count", "0", true},
        {"die_count", "4", false},
        {"bulk_erase_time", "0", true},
        {"bulk_erase_time", "1", false},
        {"bulk_erase_time", "14400", false},
        {"bulk_erase_time", "14401", true},
        {"sec_erase_time", "0", true},
        {"sec_erase_time", "1", false},
        {"sec_erase_time", "60", false},
        {"sec_erase_time", "61", true},
        {"program_utime", "0", true},
        {"program_utime", "9", true},
        {"program_utime", "10", false},
        {"program_utime", "1000000", false},
        {"program_utime", "1000001", true},
        {"protection_value", "0x5D", true},
        {"protection_value", "0x1C", false},
        {"unprotect_value", "0x01", true},
        {"unprotect_value", "0x40", false},
        {"protection_division", "31", false},
        {"protection_division", "32", true},
        {"protection_division", "254", true},
        {"protection_division", "255", false},
        {"asc_voltage", "3.3", true},
        {"asc_voltage", "V", true},
        {"asc_voltage", "1V8", true},
        {"asc_voltage", "1.8V", false},
        {"device_sector_byte", "64", true},
        {"device_sector_byte", "256", false},
        {"device_bit_size", "16777216", true},  // 2 to the power of memory_id: the bytes of the sample
        {"device_bit_size", "33554432", false},
        {"mfc_id", "0", true},
        {"mfc_id", "0xFF", true},
        {"mfc_id_index", "255", true},
        {"memory_id_index", "255", true},
        {"memory_id_index", "254", false},
    };
    for (const auto& [member, cell, unusual] : values) {
        EXPECT_EQ(findings_of_row({{member, cell}}), unusual ? one(member, "warning") : FINDINGS{})
            << member << " " << cell;
    }
}

TEST(flash_check_rows, AddressesMustReachTheDevice) {
    EXPECT_EQ(findings_of_row({{"device_bit_size", "268435456"}}), one("byte4_addressing", "warning"));
    EXPECT_EQ(findings_of_row({{"device_bit_size", "268435456"}, {"byte4_addressing", "TRUE"}}), FINDINGS{});
}

TEST(flash_check_rows, IdleBusIsNoSignature) {
    const auto signature = [](const char* id) {
        return findings_of_row({{"silicon_id", "TRUE"}, {"memory_id", id}, {"memory_id_index", "0"}});
    };
    EXPECT_EQ(signature("0xFF"), one("memory_id", "warning"));
    EXPECT_EQ(signature("0x00"), one("memory_id", "warning"));
    EXPECT_EQ(signature("0x17"), FINDINGS{});
}

TEST(flash_check_rows, NumbersThatDoNotFitIntoAByte) {
    for (const flash_reference::COLUMN& column : flash_reference::COLUMNS) {
        if (std::string(column.type) == "BYTE") {
            const auto value = std::stoul(column.cell, nullptr, 0);
            // The low byte is that of the sample, so that nothing but the width is remarkable.
            EXPECT_EQ(findings_of_row({{column.name, std::to_string(value + 256)}}), one(column.name, "fault"))
                << column.name;
        }
    }
}

TEST(flash_check_rows, AllAtOnceInTheOrderOfTheLines) {
    const FLASH_SOURCE source =
        FLASH_SOURCE()
            .row({{"device_name", "A"}, {"memory_id", "1"}, {"device_sector_byte", "65537"}})
            .row({{"device_name", "B"}, {"memory_id", "2"}, {"mfc_id_index", "2"}, {"die_count", "0"}})
            .row({{"device_name", "C"}, {"memory_id", "3"}, {"default_dev", "FALSE"}})
            .row({{"device_name", "A"}, {"memory_id", "4"}})
            .row({{"device_name", "D"}, {"memory_id", "4"}, {"ini", std::string(300, 'x')}});
    const FINDINGS found = findings(source);
    const auto has = [&](const FINDING& finding) {
        return std::find(found.begin(), found.end(), finding) != found.end();
    };
    EXPECT_TRUE(has({9, "device_sector_byte", "fault"}));
    EXPECT_TRUE(has({10, "mfc_id_index", "fault"}));
    EXPECT_TRUE(has({10, "die_count", "warning"}));
    EXPECT_TRUE(has({11, "default_dev", "fault"}));
    EXPECT_TRUE(has({12, "default_dev", "fault"}));
    EXPECT_TRUE(has({13, "ini", "fault"}));
    EXPECT_TRUE(has({13, "memory_id", "warning"}));
    EXPECT_EQ(found.size(), 7U);
    EXPECT_TRUE(
        std::is_sorted(found.begin(), found.end(), [](const FINDING& a, const FINDING& b) { return a.line < b.line; }));
}
