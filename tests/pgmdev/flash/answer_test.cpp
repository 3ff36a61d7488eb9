#include "pgmdev_flash_answer.h"

#include <gtest/gtest.h>

#include "pgmdev/flash/fixture.h"
#include "support/scratch.h"

// The verdict on a response: from the candidates and from what is known besides.

namespace {

using RESPONSE = std::vector<BYTE>;

const RESPONSE CHIP_RESPONSE{0x20, 0xBA, 0x18};

/// A table with the one record CHIP, 20BA18, and notes that differ from test to test.
class FlashAnswer : public testing::Test {
protected:
    PGMDEV_FLASH_ANSWER answer(const RESPONSE& response, bool silicon_id = false) {
        const auto notes = PGMDEV_FLASH_NOTES::beside_database(m_scratch.path("db.pcf"));
        const PGMDEV_FLASH_INDEX index(&m_record, 1);
        return {index, {&m_record, 1}, silicon_id, response.data(), static_cast<DWORD>(response.size()), notes};
    }
    void ambiguity(const std::string& line) {
        m_scratch.write("db.pcf.ambiguities.csv", "response, chips, byte, told_apart_by, risk, harm\n" + line);
    }
    void identifications(const std::string& lines) {
        m_scratch.write("db.pcf.identifications.csv", "device_name, identification\n" + lines);
    }

    SCRATCH m_scratch;
    PGMDEV_SFL_FLASH_INFO m_record = flash_reference::sample("CHIP");
};

TEST_F(FlashAnswer, IsSureWhenNothingElseIsKnown) {
    const PGMDEV_FLASH_ANSWER found = answer(CHIP_RESPONSE);
    EXPECT_TRUE(found.is_known());
    EXPECT_TRUE(found.is_sure());
    EXPECT_FALSE(found.is_doubtful());
    EXPECT_TRUE(found.ambiguities.empty());
    EXPECT_TRUE(found.contradictions.empty());
}

TEST_F(FlashAnswer, OfAChipThatAnotherOneIsLikeIsNotSure) {
    ambiguity("20BA18, CHIP NEW, -, the marking, data, harm\n");
    const PGMDEV_FLASH_ANSWER found = answer(CHIP_RESPONSE);
    EXPECT_TRUE(found.candidates.is_sure());
    EXPECT_FALSE(found.is_sure());
    EXPECT_FALSE(found.is_doubtful());
    ASSERT_EQ(found.ambiguities.size(), 1U);
    EXPECT_EQ(found.ambiguities[0].told_apart_by, "the marking");
}

TEST_F(FlashAnswer, ThatTheChipDoesNotGiveIsDoubtful) {
    identifications("CHIP, 20BA1810\nNEW, 20BA1844\n");
    const PGMDEV_FLASH_ANSWER found = answer({0x20, 0xBA, 0x18, 0x44});
    EXPECT_TRUE(found.is_known());
    EXPECT_FALSE(found.is_sure());
    EXPECT_TRUE(found.is_doubtful());
    ASSERT_EQ(found.contradictions.size(), 1U);
    EXPECT_EQ(found.contradictions[0].position, 3U);
    EXPECT_EQ(found.contradictions[0].expected, "10");
    EXPECT_EQ(found.fitting, std::vector<std::string>{"NEW"});
}

TEST_F(FlashAnswer, ThatFitsHasNothingElseThatFits) {
    identifications("CHIP, 20BA1810\nNEW, 20BA1844\n");
    const PGMDEV_FLASH_ANSWER found = answer({0x20, 0xBA, 0x18, 0x10});
    EXPECT_TRUE(found.is_sure());
    EXPECT_TRUE(found.fitting.empty());
}

TEST_F(FlashAnswer, OfNoRecordIsNeitherKnownNorSure) {
    const PGMDEV_FLASH_ANSWER unknown = answer({0xEF, 0x40, 0x17});
    EXPECT_FALSE(unknown.is_known());
    EXPECT_FALSE(unknown.is_sure());
    EXPECT_FALSE(unknown.is_doubtful());
    const PGMDEV_FLASH_ANSWER idle = answer({0xFF, 0xFF, 0xFF});
    EXPECT_FALSE(idle.is_sure());
    EXPECT_TRUE(idle.is_doubtful());
}

TEST_F(FlashAnswer, OfASignatureTheNotesKnowNothing) {
    ambiguity("13, CHIP NEW, -, the marking, data, harm\n");
    m_record.silicon_id = true;
    m_record.memory_id = 0x13;
    m_record.memory_id_index = 0;
    m_record.memory_type_index = PGMDEV_SFL_FLASH_INFO::NONE;
    m_record.mfc_id_index = PGMDEV_SFL_FLASH_INFO::NONE;
    const PGMDEV_FLASH_ANSWER found = answer({0x13}, true);
    EXPECT_TRUE(found.is_known());
    EXPECT_FALSE(found.is_sure());  // it names no maker
    EXPECT_TRUE(found.ambiguities.empty());
}

TEST_F(FlashAnswer, OfCandidatesThatAreThereAlreadyKnowsMoreOnceTheNotesAreConsulted) {
    identifications("OTHER, 20BA1844\nCHIP, 20BA1810\n");
    const RESPONSE response{0x20, 0xBA, 0x18, 0x44};
    const auto notes = PGMDEV_FLASH_NOTES::beside_database(m_scratch.path("db.pcf"));
    PGMDEV_FLASH_ANSWER found({&m_record, 1, false, response.data(), static_cast<DWORD>(response.size()), &notes});
    EXPECT_TRUE(found.is_known());
    EXPECT_TRUE(found.is_sure());
    EXPECT_FALSE(found.is_doubtful());
    found.consult(notes, {&m_record, 1}, response.data());
    EXPECT_FALSE(found.is_sure());
    EXPECT_TRUE(found.is_doubtful());
    EXPECT_EQ(found.contradictions.size(), 1U);
    EXPECT_EQ(found.fitting, std::vector<std::string>{"OTHER"});
}

}  // namespace
