#include "names/container.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "names/compiled_in_data.h"
#include "packed/inflate.h"
#include "pgm_common.h"
#include "report.h"
#include "text_digest.h"

namespace {

constexpr std::string_view MAGIC = "PGMDEV_DDB";
static_assert(MAGIC.size() == CONTAINER_MAGIC_SIZE);

/// Room beyond the expected length, so that a stream that holds too much is found out by its length.
constexpr QWORD SPARE = 100;

constexpr DWORD CRC_PRESET = 0xFFFFFFFF;
constexpr DWORD CRC_POLYNOMIAL = 0x04C11DB7;

void check_crc(const BYTE* data, DWORD data_size) {
    const DWORD crc32 = ~PGM_COMMON::msb_calculate_crc32(data, 0, QWORD{data_size - CONTAINER_CRC_SIZE} * 8, CRC_PRESET,
                                                         CRC_POLYNOMIAL, true);
    PGMDEV_REQUIRE(BYTE(crc32) == data[data_size - 4], "BYTE(crc32) == data[data_size-4]", DDB_MGR_FILE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 8) == data[data_size - 3], "BYTE(crc32 >> 8) == data[data_size-3]", DDB_MGR_FILE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 16) == data[data_size - 2], "BYTE(crc32 >> 16) == data[data_size-2]", DDB_MGR_FILE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 24) == data[data_size - 1], "BYTE(crc32 >> 24) == data[data_size-1]", DDB_MGR_FILE);
}

}  // namespace

COMPILED_DATA_SET grammar_data_set() {
    return {PGMDDB_GRAMMAR_DATA,
            PGMDDB_GRAMMAR_CMP_LENGTH,
            PGMDDB_GRAMMAR_LENGTH,
            "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK",
            "data_size == PGMDDB_GRAMMAR_LENGTH",
            PGMDDB_GRAMMAR_DIGEST,
            PGMDDB_GRAMMAR_CRC,
            PGMDDB_GRAMMAR_TEXT,
            {PGMDDB_GRAMMAR_INDEX, PGMDDB_GRAMMAR_INDEX_LENGTH}};
}

COMPILED_DATA_SET opn_data_set() {
    return {PGMDDB_OPN_DATA,
            PGMDDB_OPN_CMP_LENGTH,
            PGMDDB_OPN_LENGTH,
            "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK",
            "data_size == PGMDDB_OPN_LENGTH",
            PGMDDB_OPN_DIGEST,
            PGMDDB_OPN_CRC,
            nullptr,
            {},
            {PGMDDB_OPN_NUMBERS, PGMDDB_OPN_NUMBERS_LENGTH}};
}

bool is_known(const COMPILED_DATA_SET& set) {
    return text_digest({reinterpret_cast<const char*>(set.stream), set.stream_length}) == set.known_stream;
}

DWORD crc_of(const COMPILED_DATA_SET& set) {
    if (is_known(set)) {
        return set.crc;
    }
    const DATA_CONTAINER container = open_container(set);
    DWORD crc = 0;
    for (DWORD i = container.size; i-- > container.body_end();) {
        crc = crc << 8 | container.data[i];
    }
    return crc;
}

DATA_CONTAINER open_container(const COMPILED_DATA_SET& set) {
    INFLATED contents = inflate_bounded(set.stream, set.stream_length, set.length + SPARE);
    PGMDEV_REQUIRE(contents.good, set.bad_stream, DDB_MGR_FILE);
    PGMDEV_REQUIRE(contents.length == set.length, set.bad_length, DDB_MGR_FILE);
    // Nothing shorter has the magic; so the CRC is there, too, even if it overlaps the magic.
    PGMDEV_REQUIRE(contents.length >= MAGIC.size() && std::equal(MAGIC.begin(), MAGIC.end(), contents.data.get()),
                   "memcmp(data, \"PGMDEV_DDB\", 10) == 0", DDB_MGR_FILE);
    check_crc(contents.data.get(), contents.length);
    return {std::move(contents.data), contents.length};
}
