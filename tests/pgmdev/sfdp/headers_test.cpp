#include <gmock/gmock.h>

#include "pgmdev/sfdp/sample.h"

// The SFDP header, the parameter headers, and which tables are used.

namespace {

using namespace sfdp_sample;
using testing::ElementsAre;
using testing::IsEmpty;

using SFDP = PGMDEV_FLASH_SFDP;

BYTES cut(BYTES bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

BYTES with_byte(std::size_t place, BYTE value) {
    BYTES bytes = basic_dump(basic_words());
    bytes.at(place) = value;
    return bytes;
}

TEST(SfdpHeaders, AreRead) {
    const SFDP sfdp = read(basic_dump(basic_words()));
    ASSERT_FALSE(sfdp.refusal());
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
    EXPECT_EQ(sfdp.major(), 1);
    EXPECT_EQ(sfdp.minor(), 6);
    EXPECT_EQ(sfdp.access_protocol(), 0xFF);
    ASSERT_EQ(sfdp.headers().size(), 1U);
    EXPECT_EQ(sfdp.headers()[0].id, 0xFF00);
    EXPECT_EQ(sfdp.headers()[0].major, 1);
    EXPECT_EQ(sfdp.headers()[0].minor, 6);
    EXPECT_EQ(sfdp.headers()[0].words, 16);
    EXPECT_EQ(sfdp.headers()[0].offset, 0x10U);
}

TEST(SfdpHeaders, RefusedOnesTellByteFieldAndExpectation) {
    const BYTES good = basic_dump(basic_words());
    EXPECT_EQ(refusal_of({}), "byte 00h, signature: found the end of the dump, expected 53 46 44 50 (\"SFDP\")");
    EXPECT_EQ(refusal_of({'S', 'F'}),
              "byte 02h, signature: found the end of the dump, expected 53 46 44 50 (\"SFDP\")");
    for (const BYTE idle : {BYTE{0x00}, BYTE{0xFF}}) {
        const std::string digits = idle == 0 ? "00 00 00 00" : "FF FF FF FF";
        EXPECT_EQ(refusal_of(BYTES(64, idle)), "byte 00h, signature: found " + digits +
                                                   ", and nothing else: the flash has no SFDP, or nobody drives the "
                                                   "data line, expected 53 46 44 50 (\"SFDP\")");
    }
    EXPECT_EQ(
        refusal_of({0xFF, 'S', 'F', 'D', 'P', 6, 1}),
        "byte 00h, signature: found FF 53 46 44; it stands 1 byte later: take those before it away, expected 53 46 "
        "44 50 (\"SFDP\")");
    EXPECT_EQ(
        refusal_of({1, 2, 3, 4, 5, 6, 7, 8, 'S', 'F', 'D', 'P'}),
        "byte 00h, signature: found 01 02 03 04; it stands 8 bytes later: take those before it away, expected 53 46 "
        "44 50 (\"SFDP\")");
    EXPECT_EQ(refusal_of({1, 2, 3, 4, 5, 6, 7, 8, 9, 'S', 'F', 'D', 'P'}),
              "byte 00h, signature: found 01 02 03 04, expected 53 46 44 50 (\"SFDP\")");
    EXPECT_EQ(refusal_of(with_byte(3, 'Q')), "byte 03h, signature: found 53 46 44 51, expected 53 46 44 50 (\"SFDP\")");
    EXPECT_EQ(refusal_of(cut(good, 7)),
              "byte 07h, SFDP header: found the end of the dump, expected 16 bytes for both headers");
    EXPECT_EQ(refusal_of(cut(good, 15)),
              "byte 0Fh, first parameter header: found the end of the dump, expected 16 bytes for both headers");
    EXPECT_EQ(refusal_of(with_byte(5, 2)), "byte 05h, major revision of the SFDP header: found 2, expected 1");
    EXPECT_EQ(refusal_of(with_byte(8, 0xEF)),
              "byte 08h, parameter headers: found no basic table, expected a header with the number FF00");
    EXPECT_EQ(refusal_of(with_byte(10, 2)), "byte 10h, major revision of the basic table: found 2, expected 1");
    EXPECT_EQ(refusal_of(with_byte(11, 8)),
              "byte 10h, length of the basic table: found 8 words, expected 9 words at least");
    EXPECT_EQ(refusal_of(with_byte(12, 8)),
              "byte 08h, offset of the basic table: found 08h, expected 10h at least, behind the headers");
    EXPECT_EQ(refusal_of(cut(good, 79)),
              "byte 4Fh, basic table: found a dump of 79 bytes, expected 16 words, up to 50h");
    EXPECT_EQ(refusal_of(with_byte(14, 0xFF)),
              "byte FF0010h, basic table: found a dump of 80 bytes, expected 16 words, up to FF0050h");
}

TEST(SfdpHeaders, AnyAccessProtocolIsTaken) {
    for (const BYTE protocol : BYTES{0xFF, 0xFE, 0xFD, 0x00}) {
        const SFDP sfdp = read(with_byte(7, protocol));
        EXPECT_FALSE(sfdp.refusal());
        EXPECT_EQ(sfdp.access_protocol(), protocol);
        EXPECT_THAT(sfdp.warnings(), IsEmpty());
    }
}

TEST(SfdpHeaders, MinorRevisionNamesTheStandard) {
    const std::vector<std::pair<BYTE, std::string>> standards{{0, "JESD216"},
                                                              {1, "JESD216"},
                                                              {4, "JESD216"},
                                                              {5, "JESD216A"},
                                                              {6, "JESD216B"},
                                                              {7, "JESD216C"},
                                                              {8, "JESD216D"},
                                                              {9, "JESD216E"},
                                                              {10, "JESD216F"},
                                                              {11, "JESD216F or later"},
                                                              {255, "JESD216F or later"}};
    for (const auto& [minor, name] : standards) {
        EXPECT_EQ(read(with_byte(4, minor)).standard(), name);
    }
}

TEST(SfdpHeaders, NewestBasicTableIsUsed) {
    WORDS small = basic_words();
    small.resize(9);
    small[1] = 0x00FFFFFF;
    const SFDP sfdp = read(dump({{.words = small, .minor = 0}, {.words = basic_words(), .minor = 6}}));
    EXPECT_EQ(sfdp.basic().header.words, 16);
    EXPECT_EQ(sfdp.basic().bytes(), 16777216U);
    EXPECT_EQ(sfdp.headers().size(), 2U);

    const SFDP reversed = read(dump({{.words = basic_words(), .minor = 6}, {.words = small, .minor = 0}}));
    EXPECT_EQ(reversed.basic().header.words, 16);
}

TEST(SfdpHeaders, OlderBasicTableStandsInForADamagedOne) {
    WORDS small = basic_words();
    small.resize(9);
    BYTES bytes = dump({{.words = small, .minor = 0}, {.words = basic_words(), .minor = 6}});
    bytes.resize(bytes.size() - 1);
    const SFDP sfdp = read(bytes);
    ASSERT_FALSE(sfdp.refusal());
    EXPECT_EQ(sfdp.basic().header.words, 9);
    EXPECT_THAT(sfdp.warnings(),
                ElementsAre("basic table at 3Ch: byte 7Bh, basic table: found a dump of 123 bytes, expected 16 words, "
                            "up to 7Ch; it is not used"));
}

TEST(SfdpHeaders, ThoseBeyondTheCountAreNotRead) {
    BYTES bytes = dump({{.words = basic_words()}, {.id = SFDP::FOUR_BYTE_ID, .words = {0x00000001, 0xFFFFFFFF}}});
    bytes[6] = 0;
    const SFDP sfdp = read(bytes);
    EXPECT_EQ(sfdp.headers().size(), 1U);
    EXPECT_FALSE(sfdp.four_byte());
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
}

TEST(SfdpHeaders, CountBeyondTheDumpIsNamed) {
    BYTES bytes = basic_dump(basic_words());
    bytes[6] = 200;
    const SFDP sfdp = read(bytes);
    ASSERT_FALSE(sfdp.refusal());
    EXPECT_EQ(sfdp.headers().size(), 9U);  // 80 bytes have no more
    EXPECT_THAT(sfdp.warnings(),
                testing::Contains("header 10 of 201 at 50h: the dump ends after 80 bytes; no further header is read"));
}

TEST(SfdpHeaders, DamagedFurtherTablesAreNamedAndNotUsed) {
    BYTES bytes = dump({{.words = basic_words()},
                        {.id = SFDP::FOUR_BYTE_ID, .words = {0x00000001, 0xFFFFFFFF}},
                        {.id = SFDP::SECTOR_MAP_ID, .words = {0xFF0000FF, 0x00FFFFF1}, .major = 3}});
    bytes[8 + 8 + 4] = 0xF0;  // the 4-byte table, far behind
    const SFDP sfdp = read(bytes);
    ASSERT_FALSE(sfdp.refusal());
    EXPECT_FALSE(sfdp.four_byte());
    EXPECT_THAT(sfdp.sector_maps(), IsEmpty());
    EXPECT_THAT(
        sfdp.warnings(),
        ElementsAre("4-byte instructions table at F0h: byte F0h, 4-byte instructions table: found a dump of 112 "
                    "bytes, expected 2 words, up to F8h; it is not used",
                    "sector map table at 68h: byte 68h, major revision of the sector map table: found 3, "
                    "expected 1; it is not used"));
}

TEST(SfdpHeaders, TablesOfTheMakerStayOutside) {
    BYTES bytes = dump({{.words = basic_words()}, {.id = 0xFFC2, .words = {0x12345678}}});
    bytes.resize(bytes.size() - 4);
    const SFDP sfdp = read(bytes);
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
    EXPECT_EQ(SFDP::table_name(sfdp.headers().at(1).id), "vendor");
}

TEST(SfdpHeaders, TablesHaveNames) {
    const std::vector<std::pair<WORD, std::string>> names{
        {0xFF00, "basic"},
        {0xFF03, "replay-protected counters"},
        {0xFF05, "xSPI profile 1"},
        {0xFF06, "xSPI profile 2"},
        {0xFF09, "register map, xSPI profile 2"},
        {0xFF0A, "octal DDR sequences"},
        {0xFF0C, "quad with data strobe"},
        {0xFF81, "sector map"},
        {0xFF84, "4-byte instructions"},
        {0xFF87, "register map"},
        {0xFF88, "register map, several dies"},
        {0xFF8B, "long latency"},
        {0xFF8D, "quad DDR sequences"},
        {0xFF8E, "secure packets"},
        {0x0001, "vendor"},
        {0xFFEF, "vendor"},
    };
    for (const auto& [id, name] : names) {
        EXPECT_EQ(SFDP::table_name(id), name);
    }
}

}  // namespace
