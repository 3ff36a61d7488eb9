#include "pgmdev_flash_notes.h"

#include <gtest/gtest.h>

#include "pgmdev/flash/fixture.h"
#include "pgmdev_flash_table.h"
#include "support/scratch.h"

// What is known besides the records: read, checked, and asked.

namespace {

using RISK = PGMDEV_FLASH_DIFFERENCE::RISK;
using SEVERITY = PGMDEV_TABLE_FAULT::SEVERITY;

const std::string HEADING = "response, chips, byte, told_apart_by, risk, harm\n";

/// Notes beside a source table in a directory of their own.
class NOTES {
public:
    NOTES& ambiguities(const std::string& text) {
        m_scratch.write("ambiguities.csv", text);
        return *this;
    }
    NOTES& identifications(const std::string& text) {
        m_scratch.write("identifications.csv", text);
        return *this;
    }
    PGMDEV_FLASH_NOTES read() const { return PGMDEV_FLASH_NOTES::beside_source(m_scratch.path("table.csv")); }

private:
    SCRATCH m_scratch;
};

struct PLACE_AND_TEXT {
    DWORD line;
    DWORD column;
    std::string expected;

    bool operator==(const PLACE_AND_TEXT&) const = default;
};

std::vector<PLACE_AND_TEXT> told(const std::vector<PGMDEV_TABLE_FAULT>& faults) {
    std::vector<PLACE_AND_TEXT> all;
    all.reserve(faults.size());
    for (const PGMDEV_TABLE_FAULT& fault : faults) {
        all.push_back({fault.line, fault.column, fault.expected});
    }
    return all;
}

std::vector<PLACE_AND_TEXT> ambiguity_faults(const std::string& text) {
    NOTES notes;
    return told(notes.ambiguities(text).read().ambiguities_file().faults);
}

TEST(FlashNotes, AreNoneWithoutFiles) {
    const PGMDEV_FLASH_NOTES notes = NOTES().read();
    EXPECT_TRUE(notes.ambiguities().empty());
    EXPECT_EQ(notes.ambiguities_file().file, "");
    EXPECT_TRUE(notes.faults_with({}).empty());
}

TEST(FlashNotes, HaveWhatTheLineSays) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes =
        files
            .ambiguities("# a comment\n\n" + HEADING + "  012018 ,A-1 B2, 4,\"byte 4, \"\"or\"\" so\" ,data, wiped\r\n")
            .read();
    ASSERT_EQ(notes.ambiguities_file().faults.size(), 0U);
    ASSERT_EQ(notes.ambiguities().size(), 1U);
    const PGMDEV_FLASH_AMBIGUITY& found = notes.ambiguities()[0];
    EXPECT_EQ(found.line, 4U);
    EXPECT_EQ(found.response, (std::vector<BYTE>{0x01, 0x20, 0x18}));
    EXPECT_EQ(found.chips, (std::vector<std::string>{"A-1", "B2"}));
    EXPECT_EQ(found.telling_byte, 4U);
    EXPECT_EQ(found.told_apart_by, "byte 4, \"or\" so");
    EXPECT_EQ(found.risk, RISK::DATA);
    EXPECT_EQ(found.harm, "wiped");
}

TEST(FlashNotes, TakeEveryRiskAndEveryPosition) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes = files
                                         .ambiguities(HEADING +
                                                      "01, A B, 0, by, data, harm\n02, A B, 255, by, voltage, harm\n"
                                                      "03, A B, -, by, protection, harm\n04, A B, -, by, flow, harm\n"
                                                      "05, A B, -, by, time, harm\n06, A B, -, by, none, harm\n")
                                         .read();
    std::vector<std::pair<RISK, DWORD>> found;
    for (const PGMDEV_FLASH_AMBIGUITY& each : notes.ambiguities()) {
        found.emplace_back(each.risk, each.telling_byte);
    }
    EXPECT_EQ(found, (std::vector<std::pair<RISK, DWORD>>{{RISK::DATA, 0},
                                                          {RISK::VOLTAGE, 255},
                                                          {RISK::PROTECTION, INVALID_DWORD},
                                                          {RISK::FLOW, INVALID_DWORD},
                                                          {RISK::TIME, INVALID_DWORD},
                                                          {RISK::NONE, INVALID_DWORD}}));
}

