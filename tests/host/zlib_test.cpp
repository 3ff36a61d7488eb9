#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "support/repeatable_random.h"
#include "zlib_wrapper.h"

// Every buffer is allocated at its exact length, so that the sanitizers see a byte too many.

namespace {

using BYTES = std::vector<BYTE>;

struct RESULT {
    int code;
    DWORD length;
    BYTES data;  ///< the whole capacity
};

using OPERATION = int (*)(BYTE*, DWORD*, const BYTE*, DWORD);

RESULT run(OPERATION operation, const BYTES& source, DWORD capacity) {
    const std::unique_ptr<BYTE[]> exact_source(new BYTE[source.size()]);
    const std::unique_ptr<BYTE[]> exact_destination(new BYTE[capacity]);
    std::copy(source.begin(), source.end(), exact_source.get());
    std::fill_n(exact_destination.get(), capacity, BYTE{0xA5});
    DWORD length = capacity;
    const int code = operation(exact_destination.get(), &length, exact_source.get(), static_cast<DWORD>(source.size()));
    return {code, length, BYTES(exact_destination.get(), exact_destination.get() + capacity)};
}

RESULT unpack(const BYTES& source, DWORD capacity) {
    return run(zlib_uncompress, source, capacity);
}

/// What zlib itself makes of it with its default settings.
BYTES packed(const BYTES& plain) {
    uLongf length = compressBound(static_cast<uLong>(plain.size()));
    BYTES stream(length);
    EXPECT_EQ(compress(stream.data(), &length, plain.data(), static_cast<uLong>(plain.size())), Z_OK);
    stream.resize(length);
    return stream;
}

BYTES sample(std::size_t size) {
    BYTES bytes(size);
    auto random = repeatable_random<std::minstd_rand>(7);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<BYTE>(random() % 7); });
    return bytes;
}

// A text that repeats itself.
const BYTES HELLO{'h', 'e', 'l', 'l', 'o', ',', ' ', 'h', 'e', 'l', 'l', 'o', ',', ' ', 'h', 'e', 'l', 'l', 'o'};

}  // namespace

TEST(zlib_wrapper, RoundTrips) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 255U, 256U, 4096U, 65535U, 65536U, 300000U}) {
        const BYTES plain = sample(size);
        const BYTES expected = packed(plain);
        const RESULT stream = run(zlib_compress, plain, static_cast<DWORD>(expected.size()));
        ASSERT_EQ(stream.code, ZLIB_OK) << size;
        ASSERT_EQ(stream.length, expected.size()) << size;
        EXPECT_EQ(stream.data, expected) << size;
        const RESULT back = unpack(stream.data, static_cast<DWORD>(size));
        ASSERT_EQ(back.code, ZLIB_OK) << size;
        ASSERT_EQ(back.length, size);
        EXPECT_EQ(back.data, plain) << size;
    }
}

TEST(zlib_wrapper, UnpacksAKnownStream) {
    // A stored block, written by hand: head, last block, length 3 and its complement, "abc", Adler-32.
    const BYTES stream{0x78, 0x01, 0x01, 0x03, 0x00, 0xFC, 0xFF, 'a', 'b', 'c', 0x02, 0x4D, 0x01, 0x27};
    const RESULT result = unpack(stream, 3);
    EXPECT_EQ(result.code, ZLIB_OK);
    EXPECT_EQ(result.length, 3U);
    EXPECT_EQ(result.data, (BYTES{'a', 'b', 'c'}));
}

TEST(zlib_wrapper, CompressRefusesASmallDestination) {
    const BYTES plain = sample(5000);
    const auto needed = static_cast<DWORD>(packed(plain).size());
    for (const DWORD capacity : std::initializer_list<DWORD>{0, 1, 2, 10, needed / 2, needed - 1}) {
        EXPECT_NE(run(zlib_compress, plain, capacity).code, ZLIB_OK) << capacity;
    }
    EXPECT_EQ(run(zlib_compress, plain, needed).code, ZLIB_OK);
}

TEST(zlib_wrapper, UncompressRefusesASmallDestination) {
    const BYTES plain = sample(5000);
    for (const DWORD capacity : {0U, 1U, 2U, 100U, 4999U}) {
        const RESULT result = unpack(packed(plain), capacity);
        EXPECT_NE(result.code, ZLIB_OK) << capacity;
        EXPECT_LE(result.length, capacity);
    }
}

