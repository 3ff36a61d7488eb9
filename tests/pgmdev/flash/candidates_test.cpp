#include "pgmdev_flash_candidates.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "pgmdev_flash_notes.h"
#include "support/scratch.h"
#include "support/settings.h"

// What a response may be: against a reference that tries every record by itself.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using ROWS = std::vector<RECORD>;
using RESPONSE = std::vector<BYTE>;
using STANDING = PGMDEV_FLASH_CANDIDATE::STANDING;
using ODDITY = PGMDEV_FLASH_ODDITY::KIND;

constexpr BYTE ANY_TYPE = 255;

RECORD row_of(const std::string& name, RESPONSE identification) {
    RECORD record = flash_reference::sample(name);
    record.mfc_id = identification[0];
    record.memory_type = identification[1];
    record.memory_id = identification[2];
    return record;
}

/// A row that compares one byte in place of the maker's.
RECORD special_row(const std::string& name, BYTE type, BYTE capacity, BYTE value, BYTE position) {
    RECORD record = row_of(name, {value, type, capacity});
    record.mfc_id_index = position;
    return record;
}

std::vector<DWORD> indexes_of(const PGMDEV_FLASH_CANDIDATES& candidates) {
    std::vector<DWORD> indexes;
    for (const PGMDEV_FLASH_CANDIDATE& each : candidates.candidates()) {
        indexes.push_back(each.index);
    }
    return indexes;
}

std::vector<STANDING> standings_of(const PGMDEV_FLASH_CANDIDATES& candidates) {
    std::vector<STANDING> standings;
    for (const PGMDEV_FLASH_CANDIDATE& each : candidates.candidates()) {
        standings.push_back(each.standing);
    }
    return standings;
}

/// By a walk over all records, and by an index: the same.
PGMDEV_FLASH_CANDIDATES candidates_of(const ROWS& records, const RESPONSE& response, bool silicon_id = false) {
    const auto count = static_cast<DWORD>(records.size());
    const auto given = static_cast<DWORD>(response.size());
    PGMDEV_FLASH_CANDIDATES walked(records.data(), count, silicon_id, response.data(), given);
    const PGMDEV_FLASH_INDEX index(records.data(), count);
    const PGMDEV_FLASH_CANDIDATES found(index, records.data(), count, silicon_id, response.data(), given);
    EXPECT_EQ(found.taken(), walked.taken());
    EXPECT_EQ(indexes_of(found), indexes_of(walked));
    EXPECT_EQ(standings_of(found), standings_of(walked));
    EXPECT_EQ(found.missing_bytes(), walked.missing_bytes());
    EXPECT_EQ(found.nearest(), walked.nearest());
    EXPECT_EQ(found.is_sure(), walked.is_sure());
    EXPECT_EQ(found.oddity().text, walked.oddity().text);
    return walked;
}

/// How a record is read, told again: what it compares, byte by byte.
bool admits(const RECORD& record, bool silicon_id, const RESPONSE& response) {
    const auto agrees = [&response](BYTE position, BYTE value) {
        return position >= response.size() || response[position] == value;
    };
    if (record.silicon_id != silicon_id || !agrees(record.memory_id_index, record.memory_id)) {
        return false;
    }
    return silicon_id ||
           (agrees(record.mfc_id_index, record.mfc_id) &&
            (record.memory_type_index == ANY_TYPE || agrees(record.memory_type_index, record.memory_type)));
}

/// Small numbers, so that rows and responses often meet.
class RANDOM {
public:
    explicit RANDOM(unsigned seed) : m_engine(seed) {}
    BYTE below(unsigned limit) {
        return static_cast<BYTE>(std::uniform_int_distribution<unsigned>(0, limit - 1)(m_engine));
    }

    RECORD record(unsigned number) {
        RECORD record = flash_reference::sample("CHIP" + std::to_string(number));
        record.silicon_id = below(5) == 0;
        record.memory_id = below(4);
        record.memory_id_index = below(7);
        record.memory_type = below(4);
        record.memory_type_index = below(4) == 0 ? ANY_TYPE : below(7);
        record.mfc_id = below(4);
        record.mfc_id_index = below(7);
        return record;
    }

    RESPONSE response() {
        RESPONSE bytes(below(9) + std::size_t{1});
        for (BYTE& byte : bytes) {
            byte = below(4);
        }
        return bytes;
    }

private:
    std::mt19937 m_engine;
};

}  // namespace