TEST(FlashNotes, TellEachFaultWithItsPlace) {
    using FAULTS = std::vector<PLACE_AND_TEXT>;
    const std::string names = "response, chips, byte, told_apart_by, risk, harm";
    EXPECT_EQ(ambiguity_faults(HEADING + "01201, A, x, by, fire, harm\n"),
              (FAULTS{{2, 1, "pairs of hexadecimal digits in upper case"},
                      {2, 8, "two chips or more, with blanks between them"},
                      {2, 11, "the position of the byte that tells the chips apart, 0 to 255, or - when none does"},
                      {2, 18, "one of data, voltage, protection, flow, time and none"}}));
    EXPECT_EQ(ambiguity_faults(HEADING + "ef4018, A B, 256, by, data, harm\n"),
              (FAULTS{{2, 1, "pairs of hexadecimal digits in upper case"},
                      {2, 14, "the position of the byte that tells the chips apart, 0 to 255, or - when none does"}}));
    EXPECT_EQ(ambiguity_faults(HEADING + "EF4018, A B, -, by, data\n"),
              (FAULTS{{2, 0, "a cell for each of " + names}}));
    EXPECT_EQ(ambiguity_faults(HEADING + "EF4018, A B, -,, data, harm\n"), (FAULTS{{2, 16, "a value"}}));
    EXPECT_EQ(ambiguity_faults("\xEF\xBB\xBF" + HEADING), FAULTS{});
    EXPECT_EQ(ambiguity_faults(HEADING + "EF4018, \"A B, -, by, data, harm\n"),
              (FAULTS{{2, 9, "a quotation mark at the end of the cell, too"}}));
    EXPECT_EQ(ambiguity_faults(HEADING + "EF4018, \"A B\" C, -, by, data, harm\n"),
              (FAULTS{{2, 15, "a comma behind the quotation mark"}}));
    EXPECT_EQ(ambiguity_faults("EF4018, A B, -, by, data, harm\n"),
              (FAULTS{{1, 0, "the names of the columns: " + names}}));
    EXPECT_EQ(ambiguity_faults(""), (FAULTS{{0, 0, "the names of the columns: " + names}}));
    EXPECT_EQ(ambiguity_faults(HEADING + std::string(5000, 'A')),
              (FAULTS{{2, 0, "a line of at most 4096 characters"}}));
    const FAULTS unreadable{{0, 0, "a text file that can be read, of at most 1 MiB"}};
    EXPECT_EQ(ambiguity_faults(HEADING + std::string(1, '\0')), unreadable);
    EXPECT_EQ(ambiguity_faults(std::string((1 << 20) + 1, '\n')), unreadable);
}

TEST(FlashNotes, LinesWithoutFaultCountAllTheSame) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes = files.ambiguities(HEADING + "rubbish\nEF4018, A B, -, by, data, harm\n").read();
    EXPECT_EQ(notes.ambiguities_file().faults.size(), 1U);
    EXPECT_EQ(notes.ambiguities().size(), 1U);
}

TEST(FlashNotes, AnswerForResponsesThatNoByteDecides) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes = files
                                         .ambiguities(HEADING +
                                                      "012018, A B, 5, by, voltage, volts\n"
                                                      "012018, A C, 4, by, data, wiped\n"
                                                      "C84019, D E, -, by, protection, bits\n")
                                         .read();
    const auto harms = [&notes](const std::vector<BYTE>& response) {
        std::vector<std::string> all;
        for (const auto& each : notes.ambiguities_of(response.data(), static_cast<DWORD>(response.size()))) {
            all.push_back(each.harm);
        }
        return all;
    };
    using HARMS = std::vector<std::string>;
    EXPECT_EQ(harms({0x01, 0x20, 0x18}), (HARMS{"wiped", "volts"})) << "the worst first";
    EXPECT_EQ(harms({0x01, 0x20, 0x18, 0x4D, 0x00}), HARMS{"volts"});
    EXPECT_EQ(harms({0x01, 0x20, 0x18, 0x4D, 0x00, 0x80}), HARMS{});
    EXPECT_EQ(harms({0xC8, 0x40, 0x19, 1, 2, 3}), HARMS{"bits"});
    EXPECT_EQ(harms({0xC8, 0x40}), HARMS{});
    EXPECT_EQ(harms({}), HARMS{});
}

TEST(FlashNotes, TellContradictionsOfTheIdentificationThatFitsBest) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes =
        files.identifications("device_name, identification\nCHIP, 20BA1810??\nCHIP, 20BA1811\nOTHER, 0?\n").read();
    const auto positions = [&notes](const char* name, const std::vector<BYTE>& response) {
        std::vector<DWORD> all;
        for (const auto& each : notes.contradictions(name, response.data(), static_cast<DWORD>(response.size()))) {
            all.push_back(each.position);
        }
        return all;
    };
    using POSITIONS = std::vector<DWORD>;
    EXPECT_EQ(positions("chip", {0x20, 0xBA, 0x18, 0x10, 0x44}), POSITIONS{});
    EXPECT_EQ(positions("CHIP", {0x20, 0xBA, 0x18}), POSITIONS{});
    EXPECT_EQ(positions("CHIP", {0x55, 0xBA, 0x18, 0x11}), POSITIONS{0});
    EXPECT_EQ(positions("CHIP", {0x55, 0xBA, 0x19, 0x12}), (POSITIONS{0, 2, 3}));
    EXPECT_EQ(positions("OTHER", {0x10}), POSITIONS{0});
    EXPECT_EQ(positions("OTHER", {0x0F, 0x77}), POSITIONS{});
    EXPECT_EQ(positions("UNKNOWN", {0x10}), POSITIONS{});
    const BYTE response[]{0x55, 0xBA};
    EXPECT_EQ(notes.contradictions("CHIP", response, 2)[0].found, 0x55);
    EXPECT_EQ(notes.contradictions("CHIP", response, 2)[0].expected, "20");
}