TEST(zlib_wrapper, UncompressTellsTheProducedLength) {
    const RESULT result = unpack(packed(HELLO), 1000);
    EXPECT_EQ(result.code, ZLIB_OK);
    ASSERT_EQ(result.length, HELLO.size());
    EXPECT_TRUE(std::equal(HELLO.begin(), HELLO.end(), result.data.begin()));
}

TEST(zlib_wrapper, StreamOfNothing) {
    const RESULT result = unpack(packed({}), 0);
    EXPECT_EQ(result.code, ZLIB_OK);
    EXPECT_EQ(result.length, 0U);
    EXPECT_NE(unpack({}, 10).code, ZLIB_OK);
    EXPECT_NE(unpack({}, 0).code, ZLIB_OK);
}

TEST(zlib_wrapper, EveryTruncationIsRefused) {
    for (const BYTES& plain : {HELLO, sample(2000)}) {
        const BYTES stream = packed(plain);
        for (std::size_t length = 0; length < stream.size(); ++length) {
            const BYTES cut(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_NE(unpack(cut, static_cast<DWORD>(plain.size())).code, ZLIB_OK) << length;
            EXPECT_NE(unpack(cut, static_cast<DWORD>(plain.size() + 100)).code, ZLIB_OK) << length;
        }
    }
}

TEST(zlib_wrapper, BytesBehindTheStreamAreIgnored) {
    for (const std::size_t count : {1U, 2U, 100U}) {
        BYTES stream = packed(HELLO);
        stream.insert(stream.end(), count, BYTE{0x78});
        const RESULT result = unpack(stream, static_cast<DWORD>(HELLO.size()));
        EXPECT_EQ(result.code, ZLIB_OK) << count;
        EXPECT_EQ(result.length, HELLO.size());
        EXPECT_EQ(result.data, HELLO);
    }
    BYTES two = packed(HELLO);
    const BYTES second = packed(sample(50));
    two.insert(two.end(), second.begin(), second.end());
    EXPECT_EQ(unpack(two, 1000).length, HELLO.size());  // a second stream is only bytes behind the first
}

TEST(zlib_wrapper, DamagedStreamsNeverGiveAWrongText) {
    const BYTES plain = sample(400);
    const BYTES stream = packed(plain);
    for (std::size_t position = 0; position < stream.size(); ++position) {
        for (int bit = 0; bit < 8; ++bit) {
            BYTES damaged = stream;
            damaged[position] = static_cast<BYTE>(damaged[position] ^ (1 << bit));
            const RESULT result = unpack(damaged, static_cast<DWORD>(plain.size()));
            if (result.code == ZLIB_OK) {  // only the hint of the level in the head carries no meaning
                EXPECT_EQ(result.data, plain) << position << " bit " << bit;
            }
        }
    }
}

TEST(zlib_wrapper, GarbageIsRefused) {
    auto random = repeatable_random(1);
    for (int round = 0; round < 2000; ++round) {
        BYTES garbage(random() % 64 + 1);
        std::generate(garbage.begin(), garbage.end(), [&] { return static_cast<BYTE>(random()); });
        EXPECT_NE(unpack(garbage, 64).code, ZLIB_OK);
    }
}

TEST(zlib_wrapper, BombFillsNoMoreThanTheDestination) {
    const BYTES stream = packed(BYTES(10000000, 0));
    for (const DWORD capacity : {1U, 1000U, 65536U}) {
        const RESULT result = unpack(stream, capacity);
        EXPECT_NE(result.code, ZLIB_OK);
        EXPECT_LE(result.length, capacity);
    }
}

TEST(zlib_wrapper, StreamThatNeedsADictionaryIsRefused) {
    z_stream state{};
    ASSERT_EQ(deflateInit(&state, Z_DEFAULT_COMPRESSION), Z_OK);
    ASSERT_EQ(deflateSetDictionary(&state, HELLO.data(), static_cast<uInt>(HELLO.size())), Z_OK);
    BYTES plain = HELLO;
    BYTES stream(100);
    state.next_in = plain.data();
    state.avail_in = static_cast<uInt>(plain.size());
    state.next_out = stream.data();
    state.avail_out = static_cast<uInt>(stream.size());
    ASSERT_EQ(deflate(&state, Z_FINISH), Z_STREAM_END);
    stream.resize(state.total_out);
    deflateEnd(&state);
    EXPECT_NE(unpack(stream, 1000).code, ZLIB_OK);
}