TEST(FlashCandidates, AreThoseOfTheReferenceForRandomTables) {
    RANDOM random(7);
    for (int table = 0; table < 150; ++table) {
        ROWS records;
        for (unsigned i = 0; i < 40; ++i) {
            records.push_back(random.record(i));
        }
        for (int i = 0; i < 40; ++i) {
            const RESPONSE response = random.response();
            const bool silicon_id = i % 5 == 0;
            const PGMDEV_FLASH_CANDIDATES found = candidates_of(records, response, silicon_id);
            const RESPONSE telling(response.begin(), response.begin() + found.telling_count());
            std::vector<DWORD> expected;
            DWORD taken = INVALID_DWORD;
            RESPONSE padded = response;
            padded.resize(256);
            for (DWORD index = 0; index < records.size(); ++index) {
                if (admits(records[index], silicon_id, telling)) {
                    expected.push_back(index);
                }
                if (taken == INVALID_DWORD && admits(records[index], silicon_id, padded)) {
                    taken = index;
                }
            }
            ASSERT_EQ(indexes_of(found), expected);
            ASSERT_EQ(found.taken(), taken);
        }
    }
}

TEST(FlashCandidates, AreTakenAsTheManagerTakesThem) {
    RANDOM random(11);
    for (int table = 0; table < 40; ++table) {
        ROWS records;
        for (unsigned i = 0; i < 25; ++i) {
            records.push_back(random.record(i));
        }
        const SCRATCH scratch;
        scratch.write("programmer/pgm_flash.pcf", flash_reference::file(flash_reference::payload(records)));
        const DEVICE_DB_DIRECTORY directory(scratch.directory().string());
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        for (int i = 0; i < 60; ++i) {
            RESPONSE response = random.response();
            const PGMDEV_FLASH_CANDIDATES found(manager.get_flash_database(), manager.get_flash_count(), false,
                                                response.data(), static_cast<DWORD>(response.size()));
            response.resize(256);
            manager.flash_id_database_mapping(false, 0, response.data());
            ASSERT_EQ(found.taken(), manager.get_flash_mapping_index(0, true));
        }
    }
}

TEST(FlashCandidates, TellWhichByteIsMissing) {
    const ROWS records{special_row("NEW", 0xBB, 0x21, 0x44, 4), row_of("OLD", {0x20, 0xBB, 0x21})};
    const PGMDEV_FLASH_CANDIDATES three = candidates_of(records, {0x20, 0xBB, 0x21});
    EXPECT_EQ(three.taken(), 1U);
    EXPECT_FALSE(three.is_sure());
    EXPECT_EQ(three.missing_bytes(), std::vector<BYTE>{4});
    EXPECT_EQ(standings_of(three), (std::vector{STANDING::OPEN, STANDING::TAKEN}));
    EXPECT_EQ(three.candidates()[0].compared,
              (std::vector<PGMDEV_FLASH_COMPARED_BYTE>{{1, 0xBB, true}, {2, 0x21, true}, {4, 0x44, false}}));

    const PGMDEV_FLASH_CANDIDATES four = candidates_of(records, {0x20, 0xBB, 0x21, 0x10});
    EXPECT_EQ(four.missing_bytes(), std::vector<BYTE>{4});
    EXPECT_EQ(four.candidates()[0].compared.back(), (PGMDEV_FLASH_COMPARED_BYTE{4, 0x44, false}));

    const PGMDEV_FLASH_CANDIDATES six = candidates_of(records, {0x20, 0xBB, 0x21, 0x10, 0x44, 0x00});
    EXPECT_EQ(six.taken(), 0U);
    EXPECT_TRUE(six.is_sure());
    EXPECT_EQ(six.missing_bytes(), std::vector<BYTE>{});
    EXPECT_EQ(standings_of(six), (std::vector{STANDING::TAKEN, STANDING::PASSED_OVER}));

    const PGMDEV_FLASH_CANDIDATES other = candidates_of(records, {0x20, 0xBB, 0x21, 0x10, 0x00, 0x00});
    EXPECT_EQ(other.taken(), 1U);
    EXPECT_TRUE(other.is_sure());
    EXPECT_EQ(indexes_of(other), std::vector<DWORD>{1});
}

