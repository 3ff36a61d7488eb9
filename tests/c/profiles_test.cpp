#include <memory>

#include "c/owned.h"
#include "dstr.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "support/reports.h"

// Profiles through the C interface, against the records and look-ups of the class.

namespace {

std::vector<std::string> expected_row(const PGMDEV_DEVICE_INFO& record) {
    std::vector<std::string> row;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        bool nameable = false;
        const std::string cell = pgmdev_device_info_cell(member, record, nameable);
        const bool named = member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM;
        row.push_back(std::visit(
            [&](auto field) -> std::string {
                if constexpr (std::is_same_v<decltype(field), std::string PGMDEV_DEVICE_INFO::*>) {
                    return record.*field;
                } else {
                    const std::string number = std::to_string(static_cast<DWORD>(record.*field));
                    return named ? number + " " + (nameable ? cell : "") : number;
                }
            },
            member.field));
    }
    return row;
}

class CProfiles : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(pgmdev_profile_open(nullptr, m_profiles.place(), nullptr), PGMDEV_STATUS_OK); }

    /// The record that a copy is of.
    std::size_t index_of(const std::unique_ptr<PGMDEV_DEVICE_INFO>& record) {
        const PGMDEV_DEVICE_INFO* all = m_manager.get_device_database();
        for (std::size_t i = 0; record != nullptr && i < PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE; ++i) {
            if (all[i] == *record) {
                return i;
            }
        }
        return PGMDEV_NO_RECORD;
    }

    std::size_t found(pgmdev_profile_key key, int number) {
        std::size_t record = 0;
        const pgmdev_status status =
            pgmdev_profile_find_number(m_profiles, key, static_cast<uint32_t>(number), &record, nullptr);
        EXPECT_EQ(status, record == PGMDEV_NO_RECORD ? PGMDEV_STATUS_NOT_FOUND : PGMDEV_STATUS_OK);
        return record;
    }

    std::size_t found(pgmdev_profile_key key, const std::string& name) {
        std::size_t record = 0;
        pgmdev_profile_find(m_profiles, key, name.c_str(), &record, nullptr);
        return record;
    }

    PGMDEV_DEV_INFO_MANAGER m_manager;
    C_PROFILES m_profiles;
};

}  // namespace

TEST_F(CProfiles, RecordsAreThoseOfTheManager) {
    const pgmdev_records* records = pgmdev_profile_records(m_profiles);
    ASSERT_EQ(pgmdev_records_count(records), PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE + 0U);
    for (std::size_t i = 0; i < pgmdev_records_count(records); ++i) {
        ASSERT_EQ(row_of(records, i), expected_row(m_manager.get_device_database()[i])) << i;
    }
}

TEST_F(CProfiles, EverythingIsGovernedAsByTheManager) {
    using RECORD = std::unique_ptr<PGMDEV_DEVICE_INFO>;
    for (int family = 1; family < DEV_FAMILY_MAX; ++family) {
        const auto id = static_cast<DEV_FAMILY_ENUM>(family);
        const std::size_t expected = index_of(RECORD(m_manager.get_db_by_family(id)));
        ASSERT_EQ(found(PGMDEV_PROFILE_FAMILY, family), expected);
        ASSERT_EQ(found(PGMDEV_PROFILE_FAMILY, dstr_get_user_string(id)), expected);
    }
    for (int device = 1; device < DEV_DEVICE_MAX; ++device) {
        const auto id = static_cast<DEV_DEVICE_ENUM>(device);
        const std::size_t expected = index_of(RECORD(m_manager.get_db_by_device(id)));
        ASSERT_EQ(found(PGMDEV_PROFILE_DEVICE, device), expected);
        ASSERT_EQ(found(PGMDEV_PROFILE_DEVICE, dstr_get_user_string(id)), expected);
    }
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; part += 7) {
        const std::size_t expected = index_of(RECORD(m_manager.get_db_by_part(part)));
        ASSERT_EQ(found(PGMDEV_PROFILE_PART, part), expected);
        ASSERT_EQ(found(PGMDEV_PROFILE_PART, dstr_get_user_string(part)), expected);
    }
}

TEST_F(CProfiles, WhatDoesNotExistIsNotFound) {
    for (pgmdev_profile_key key = 0; key < PGMDEV_PROFILE_KEYS; ++key) {
        EXPECT_EQ(found(key, 0), PGMDEV_NO_RECORD);
        EXPECT_EQ(found(key, -1), PGMDEV_NO_RECORD);
        EXPECT_EQ(found(key, "no such name"), PGMDEV_NO_RECORD);
    }
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_profile_find(m_profiles, PGMDEV_PROFILE_KEYS, "KESTREL", &record, nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST_F(CProfiles, TheListOfWhatIsGovernedIsThatOfTheLookUps) {
    C_RECORDS families;
    ASSERT_EQ(pgmdev_profile_governed(m_profiles, PGMDEV_PROFILE_FAMILY, families.place(), nullptr), PGMDEV_STATUS_OK);
    ROWS expected;
    for (int family = 1; family < DEV_FAMILY_MAX; ++family) {
        const std::size_t record = found(PGMDEV_PROFILE_FAMILY, family);
        if (record != PGMDEV_NO_RECORD) {
            std::string name = dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family));
            stl_toupper(name);
            expected.push_back({std::to_string(family), name, std::to_string(record)});
        }
    }
    EXPECT_EQ(rows_of(families), expected);
    EXPECT_FALSE(expected.empty());
    C_RECORDS parts;
    ASSERT_EQ(pgmdev_profile_governed(m_profiles, PGMDEV_PROFILE_PART, parts.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_GT(pgmdev_records_count(parts), 1000U);
}

TEST_F(CProfiles, AFlashDatabaseIsNone) {
    const REPORTS reports;
    const std::string flash = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";
    C_PROFILES profiles;
    C_ERROR error;
    EXPECT_EQ(pgmdev_profile_open(flash.c_str(), profiles.place(), error.place()), PGMDEV_STATUS_REPORTED);
    EXPECT_EQ(profiles, nullptr);
    EXPECT_STREQ(pgmdev_error_message(error), "the file is no profile database");
}
