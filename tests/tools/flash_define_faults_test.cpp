#include "command_fixture.h"

// What `flash define` says of a description with faults.

namespace {

const std::vector<std::string> CHIP_LINES{"id = 857114",
                                          "manufacturer_name = Acme",
                                          "device_name = AC25X80",
                                          "device_bit_size = 8 Mbit",
                                          "device_sector_byte = 64 KiB",
                                          "bulk_erase_time = 80 s",
                                          "sec_erase_time = 3 s",
                                          "program_utime = 5 ms",
                                          "asc_voltage = 3.3V"};

std::string chip_text(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

PROCESS_RESULT defined(const std::string& text) {
    return run_command({"--json", "flash", "define", "@-"}, text);
}

/// The places of the faults, and their fields.
std::vector<std::string> places_of(const PROCESS_RESULT& result) {
    std::vector<std::string> places;
    const JSON error = json_failure(result, WRONG_USAGE, "description_refused");
    for (const JSON& fault : error.at("faults")) {
        const std::string field = fault.at("field").is_null() ? "" : fault.at("field").get<std::string>();
        places.push_back((fault.at("place").is_null() ? "" : fault.at("place").get<std::string>()) + " " + field);
    }
    return places;
}

}  // namespace

TEST(flash_define_faults, StandInTheOrderOfTheLines) {
    std::vector<std::string> lines = CHIP_LINES;
    lines.at(3) = "device_bit_size = 9 Mbit";
    lines.at(4) = "device_sector_bytes = 64 KiB";  // so that a field is missing, which is told where the flash begins
    lines.at(5) = "nothing";
    lines.at(7) = "sfdp = 00";
    lines.emplace_back("program_utime = 1 us");
    lines.emplace_back("more nothing");
    EXPECT_EQ(places_of(defined(chip_text(lines))),
              (std::vector<std::string>{"-:4 device_bit_size", "-:5 device_sector_bytes", "-:6 ", "-:8 sfdp",
                                        "-:10 program_utime", "-:11 "}));
    lines.at(7) = "";
    EXPECT_TRUE(contains(run_command({"flash", "define", "@-"}, chip_text(lines)).errors,
                         "-:1: bulk_erase_time is missing, accepted: "));
    EXPECT_EQ(places_of(defined(chip_text(lines))),
              (std::vector<std::string>{"-:1 device_sector_byte", "-:1 bulk_erase_time", "-:4 device_bit_size",
                                        "-:5 device_sector_bytes", "-:6 ", "-:10 program_utime", "-:11 "}));
}

TEST(flash_define_faults, StandFlashByFlash) {
    std::vector<std::string> lines = CHIP_LINES;
    lines.at(6) = "sec_erase_time = 0";
    const std::string text = chip_text(lines) + "[second]\n" + chip_text(lines) + "?\n";
    EXPECT_EQ(places_of(defined(text)),
              (std::vector<std::string>{"-:7 sec_erase_time", "-:17 sec_erase_time", "-:20 "}));
}

TEST(flash_define_faults, OfTheLinesOfAFileAreToldThoughFieldsStandBesideIt) {
    const std::vector<std::string> beside{"--json", "flash", "define", "@-", "--id", "857114", "die_count=2"};
    EXPECT_EQ(places_of(run_command(beside, "device_name: AC25X80\n")), (std::vector<std::string>{" ", "-:1 "}));
    expect_failure(run_command({"flash", "define", "@-", "die_count=2"}, "# nothing\n"), WRONG_USAGE,
                   {"further fields go with a file that describes one flash"});
}

TEST(flash_define_faults, StandardInputIsReadOnce) {
    for (const char* dump : {"--sfdp=-", "sfdp=-", "SFDP=-"}) {
        expect_failure(run_command({"flash", "define", "@-", dump}, chip_text(CHIP_LINES)), WRONG_USAGE,
                       {"standard input has the description"});
    }
}

TEST(flash_define_faults, NumbersHaveNoComma) {
    std::vector<std::string> lines = CHIP_LINES;
    lines.at(6) = "sec_erase_time = 0,7 s";
    lines.at(7) = "program_utime = 5,000";
    const JSON error = json_failure(defined(chip_text(lines)), WRONG_USAGE, "description_refused");
    ASSERT_EQ(error.at("faults").size(), 2U) << error;
    for (const JSON& fault : error.at("faults")) {
        EXPECT_EQ(fault.at("advice"), "a number has no comma; a fraction stands behind a decimal point");
    }
}

// Data sheets call 8 Mbit 8Mb, others 8 Mbyte.
TEST(flash_define_faults, ALetterThatMayBeBitsOrBytesIsRefused) {
    for (const std::string number : {"8M", "8 m", "1.5k", "8 Mi", "1G"}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(3) = "device_bit_size = " + number + "b";
        lines.at(4) = "device_sector_byte = " + number + "b";
        const JSON error = json_failure(defined(chip_text(lines)), WRONG_USAGE, "description_refused");
        const JSON& faults = error.at("faults");
        ASSERT_EQ(faults.size(), 2U) << faults;
        EXPECT_EQ(faults.at(0).at("given"), number + "b");
        EXPECT_EQ(faults.at(0).at("advice"),
                  "b may be bits or bytes: write device_bit_size=" + number + "bit or device_bit_size=" + number + "B");
        EXPECT_EQ(faults.at(1).at("advice"),
                  "b may be bits or bytes: device_sector_byte=" + number + "B if bytes are meant");
    }
    for (const std::string size : {"8Mbit", "1MB", "1 mB", "1 MiB", "8388608", "1024KB"}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(3) = "device_bit_size = " + size;
        EXPECT_EQ(defined(chip_text(lines)).exit_code, DONE) << size;
    }
}

TEST(flash_define_faults, MicrosecondsAreWrittenAsInDataSheets) {
    for (const std::string unit : {"us", "\xC2\xB5s", "\xCE\xBCs", " \xC2\xB5s"}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(6) = "sec_erase_time = 2000000" + unit;
        lines.at(7) = "program_utime = 3000" + unit;
        const PROCESS_RESULT result = defined(chip_text(lines));
        ASSERT_EQ(result.exit_code, DONE) << unit << result.errors;
        const JSON flash = json_of(result.output).at("flashes").at(0);
        EXPECT_EQ(flash.at("sec_erase_time"), 2);
        EXPECT_EQ(flash.at("program_utime"), 3000);
    }
}

TEST(flash_define_faults, AVoltageHasADecimalPoint) {
    for (const auto& [given, meant] :
         {std::pair("3,3V", "3.3V"), std::pair("1,8 v", "1.8V"), std::pair("3,3", "3.3V")}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(8) = std::string("asc_voltage = ") + given;
        const JSON error = json_failure(defined(chip_text(lines)), WRONG_USAGE, "description_refused");
        const JSON& faults = error.at("faults");
        ASSERT_EQ(faults.size(), 1U) << faults;
        EXPECT_EQ(faults.at(0).at("given"), given);
        EXPECT_EQ(faults.at(0).at("advice"), std::string("volts have a decimal point: write asc_voltage=") + meant);
    }
    for (const std::string voltage : {"3.3V", "3.3", "2.7V-3.6V", "1.8V, 3.3V", "V,V", ",3V", "3,V"}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(8) = "asc_voltage = " + voltage;
        const PROCESS_RESULT result = defined(chip_text(lines));
        EXPECT_EQ(result.exit_code, DONE) << voltage << result.errors;
        EXPECT_EQ(json_of(result.output).at("flashes").at(0).at("asc_voltage"), voltage);
    }
}

// As tables spell it: a blank ends a cell. Other texts than a number and its unit stay as they are.
TEST(flash_define_faults, AVoltageIsKeptWithoutTheBlankBeforeItsUnit) {
    for (const auto& [given, kept] :
         {std::pair("3.3 V", "3.3V"), std::pair("1.8  v", "1.8V"), std::pair("5\tV", "5V"),
          std::pair("3.3 V max", "3.3 V MAX"), std::pair("2.7 V - 3.6 V", "2.7 V - 3.6 V")}) {
        std::vector<std::string> lines = CHIP_LINES;
        lines.at(8) = std::string("asc_voltage = ") + given;
        const PROCESS_RESULT result = defined(chip_text(lines));
        ASSERT_EQ(result.exit_code, DONE) << given << result.errors;
        EXPECT_EQ(json_of(result.output).at("flashes").at(0).at("asc_voltage"), kept);
    }
}