TEST(FlashCandidates, WhatIsTakenForAByteThatWasNotGivenPassesNothingOver) {
    RECORD zero = special_row("ZERO", 0x4D, 0x19, 0x00, 4);
    zero.memory_type_index = 3;
    const ROWS records{zero, row_of("USUAL", {0x01, 0x02, 0x19})};
    const PGMDEV_FLASH_CANDIDATES four = candidates_of(records, {0x01, 0x02, 0x19, 0x4D});
    EXPECT_EQ(four.taken(), 0U);
    EXPECT_EQ(standings_of(four), (std::vector{STANDING::TAKEN, STANDING::ALIKE}));
    EXPECT_EQ(standings_of(candidates_of(records, {0x01, 0x02, 0x19, 0x4D, 0x00})),
              (std::vector{STANDING::TAKEN, STANDING::PASSED_OVER}));
}

TEST(FlashCandidates, BytesThatOnlyRepeatOrFillTellNothing) {
    const ROWS records{special_row("NEW", 0xBB, 0x21, 0x44, 4), row_of("OLD", {0x20, 0xBB, 0x21})};
    for (const RESPONSE& response :
         {RESPONSE{0x20, 0xBB, 0x21, 0x20, 0xBB, 0x21}, RESPONSE{0x20, 0xBB, 0x21, 0x20, 0xBB},
          RESPONSE{0x20, 0xBB, 0x21, 0xFF, 0xFF}, RESPONSE{0x20, 0xBB, 0x21, 0x00, 0x00, 0x00}}) {
        const PGMDEV_FLASH_CANDIDATES found = candidates_of(records, response);
        EXPECT_EQ(found.telling_count(), 3U);
        EXPECT_FALSE(found.is_sure());
        EXPECT_FALSE(found.oddity().is_fault());
    }
    EXPECT_EQ(candidates_of(records, {0x20, 0xBB, 0x21, 0x20, 0xBB}).oddity().kind, ODDITY::REPEATED);
    EXPECT_EQ(candidates_of(records, {0x20, 0xBB, 0x21, 0xFF, 0xFF}).oddity().kind, ODDITY::NONE);
}

TEST(FlashCandidates, OfTheSameBytesAreAlike) {
    RECORD again = row_of("FIRST", {0xC2, 0x20, 0x18});
    again.default_dev = false;
    const ROWS same{row_of("FIRST", {0xC2, 0x20, 0x18}), again};
    EXPECT_TRUE(candidates_of(same, {0xC2, 0x20, 0x18}).is_sure()) << "one device, in two rows";
    const ROWS others{row_of("FIRST", {0xC2, 0x20, 0x18}), row_of("SECOND", {0xC2, 0x20, 0x18})};
    const PGMDEV_FLASH_CANDIDATES found = candidates_of(others, {0xC2, 0x20, 0x18});
    EXPECT_FALSE(found.is_sure());
    EXPECT_EQ(standings_of(found), (std::vector{STANDING::TAKEN, STANDING::ALIKE}));
    EXPECT_EQ(found.missing_bytes(), std::vector<BYTE>{});
}

TEST(FlashCandidates, OfASignatureAreNeverSure) {
    RECORD record = row_of("OLD", {0, 0, 0x13});
    record.silicon_id = true;
    record.memory_id_index = 0;
    const PGMDEV_FLASH_CANDIDATES found = candidates_of({record}, {0x13}, true);
    EXPECT_EQ(found.taken(), 0U);
    EXPECT_FALSE(found.is_sure());
}

TEST(FlashCandidates, NearestAreOfTheMakerAndTypeThenOfTheCapacity) {
    const ROWS records{row_of("OTHER", {0xC2, 0x40, 0x18}), row_of("FAR", {0xEF, 0x40, 0x14}),
                       row_of("NEXT", {0xEF, 0x40, 0x17}), row_of("TYPE", {0xEF, 0x60, 0x18}),
                       row_of("NEITHER", {0xEF, 0x60, 0x12})};
    EXPECT_EQ(candidates_of(records, {0xEF, 0x40, 0x18}).nearest(), (std::vector<DWORD>{2, 1, 3}));
    EXPECT_EQ(candidates_of(records, {0xEF, 0x40, 0x17}).nearest(), std::vector<DWORD>{}) << "it is taken";
    EXPECT_EQ(candidates_of(records, {0x9D, 0x40, 0x18}).nearest(), std::vector<DWORD>{});
    EXPECT_EQ(candidates_of(records, {0xEF}).nearest(), std::vector<DWORD>{}) << "too short";
}

