#include "c/owned.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_user_flash.h"
#include "support/settings.h"

// Flash that users describe, through the C interface.

namespace {

/// A record of the database whose members are plausible for a description.
std::vector<pgmdev_value> plausible_values(const pgmdev_records* records, std::size_t record) {
    std::vector<pgmdev_value> values = values_of(records, record);
    const auto set = [&](const char* member, uint64_t number) {
        std::size_t index = 0;
        EXPECT_EQ(pgmdev_records_find_member(records, member, &index, nullptr), PGMDEV_STATUS_OK);
        values[index].number = number;
    };
    set("orvane_id", 32);
    return values;
}

class CUserFlash : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(pgmdev_flash_open(nullptr, m_flash.place(), nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_flash_find(m_flash, "W25Q64JV", &m_record, nullptr), PGMDEV_STATUS_OK);
        m_values = plausible_values(pgmdev_flash_records(m_flash), m_record);
    }

    C_FLASH m_flash;
    std::size_t m_record = 0;
    std::vector<pgmdev_value> m_values;
};

}  // namespace

TEST_F(CUserFlash, WhatIsEncodedIsThatOfTheClassAndIsTaken) {
    C_STRING encoded;
    ASSERT_EQ(pgmdev_user_flash_encode(m_values.data(), m_values.size(), encoded.place(), nullptr), PGMDEV_STATUS_OK);
    const PGMDEV_USER_FLASH expected = PGMDEV_USER_FLASH::from_encoded(bytes_of(encoded));
    EXPECT_EQ(expected.faults(), std::vector<std::string>());
    PGMDEV_FLASH_MANAGER shipped(false, 1, false, false);
    PGMDEV_SFL_FLASH_INFO record = *shipped.get_default_flash("W25Q64JV");
    record.orvane_id = 32;
    EXPECT_EQ(bytes_of(encoded), PGMDEV_USER_FLASH::encode(std::span(&record, 1)));
    C_ANSWER answer;
    ASSERT_EQ(pgmdev_user_flash_decode(pgmdev_string_data(encoded), answer.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(list_of(answer, "descriptions"), (ROWS{{expected.body(), expected.password(), "1", "1", "1", "1"}}));
    EXPECT_EQ(list_of(answer, "faults"), ROWS());
    EXPECT_EQ(list_of(answer, "records")[0][1], "W25Q64JV");

    const SETTING setting(PGMDEV_USER_FLASH::CONFIGURATION_KEY, bytes_of(encoded));
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_count(pgmdev_flash_records(flash)), manager.get_flash_count());
    EXPECT_EQ(row_of(pgmdev_flash_records(flash), 0), list_of(answer, "records")[0]);
}

TEST_F(CUserFlash, FaultsAreThoseOfTheClass) {
    for (const std::string text : {"", "nonsense", "AAAAAAAAAAAAAAAAAAAAAAAA"}) {
        C_ANSWER answer;
        ASSERT_EQ(pgmdev_user_flash_decode(text.c_str(), answer.place(), nullptr), PGMDEV_STATUS_OK);
        ROWS expected;
        const auto all = PGMDEV_USER_FLASH::all_from_encoded(text);
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (const std::string& fault : all[i].faults()) {
                expected.push_back({std::to_string(i), fault});
            }
        }
        EXPECT_EQ(list_of(answer, "faults"), expected);
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(list_of(answer, "descriptions")[0].back(), "0");
    }
}

TEST_F(CUserFlash, ImplausibleValuesAreNamed) {
    C_RECORDS implausible;
    ASSERT_EQ(pgmdev_user_flash_check(m_values.data(), m_values.size(), implausible.place(), nullptr),
              PGMDEV_STATUS_OK);
    EXPECT_EQ(rows_of(implausible), ROWS());
    std::size_t die_count = 0;
    pgmdev_records_find_member(pgmdev_flash_records(m_flash), "die_count", &die_count, nullptr);
    m_values[die_count].number = 0;
    ASSERT_EQ(pgmdev_user_flash_check(m_values.data(), m_values.size(), implausible.place(), nullptr),
              PGMDEV_STATUS_OK);
    const ROWS rows = rows_of(implausible);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][0], "die_count");
    EXPECT_EQ(rows[0][1], "0");
    std::vector<pgmdev_value> two = m_values;
    two.insert(two.end(), m_values.begin(), m_values.end());
    for (const std::size_t count : {std::size_t{0}, two.size()}) {  // the values are those of one flash
        EXPECT_EQ(pgmdev_user_flash_check(two.data(), count, implausible.place(), nullptr),
                  PGMDEV_STATUS_INVALID_ARGUMENT);
    }
}

TEST_F(CUserFlash, ValuesThatCannotBeThoseOfAFlashAreRefused) {
    C_STRING encoded;
    const auto status = [&](std::size_t count) {
        return pgmdev_user_flash_encode(m_values.data(), count, encoded.place(), nullptr);
    };
    EXPECT_EQ(status(0), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(status(m_values.size() - 1), PGMDEV_STATUS_INVALID_ARGUMENT);
    m_values[0].text = "a@b";  // which would tear the text apart
    EXPECT_EQ(status(m_values.size()), PGMDEV_STATUS_REFUSED);
    m_values[0].kind = PGMDEV_KIND_NUMBER;
    EXPECT_EQ(status(m_values.size()), PGMDEV_STATUS_INVALID_ARGUMENT);
    m_values[0].kind = PGMDEV_KIND_TEXT;
    m_values[0].text = nullptr;
    m_values[3].number = 256;  // of a byte
    EXPECT_EQ(status(m_values.size()), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(encoded, nullptr);
    std::vector<pgmdev_value> four;
    m_values = plausible_values(pgmdev_flash_records(m_flash), m_record);
    for (int i = 0; i < 4; ++i) {
        four.insert(four.end(), m_values.begin(), m_values.end());
    }
    EXPECT_EQ(pgmdev_user_flash_encode(four.data(), four.size(), encoded.place(), nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_user_flash_encode(four.data(), four.size() / 4 * 3, encoded.place(), nullptr), PGMDEV_STATUS_OK);
}