TEST(FlashNotes, ADigitOfAnIdentificationMayBeOneOfARange) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes =
        files
            .identifications(
                "device_name, identification\nNEW, 20[4-7]?\nOLD, 20[0-3]?\nOLDER, 200[0-0]\nBAD, 2[3-1]\nBAD, 2[3\n"
                "BAD, [0-3]\nBAD, 2[0-]\nBAD, 2[0-g]\n")
            .read();
    constexpr const char* EXPECTED =
        "pairs of hexadecimal digits in upper case, ? for any digit, [0-3] for one of these";
    EXPECT_EQ(told(notes.identifications_file().faults),
              (std::vector<PLACE_AND_TEXT>{
                  {5, 6, EXPECTED}, {6, 6, EXPECTED}, {7, 6, EXPECTED}, {8, 6, EXPECTED}, {9, 6, EXPECTED}}));
    using NAMES = std::vector<std::string>;
    const auto devices = [&notes](BYTE second) {
        const BYTE response[]{0x20, second};
        return notes.devices_of(response, 2);
    };
    EXPECT_EQ(devices(0x3F), NAMES{"OLD"});
    EXPECT_EQ(devices(0x40), NAMES{"NEW"});
    EXPECT_EQ(devices(0x7F), NAMES{"NEW"});
    EXPECT_EQ(devices(0x80), NAMES{});
    EXPECT_EQ(devices(0x00), (NAMES{"OLD", "OLDER"}));
    EXPECT_EQ(devices(0x01), NAMES{"OLD"});
    const BYTE response[]{0x20, 0x44};
    EXPECT_EQ(notes.contradictions("OLD", response, 2)[0].expected, "[0-3]?");
}

TEST(FlashNotes, ChipsOfAnotherIdentificationAreNotAmbiguous) {
    NOTES files;
    const PGMDEV_FLASH_NOTES notes =
        files.ambiguities(HEADING + "012018, A B C, 5, by, voltage, volts\n012018, A B, 6, by, flow, flows\n")
            .identifications("device_name, identification\nA, 0120184D01\nB, 0120184D00\n")
            .read();
    const BYTE response[]{0x01, 0x20, 0x18, 0x4D, 0x01};
    const auto found = notes.ambiguities_of(response, 5);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].chips, (std::vector<std::string>{"A", "C"}));
    EXPECT_EQ(notes.ambiguities_of(response, 4).size(), 2U);
}

TEST(FlashNotes, AreHeldAgainstTheTable) {
    PGMDEV_SFL_FLASH_INFO chip = flash_reference::sample("CHIP");  // 20BA18
    NOTES files;
    const PGMDEV_FLASH_NOTES notes =
        files
            .ambiguities(HEADING +
                         "20BA18, CHIP NEW, -, by, data, harm\n20BA18, NEW NEWER, -, by, data, harm\n"
                         "EF4018, CHIP NEW, -, by, data, harm\n")
            .identifications("device_name, identification\nCHIP, 20BA18\nCHIP, 20BA19\nNONE, 20BA18\n")
            .read();
    const auto all = notes.faults_with({chip});
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(told(all[0].faults), (std::vector<PLACE_AND_TEXT>{
                                       {3, 9, "the table answers this response with CHIP, which is none of the chips"},
                                       {4, 9, "no row of the table answers this response"}}));
    EXPECT_EQ(told(all[1].faults),
              (std::vector<PLACE_AND_TEXT>{{3, 7, "no row of this name takes it"}, {4, 7, "no row has this name"}}));
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(all[0].faults[0], "a.csv"),
              "a.csv:3:9: warning: row 20BA18: member chips: the table answers this response with CHIP, which is none "
              "of the chips");
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(all[1].faults[0], "i.csv"),
              "i.csv:3:7: warning: row CHIP: member identification: found \"20BA19\", no row of this name takes it");
    for (const auto& file : all) {
        for (const PGMDEV_TABLE_FAULT& fault : file.faults) {
            EXPECT_EQ(fault.severity, SEVERITY::WARNING);
        }
    }
}

TEST(FlashNotes, OfTheShippedTableHaveNoFault) {
    const std::string table = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
    const PGMDEV_FLASH_NOTES notes = PGMDEV_FLASH_NOTES::beside_source(table);
    EXPECT_GE(notes.ambiguities().size(), 19U);
    const auto all = notes.faults_with(PGMDEV_FLASH_TABLE::from_source(table).records());
    ASSERT_EQ(all.size(), 2U);
    for (const auto& file : all) {
        for (const PGMDEV_TABLE_FAULT& fault : file.faults) {
            ADD_FAILURE() << PGMDEV_FLASH_TABLE::describe(fault, file.file);
        }
    }
}

}  // namespace