TEST(FlashCandidates, OddResponsesAreToldByWhatWasProbablySent) {
    const ROWS records{row_of("CHIP", {0xEF, 0x40, 0x18}), row_of("OTHER", {0xC8, 0x40, 0x18}),
                       row_of("LIKE_A_MAKER", {0xC8, 0x41, 0xEF})};
    const struct {
        RESPONSE response;
        ODDITY kind;
        DWORD index;
    } cases[]{
        {{0x00, 0x00, 0x00}, ODDITY::IDLE, INVALID_DWORD},
        {{0xFF, 0xFF}, ODDITY::IDLE, INVALID_DWORD},
        {{0x00}, ODDITY::IDLE, INVALID_DWORD},
        {{0xEF, 0xEF, 0xEF}, ODDITY::STUCK, INVALID_DWORD},
        {{0x7F, 0x7F, 0x7F}, ODDITY::CONTINUATION, INVALID_DWORD},
        {{0x7F, 0x7F, 0xEF, 0x40, 0x18}, ODDITY::CONTINUATION, 0},
        {{0x7F, 0x9D, 0x21}, ODDITY::CONTINUATION, INVALID_DWORD},
        {{0xEF, 0xEF, 0x40, 0x18}, ODDITY::LATE, 0},
        {{0x9F, 0xEF, 0x40, 0x18}, ODDITY::LATE, 0},
        {{0xFF, 0xFF, 0xC8, 0x40, 0x18, 0xC8}, ODDITY::LATE, 1},
        {{1, 2, 3, 4, 5, 6, 7, 8, 0xC8, 0x40, 0x18}, ODDITY::LATE, 1},
        {{1, 2, 3, 4, 5, 6, 7, 8, 9, 0xC8, 0x40, 0x18}, ODDITY::NONE, INVALID_DWORD},
        {{0xFF, 0xC8, 0x40}, ODDITY::LATE, INVALID_DWORD},
        {{0x9F, 0xEF, 0x40}, ODDITY::LATE, INVALID_DWORD},
        {{0xEF, 0xEF, 0x40}, ODDITY::LATE, INVALID_DWORD},
        {{0x12, 0xEF, 0x40}, ODDITY::NONE, INVALID_DWORD},
        {{0xFF, 0xEF, 0x41}, ODDITY::NONE, INVALID_DWORD},
        {{0x40, 0x18, 0x00}, ODDITY::FIRST_BYTE_MISSING, 0},
        {{0x40, 0x18}, ODDITY::FIRST_BYTE_MISSING, 0},
        {{0x18, 0x40, 0xEF}, ODDITY::REVERSED, 0},
        {{0x00, 0x18, 0x40, 0xEF}, ODDITY::REVERSED, 0},
        {{0x12, 0x18, 0x40, 0xEF}, ODDITY::NONE, INVALID_DWORD},
        {{0xEF, 0x41, 0xC8}, ODDITY::NONE, INVALID_DWORD},
        {{0xDE, 0x80, 0x30}, ODDITY::SHIFTED, 0},
        {{0xDE, 0x80, 0x31}, ODDITY::SHIFTED, 0},
        {{0x77, 0xA0, 0x0C}, ODDITY::SHIFTED, 0},
        {{0xF7, 0xA0, 0x0C}, ODDITY::SHIFTED, 0},
        {{0xEF, 0x40, 0x19}, ODDITY::NONE, INVALID_DWORD},
        {{0x12, 0x34, 0x56}, ODDITY::NONE, INVALID_DWORD},
        {{0xEF, 0x40}, ODDITY::NONE, INVALID_DWORD},
        {{}, ODDITY::NONE, INVALID_DWORD},
    };
    for (const auto& each : cases) {
        const PGMDEV_FLASH_CANDIDATES found = candidates_of(records, each.response);
        EXPECT_EQ(found.oddity().kind, each.kind) << testing::PrintToString(each.response);
        EXPECT_EQ(found.oddity().index, each.index) << testing::PrintToString(each.response);
        EXPECT_EQ(found.oddity().text.empty(), each.kind == ODDITY::NONE);
    }
}

