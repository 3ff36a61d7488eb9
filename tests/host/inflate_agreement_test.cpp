#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <random>
#include <vector>

#include "support/repeatable_random.h"
#include "zlib_wrapper.h"

// Whatever a build inflates with, the result is zlib's: its code, its length, its bytes.

namespace {

using STREAM = std::vector<BYTE>;

struct OUTCOME {
    int code;
    DWORD length;
    STREAM contents;

    bool operator==(const OUTCOME&) const = default;
};

/// Every buffer is allocated at its exact length, so that the sanitizers see a byte too many.
template <class INFLATE>
OUTCOME outcome_of(INFLATE inflate, const STREAM& stream, DWORD capacity) {
    const std::unique_ptr<BYTE[]> source(new BYTE[stream.size()]);
    const std::unique_ptr<BYTE[]> destination(new BYTE[capacity]);
    std::copy(stream.begin(), stream.end(), source.get());
    DWORD length = capacity;
    const int code = inflate(destination.get(), &length, source.get(), static_cast<DWORD>(stream.size()));
    return {code, length, STREAM(destination.get(), destination.get() + length)};
}

int inflate_by_zlib(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    uLongf length = *destination_length;
    const int code = uncompress(destination, &length, source, source_length);
    *destination_length = static_cast<DWORD>(length);
    return code;
}

void expect_agreement(const STREAM& stream, std::initializer_list<std::size_t> capacities) {
    for (const std::size_t capacity : capacities) {
        const auto room = static_cast<DWORD>(capacity);
        const OUTCOME ours = outcome_of(zlib_uncompress, stream, room);
        const OUTCOME theirs = outcome_of(inflate_by_zlib, stream, room);
        ASSERT_EQ(ours.code, theirs.code) << "capacity " << capacity;
        ASSERT_EQ(ours.length, theirs.length) << "capacity " << capacity;
        ASSERT_TRUE(ours == theirs) << "capacity " << capacity;
    }
}

/// Bytes that come in runs, repetitions and noise, so that streams have blocks of every kind.
STREAM varied_bytes(std::mt19937& random, std::size_t size) {
    STREAM bytes;
    while (bytes.size() < size) {
        const std::size_t count = random() % 300 + 1;
        const std::size_t letters = random() % 3 == 0 ? 256 : random() % 20 + 1;
        const bool repeats = bytes.size() > 100 && random() % 2 == 0;
        const std::size_t from = repeats ? random() % bytes.size() : 0;
        for (std::size_t i = 0; i < count; ++i) {
            bytes.push_back(repeats ? bytes[from + i] : static_cast<BYTE>(random() % letters));
        }
    }
    bytes.resize(size);
    return bytes;
}

/// A stream as a compressor with these settings makes it.
STREAM deflated(STREAM bytes, int level, int strategy, int window_bits = MAX_WBITS) {
    z_stream state{};
    EXPECT_EQ(deflateInit2(&state, level, Z_DEFLATED, window_bits, 8, strategy), Z_OK);
    STREAM stream(deflateBound(&state, static_cast<uLong>(bytes.size())));
    state.next_in = bytes.data();
    state.avail_in = static_cast<uInt>(bytes.size());
    state.next_out = stream.data();
    state.avail_out = static_cast<uInt>(stream.size());
    EXPECT_EQ(deflate(&state, Z_FINISH), Z_STREAM_END);
    stream.resize(state.total_out);
    deflateEnd(&state);
    return stream;
}

}  // namespace

TEST(InflateAgreement, OnSoundStreamsOfEverySetting) {
    auto random = repeatable_random(11);
    for (const std::size_t size : {0U, 1U, 5U, 300U, 5000U, 70000U}) {
        const STREAM bytes = varied_bytes(random, size);
        for (const int strategy : {Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED}) {
            for (const int level : {0, 1, 6, 9}) {
                const STREAM stream = deflated(bytes, level, strategy, level == 9 ? 9 : MAX_WBITS);
                expect_agreement(stream, {0, size / 2, size - (size > 0 ? 1 : 0), size, size + 1, size + 1000});
                ASSERT_EQ(outcome_of(zlib_uncompress, stream, static_cast<DWORD>(size)).contents, bytes);
            }
        }
    }
}

TEST(InflateAgreement, OnTruncatedStreams) {
    auto random = repeatable_random(12);
    const STREAM bytes = varied_bytes(random, 3000);
    for (const int strategy : {Z_DEFAULT_STRATEGY, Z_FIXED}) {
        STREAM stream = deflated(bytes, 6, strategy);
        while (!stream.empty()) {
            stream.pop_back();
            expect_agreement(stream, {bytes.size(), bytes.size() + 100});
        }
    }
}

TEST(InflateAgreement, OnDamagedStreams) {
    auto random = repeatable_random(13);
    for (int round = 0; round < 5000; ++round) {
        const STREAM bytes = varied_bytes(random, random() % 400);
        STREAM stream = deflated(bytes, static_cast<int>(random() % 10), round % 2 == 0 ? Z_DEFAULT_STRATEGY : Z_FIXED);
        for (std::size_t faults = random() % 3 + 1; faults > 0; --faults) {
            BYTE& byte = stream[random() % stream.size()];
            byte = static_cast<BYTE>(byte ^ 1U << random() % 8);
        }
        expect_agreement(stream, {bytes.size(), bytes.size() + 100});
    }
}

TEST(InflateAgreement, OnBytesBehindTheEnd) {
    auto random = repeatable_random(14);
    const STREAM bytes = varied_bytes(random, 1000);
    for (std::size_t count = 1; count < 100; ++count) {
        STREAM stream = deflated(bytes, 6, Z_DEFAULT_STRATEGY);
        std::generate_n(std::back_inserter(stream), count, [&] { return static_cast<BYTE>(random()); });
        expect_agreement(stream, {bytes.size(), bytes.size() - 1, bytes.size() + 100});
    }
}

TEST(InflateAgreement, OnRandomBytes) {
    auto random = repeatable_random(15);
    for (int round = 0; round < 20000; ++round) {
        STREAM stream(random() % 80);
        std::generate(stream.begin(), stream.end(), [&] { return static_cast<BYTE>(random()); });
        if (round % 2 == 0 && stream.size() >= 2) {  // behind a sound head
            stream[0] = 0x78;
            stream[1] = 0x9C;
        }
        expect_agreement(stream, {0, 64, 5000});
    }
}

TEST(InflateAgreement, OnBombs) {
    const STREAM stream = deflated(STREAM(4000000), 9, Z_DEFAULT_STRATEGY);
    expect_agreement(stream, {0, 1, 1000, 65536, 3999999, 4000000, 4000001});
}
