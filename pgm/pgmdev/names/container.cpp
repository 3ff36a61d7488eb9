#include "names/container.h"

#include <algorithm>
#include <string_view>

#include "names/compiled_in_data.h"
#include "packed/format.h"
#include "pgm_common.h"
#include "report.h"
#include "zlib_wrapper.h"

namespace {

constexpr std::string_view MAGIC = "PGMDEV_DDB";
static_assert(MAGIC.size() == DDB_MAGIC_SIZE);

/// Room beyond the expected length, so that a stream that holds too much is found out by its length.
constexpr QWORD SPARE = 100;

constexpr DWORD CRC_PRESET = 0xFFFFFFFF;
constexpr DWORD CRC_POLYNOMIAL = 0x04C11DB7;

/// No more than the stream can decompress to, whatever length is claimed for it.
DWORD capacity(const DDB_DATA_SET& set) {
    const QWORD largest = (QWORD{set.stream_length} + 1) * PACKED_LARGEST_RATIO;
    return static_cast<DWORD>(std::min({set.length + SPARE, largest, QWORD{0xFFFFFFFF}}));
}

void check_crc(const BYTE* data, DWORD data_size) {
    const DWORD crc32 = ~PGM_COMMON::msb_calculate_crc32(data, 0, QWORD{data_size - DDB_CRC_SIZE} * 8, CRC_PRESET,
                                                         CRC_POLYNOMIAL, true);
    PGMDEV_REQUIRE(BYTE(crc32) == data[data_size - 4], "BYTE(crc32) == data[data_size-4]", DDB_SOURCE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 8) == data[data_size - 3], "BYTE(crc32 >> 8) == data[data_size-3]", DDB_SOURCE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 16) == data[data_size - 2], "BYTE(crc32 >> 16) == data[data_size-2]", DDB_SOURCE);
    PGMDEV_REQUIRE(BYTE(crc32 >> 24) == data[data_size - 1], "BYTE(crc32 >> 24) == data[data_size-1]", DDB_SOURCE);
}

}  // namespace

DDB_DATA_SET ddb_grammar_data() {
    return {PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH,
            "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK",
            "data_size == PGMDDB_GRAMMAR_LENGTH"};
}

DDB_DATA_SET ddb_opn_data() {
    return {PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH,
            "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK",
            "data_size == PGMDDB_OPN_LENGTH"};
}

DDB_CONTAINER ddb_open(const DDB_DATA_SET& set) {
    DWORD size = capacity(set);
    auto data = std::make_unique<BYTE[]>(size);
    PGMDEV_REQUIRE(zlib_uncompress(data.get(), &size, set.stream, set.stream_length) == ZLIB_OK, set.bad_stream,
                   DDB_SOURCE);
    PGMDEV_REQUIRE(size == set.length, set.bad_length, DDB_SOURCE);
    // Nothing shorter has the magic; so the CRC is there, too, even if it overlaps the magic.
    PGMDEV_REQUIRE(size >= MAGIC.size() && std::equal(MAGIC.begin(), MAGIC.end(), data.get()),
                   "memcmp(data, \"PGMDEV_DDB\", 10) == 0", DDB_SOURCE);
    check_crc(data.get(), size);
    return {std::move(data), size};
}
