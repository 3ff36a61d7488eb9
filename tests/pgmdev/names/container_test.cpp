#include <gtest/gtest.h>

#include "names/container.h"
#include "pgmdev/names/data_set.h"
#include "pgmdev/names/reference.h"
#include "support/reports.h"
#include "text_digest.h"

namespace {

namespace ref = ddb_reference;

const std::string BAD_STREAM =
    "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK";
const std::string BAD_LENGTH = "data_size == PGMDDB_GRAMMAR_LENGTH";
const std::string BAD_MAGIC = "memcmp(data, \"PGMDEV_DDB\", 10) == 0";
const std::vector<std::string> BAD_CRC{"BYTE(crc32) == data[data_size-4]", "BYTE(crc32 >> 8) == data[data_size-3]",
                                       "BYTE(crc32 >> 16) == data[data_size-2]",
                                       "BYTE(crc32 >> 24) == data[data_size-1]"};

const std::string SAMPLE = ref::container("a body of some length");

std::string report_on_opening(const COMPILED_DATA_SET& set) {
    return report_of([&] { open_container(set); });
}

TEST(DdbContainer, GivesTheDecompressedBytes) {
    const DATA_SET set(SAMPLE);
    const DATA_CONTAINER container = open_container(set);
    ASSERT_EQ(container.size, SAMPLE.size());
    EXPECT_EQ(container.body_end(), SAMPLE.size() - 4);
    EXPECT_EQ(std::string(container.data.get(), container.data.get() + container.size), SAMPLE);
}

TEST(DdbContainer, TheCrcIsThePublishedOne) {
    EXPECT_EQ(ref::crc32_bzip2("123456789"), 0xFC891918U);  // the check value of the published parameter set
}

TEST(DdbContainer, NamesModuleSourceAndLine) {
    const REPORTS reports;
    EXPECT_THROW(open_container(DATA_SET("no stream", 9)), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, BAD_STREAM);
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_ddb_mgr");
    EXPECT_GT(reports.all()[0].line, 0);
}

TEST(DdbContainer, RefusesStreamsThatEndEarly) {
    const std::string stream = ref::deflated(SAMPLE);
    for (std::size_t length = 0; length < stream.size(); ++length) {
        EXPECT_EQ(report_on_opening(DATA_SET(stream.substr(0, length), SAMPLE.size())), BAD_STREAM) << length;
    }
}

TEST(DdbContainer, RefusesEveryOtherLength) {
    const std::string stream = ref::deflated(SAMPLE);
    EXPECT_EQ(report_on_opening(DATA_SET(stream, SAMPLE.size() - 1)), BAD_LENGTH);
    EXPECT_EQ(report_on_opening(DATA_SET(stream, SAMPLE.size() + 1)), BAD_LENGTH);
    EXPECT_EQ(report_on_opening(DATA_SET(stream, 0)), BAD_LENGTH);
    EXPECT_EQ(report_on_opening(DATA_SET(stream, 0xFFFFFFFF)), BAD_LENGTH);
}

TEST(DdbContainer, HasRoomForHundredBytesMore) {
    const std::string stream = ref::deflated(std::string(1100, 'x'));
    EXPECT_EQ(report_on_opening(DATA_SET(stream, 1000)), BAD_LENGTH);
    EXPECT_EQ(report_on_opening(DATA_SET(stream, 999)), BAD_STREAM);
}

TEST(DdbContainer, AcceptsBytesBehindTheStream) {
    EXPECT_EQ(report_on_opening(DATA_SET(ref::deflated(SAMPLE) + "more", SAMPLE.size())), "(no report)");
}

TEST(DdbContainer, RefusesEveryFlippedBit) {
    for (std::size_t bit = 0; bit < 8 * SAMPLE.size(); ++bit) {
        std::string damaged = SAMPLE;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
        std::string expected = BAD_MAGIC;
        if (bit / 8 >= std::string(ref::MAGIC).size()) {
            const std::string crc = ref::le32(ref::crc32_bzip2(damaged.substr(0, damaged.size() - 4)));
            const std::string stored = damaged.substr(damaged.size() - 4);
            const auto differing = std::mismatch(crc.begin(), crc.end(), stored.begin()).first - crc.begin();
            expected = BAD_CRC.at(static_cast<std::size_t>(differing));
        }
        ASSERT_EQ(report_on_opening(DATA_SET(damaged)), expected) << bit;
    }
}

TEST(DdbContainer, ComparesTheCrcByteByByteFromTheLowestOn) {
    for (std::size_t i = 0; i < 4; ++i) {
        std::string damaged = SAMPLE;
        for (std::size_t later = i; later < 4; ++later) {
            damaged[damaged.size() - 4 + later] = static_cast<char>(~damaged[damaged.size() - 4 + later]);
        }
        EXPECT_EQ(report_on_opening(DATA_SET(damaged)), BAD_CRC[i]);
    }
}

TEST(DdbContainer, SurvivesContainersThatAreTooShort) {
    for (std::size_t length = 0; length < 14; ++length) {
        const std::string expected = length < 10 ? BAD_MAGIC : BAD_CRC[0];
        EXPECT_EQ(report_on_opening(DATA_SET(SAMPLE.substr(0, length))), expected) << length;
    }
    EXPECT_EQ(report_on_opening(DATA_SET(ref::container(""))), "(no report)");
}

TEST(DdbContainer, TheCrcOfAKnownStreamIsTheOneThatIsKnown) {
    const DATA_SET set(SAMPLE);
    COMPILED_DATA_SET known = set;
    known.crc = 0x12345678;  // which is not the one in the stream, to tell which is taken
    EXPECT_EQ(ref::le32(crc_of(known)), SAMPLE.substr(SAMPLE.size() - 4));
    known.known_stream = text_digest({reinterpret_cast<const char*>(known.stream), known.stream_length});
    EXPECT_EQ(crc_of(known), 0x12345678U);
}

TEST(DdbContainer, NoCrcIsToldOfADamagedStream) {
    EXPECT_EQ(report_of([] { crc_of(DATA_SET("no stream", 9)); }), BAD_STREAM);
}

}  // namespace
