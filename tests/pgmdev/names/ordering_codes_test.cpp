#include <gtest/gtest.h>

#include "names/stores.h"
#include "pgmdev/names/data_set.h"
#include "pgmdev/names/reference.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "text_digest.h"

namespace {

namespace ref = ddb_reference;

using namespace std::string_literals;

const std::string NO_COUNT = "enum_count > 0";
const std::string RUNS_INTO_CRC = "index < (data_size - 4)";
const std::string TOO_LONG = "shift <= 35";
const std::string TOO_LARGE = "dev_enum <= QWORD(0xFFFFFFFF)";
const std::string LEFT_OVER = "index == (data_size - 4)";

std::string report_on_codes(const std::string& body) {
    const DATA_SET set(ref::container(body), opn_data_set());
    return report_of([&] { build_opn_store(set); });
}

std::vector<DWORD> list_of(const std::string& body) {
    const DATA_SET set(ref::container(body), opn_data_set());
    const auto store = build_opn_store(set);
    const std::span<const DWORD> list = opn_list(store.get());
    return {list.begin(), list.end()};
}

TEST(DdbOpn, HasTextsOfItsOwnForStreamAndLength) {
    const std::string container = ref::container(ref::opn_body({1}));
    const DATA_SET no_stream("no stream", 9, opn_data_set());
    EXPECT_REPORT(build_opn_store(no_stream),
                  "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK");
    const DATA_SET longer(ref::deflated(container), container.size() + 1, opn_data_set());
    EXPECT_REPORT(build_opn_store(longer), "data_size == PGMDDB_OPN_LENGTH");
    const DATA_SET shorter(ref::deflated(container), container.size() - 1, opn_data_set());
    EXPECT_REPORT(build_opn_store(shorter), "data_size == PGMDDB_OPN_LENGTH");
}

TEST(DdbOpn, ReadsNumbersOfEveryLength) {
    const std::vector<DWORD> numbers{0, 1, 127, 128, 16383, 16384, 2097151, 2097152, 268435455, 268435456, 0xFFFFFFFF};
    EXPECT_EQ(list_of(ref::opn_body({numbers.begin(), numbers.end()})), numbers);
    EXPECT_EQ(list_of(ref::le32(1) + "\x80\x80\x80\x80\x00"s), std::vector<DWORD>{0});  // longer than it need be
}

TEST(DdbOpn, WhatIsKnownOfAStreamIsUsedForNoOther) {
    const DATA_SET set(ref::container(ref::opn_body({1, 2, 300})), opn_data_set());
    const std::vector<DWORD> numbers{7, 8};  // which are not those of the stream, to tell whose are used
    COMPILED_DATA_SET known = set;
    known.numbers = numbers;
    known.known_stream = text_digest({reinterpret_cast<const char*>(known.stream), known.stream_length});
    const auto store = build_opn_store(known);
    EXPECT_EQ(opn_list(store.get()).data(), numbers.data());
    EXPECT_EQ(opn_list(store.get()).size(), 2U);

    ++known.known_stream;
    const auto other = build_opn_store(known);
    EXPECT_EQ(opn_list(other.get()).size(), 3U);
    EXPECT_EQ(opn_list(other.get())[2], 300U);
}

TEST(DdbOpn, RefusesACountOfZero) {
    EXPECT_EQ(report_on_codes(ref::le32(0)), NO_COUNT);
    EXPECT_EQ(report_on_codes(ref::le32(0) + "\x01"), NO_COUNT);
}

TEST(DdbOpn, RefusesEntriesThatRunIntoTheCrc) {
    EXPECT_EQ(report_on_codes(ref::le32(1)), RUNS_INTO_CRC);
    EXPECT_EQ(report_on_codes(ref::le32(2) + "\x01"), RUNS_INTO_CRC);
    EXPECT_EQ(report_on_codes(ref::le32(1) + "\x81"), RUNS_INTO_CRC);
    EXPECT_EQ(report_on_codes(ref::le32(1) + std::string(300, '\x81')), RUNS_INTO_CRC);
    EXPECT_EQ(report_on_codes(ref::le32(0xFFFFFFFF) + std::string(300, '\x01')), RUNS_INTO_CRC);
}

TEST(DdbOpn, RefusesEntriesOfSixBytes) {
    EXPECT_EQ(report_on_codes(ref::le32(1) + "\x80\x80\x80\x80\x80\x00"s), TOO_LONG);
    EXPECT_EQ(report_on_codes(ref::le32(1) + std::string(300, '\x81') + "\x01"), TOO_LONG);
}

TEST(DdbOpn, RefusesValuesBeyond32Bits) {
    EXPECT_EQ(report_on_codes(ref::le32(1) + ref::variable_length(0xFFFFFFFF)), "(no report)");
    EXPECT_EQ(report_on_codes(ref::le32(1) + ref::variable_length(0x100000000)), TOO_LARGE);
    EXPECT_EQ(report_on_codes(ref::le32(1) + "\xFF\xFF\xFF\xFF\x7F"), TOO_LARGE);
}

TEST(DdbOpn, RefusesBytesLeftOver) {
    EXPECT_EQ(report_on_codes(ref::opn_body({1, 2}) + "\x03"), LEFT_OVER);
    EXPECT_EQ(report_on_codes(ref::opn_body({1, 2}) + '\0'), LEFT_OVER);
}

TEST(DdbOpn, SurvivesABodyWithoutACount) {
    // The bytes of the count are the CRC and what follows it; no list begins before the CRC.
    for (const std::string body : {"", "\1", "\1\1", "\1\1\1"}) {
        EXPECT_EQ(report_on_codes(body), RUNS_INTO_CRC) << body.size();
    }
}

TEST(DdbOpn, AgreesWithAnIndependentReaderOnRandomBodies) {
    auto random = repeatable_random(7);
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string body = ref::le32(static_cast<DWORD>(random() % 5));
        for (auto count = random() % 9; count > 0; --count) {
            body += static_cast<char>(random() % 2 == 0 ? random() % 0x80 : random() % 0x100);
        }
        std::string expected = "(no report)";
        std::vector<std::uint32_t> parts;
        try {
            parts = ref::read_opn(ref::container(body));
        } catch (const ref::REFUSED& refused) {
            expected = refused.what();
        }
        ASSERT_EQ(report_on_codes(body), expected) << round;
        if (expected == "(no report)") {
            ++accepted;
            ASSERT_EQ(list_of(body), std::vector<DWORD>(parts.begin(), parts.end()));
        }
    }
    EXPECT_GT(accepted, 500);
}

TEST(DdbOpn, ChecksStoreAndList) {
    EXPECT_REPORT(opn_list(nullptr), "mgr != NULL");
    const OPN_STORE hollow;
    EXPECT_REPORT(opn_list(&hollow), "M_MAP != NULL");
}

}  // namespace