TEST(FlashCandidates, OddResponsesAreSaidInWords) {
    const ROWS records{row_of("CHIP", {0xEF, 0x40, 0x18}), row_of("OTHER", {0xC8, 0x40, 0x18})};
    const std::pair<RESPONSE, std::string> cases[]{
        {{0x00, 0x00},
         "all zeros: the data line is held low; look for a missing pull-up, a chip without supply or held in reset, or "
         "swapped lines"},
        {{0xFF, 0xFF},
         "all ones: nobody drives the data line; look at chip select, at the supply, and for a chip in deep power-down "
         "or in a mode of four lines"},
        {{0x7F, 0x7F}, "continuation codes (7F) only: the maker's number comes behind them; read more bytes"},
        {{0x7F, 0x9D, 0x21},
         "1 continuation code (7F): the maker's number 9D is one of bank 2 of the makers' list, and no record has "
         "that"},
        {{0x7F, 0x7F, 0xEF, 0x40, 0x18},
         "2 continuation codes (7F): the maker's number EF is one of bank 3 of the makers' list, and no record has "
         "that; "
         "without the codes it would be Maker CHIP"},
        {{0xEF, 0xEF},
         "the same byte again and again: each byte is a read of its own; keep chip select low and go on clocking"},
        {{0x9F, 0xEF, 0x40, 0x18},
         "the first byte, 9F, stands before the identification (the command's own byte, or a read begun too early): EF "
         "40 18 would be Maker CHIP"},
        {{0xFF, 0xFF, 0xC8, 0x40, 0x18},
         "the first 2 bytes, FF FF, stand before the identification (the command's own byte, or a read begun too "
         "early): "
         "C8 40 18 would be Maker OTHER"},
        {{0xFF, 0xC8, 0x40},
         "the first byte, FF, probably stands before the identification (the command's own byte, or a read begun too "
         "early): C8 40 begin those of Maker; read one byte more"},
        {{0x18, 0x40, 0xEF}, "the last byte stands first, as in a number: EF 40 18 would be Maker CHIP"},
        {{0x40, 0x18}, "no maker has the number 40: perhaps the first byte is missing, such as EF for Maker CHIP"},
        {{0xDE, 0x80, 0x31},
         "one clock too many before the first byte was read: shifted by one bit it is EF 40 18, Maker CHIP"},
        {{0xEF, 0x40, 0x18, 0xEF}, "the bytes from 3 on only repeat the first ones, and tell nothing"},
    };
    for (const auto& [response, text] : cases) {
        EXPECT_EQ(candidates_of(records, response).oddity().text, text);
    }
}

TEST(FlashCandidates, KnownContinuationCodesAreNothingOdd) {
    RECORD record = row_of("CODED", {0x9D, 0x7F, 0x46});
    record.memory_type_index = 0;
    record.mfc_id_index = 1;
    const PGMDEV_FLASH_CANDIDATES found = candidates_of({record}, {0x7F, 0x9D, 0x46});
    EXPECT_TRUE(found.is_sure());
    EXPECT_EQ(found.oddity().kind, ODDITY::NONE);
}

TEST(FlashCandidates, OfAnEmptyDatabaseAreNone) {
    const BYTE response[]{0xEF, 0x40, 0x18};
    const PGMDEV_FLASH_CANDIDATES found(nullptr, 0, false, response, 3);
    EXPECT_TRUE(found.candidates().empty());
    EXPECT_EQ(found.taken(), INVALID_DWORD);
    EXPECT_FALSE(found.is_sure());
}

TEST(FlashCandidates, NotesRuleOutWhatComparesTooLittle) {
    const SCRATCH scratch;
    scratch.write("db.pcf.identifications.csv", "device_name, identification\nNEW, 0102194D0?\n");
    const auto notes = PGMDEV_FLASH_NOTES::beside_database(scratch.path("db.pcf"));
    const ROWS records{special_row("NEW", 0x40, 0x19, 0x80, 5), row_of("CHIP", {0xC8, 0x40, 0x19})};
    const RESPONSE response{0xC8, 0x40, 0x19};
    const PGMDEV_FLASH_CANDIDATES without = candidates_of(records, response);
    EXPECT_FALSE(without.is_sure());
    const PGMDEV_FLASH_CANDIDATES with(records.data(), 2, false, response.data(), 3, &notes);
    EXPECT_EQ(standings_of(with), (std::vector{STANDING::RULED_OUT, STANDING::TAKEN}));
    EXPECT_TRUE(with.is_sure());
    EXPECT_EQ(with.missing_bytes(), std::vector<BYTE>{});
}
