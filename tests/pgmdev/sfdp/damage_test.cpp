#include <memory>
#include <set>

#include "pgmdev/sfdp/sample.h"
#include "support/repeatable_random.h"

// Damaged dumps: whatever the bytes are, what is read stays within them, and what is told makes sense.

namespace {

using namespace sfdp_sample;

using SFDP = PGMDEV_FLASH_SFDP;

/// The dump in a block that ends where it ends, so that reading behind it is noticed.
SFDP read_from_heap(const BYTES& bytes) {
    const std::unique_ptr<BYTE[]> block(new BYTE[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), block.get());
    return SFDP::from_bytes({block.get(), bytes.size()});
}

void expect_sensible(const SFDP& sfdp, std::size_t size) {
    if (sfdp.refusal()) {
        EXPECT_FALSE(sfdp.refusal()->field.empty());
        EXPECT_FALSE(sfdp.record({}).obstacle.empty());
        return;
    }
    const SFDP::BASIC_TABLE& basic = sfdp.basic();
    EXPECT_GE(basic.header.words, 9);
    EXPECT_LE(basic.header.offset + std::size_t{4} * basic.header.words, size);
    std::set<BYTE> numbers;
    for (const SFDP::ERASE_TYPE& type : basic.erase_types) {
        EXPECT_TRUE(numbers.insert(type.number).second);
        EXPECT_TRUE(type.opcode != 0x00 && type.opcode != 0xFF);
        EXPECT_TRUE(basic.bytes() == 0 || type.bytes <= basic.bytes());
        EXPECT_TRUE(!type.ms || (type.ms->typical > 0 && type.ms->longest >= 2 * type.ms->typical));
    }
    for (const SFDP::SECTOR_MAP& map : sfdp.sector_maps()) {
        QWORD end = 0;
        for (const SFDP::REGION& region : map.regions) {
            EXPECT_EQ(region.offset, end);
            end += region.bytes;
        }
        EXPECT_TRUE(basic.bytes() == 0 || end == basic.bytes());
    }
    const SFDP::DERIVED_RECORD derived = sfdp.record({});
    EXPECT_TRUE(!derived.obstacle.empty() ||
                (derived.record.device_bit_size > 0 && derived.record.bulk_erase_time > 0 &&
                 derived.record.sec_erase_time > 0 && derived.record.program_utime > 0));
}

std::vector<BYTES> seeds() {
    std::vector<BYTES> all{
        dump({{.words = basic_words()},
              {.id = SFDP::FOUR_BYTE_ID, .words = {0xFFFFFFFF, 0xDC5C5221}},
              {.id = SFDP::SECTOR_MAP_ID,
               .words = {0x08FF65FD, 4, 0xFF0100FE, 0x0000FFF1, 0x00FEFFF4, 0xFF0101FF, 0x00FEFFF4, 0x0000FFF1}},
              {.words = basic_words(), .minor = 0}})};
    for (const auto& [name, bytes] : shipped_dumps()) {
        all.push_back(bytes);
    }
    return all;
}

TEST(SfdpDamage, CutAnywhere) {
    for (const BYTES& seed : seeds()) {
        for (std::size_t size = 0; size <= seed.size(); ++size) {
            expect_sensible(read_from_heap({seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(size)}), size);
        }
    }
}

TEST(SfdpDamage, EveryByteOfTheHeadersWithExtremeValues) {
    for (const BYTES& seed : seeds()) {
        for (std::size_t place = 0; place < std::min<std::size_t>(seed.size(), 48); ++place) {
            for (const BYTE value : BYTES{0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF}) {
                BYTES bytes = seed;
                bytes[place] = value;
                expect_sensible(read_from_heap(bytes), bytes.size());
            }
        }
    }
}

TEST(SfdpDamage, EveryBitOfTheShippedDumpsFlipped) {
    for (const auto& [name, seed] : shipped_dumps()) {
        for (std::size_t place = 0; place < seed.size(); ++place) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                BYTES bytes = seed;
                bytes[place] = static_cast<BYTE>(bytes[place] ^ 1U << bit);
                expect_sensible(read_from_heap(bytes), bytes.size());
            }
        }
    }
}

TEST(SfdpDamage, ManyBytesAtRandom) {
    auto random = repeatable_random(216);
    const std::vector<BYTES> all = seeds();
    for (int round = 0; round < 20000; ++round) {
        BYTES bytes = all[random() % all.size()];
        for (DWORD changes = 1 + random() % 8; changes > 0; --changes) {
            bytes[random() % bytes.size()] = static_cast<BYTE>(random());
        }
        if (random() % 4 == 0) {
            bytes.resize(random() % bytes.size());
        }
        expect_sensible(read_from_heap(bytes), bytes.size());
    }
}

TEST(SfdpDamage, NothingButNoise) {
    auto random = repeatable_random(5);
    for (int round = 0; round < 5000; ++round) {
        BYTES bytes(16 + random() % 300);
        for (BYTE& byte : bytes) {
            byte = static_cast<BYTE>(random());
        }
        const BYTES head{'S', 'F', 'D', 'P', 6, 1, static_cast<BYTE>(random() % 4), 0xFF, 0x00, 6, 1};
        std::copy(head.begin(), head.end(), bytes.begin());
        bytes[12] = static_cast<BYTE>(16 + random() % 64);
        bytes[13] = bytes[14] = 0;
        bytes[15] = 0xFF;
        expect_sensible(read_from_heap(bytes), bytes.size());
    }
}

}  // namespace
