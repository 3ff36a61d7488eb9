#include <cstring>

#include "c/owned.h"

// Programs that were built with older or newer headers than the library.

namespace {

/// As a newer header may have it.
struct NEWER_MEMBER {
    pgmdev_member known;
    uint64_t added;
};

struct NEWER_FILTER {
    pgmdev_part_filter known;
    uint64_t added;
};

class CStructures : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(pgmdev_hps_kinds(m_kinds.place(), nullptr), PGMDEV_STATUS_OK); }

    C_RECORDS m_kinds;
};

}  // namespace

TEST_F(CStructures, OfAnOlderProgramTheBeginningIsFilled) {
    pgmdev_member member;
    std::memset(&member, 0x5A, sizeof member);
    const char* const untouched = member.unit;
    member.struct_size = offsetof(pgmdev_member, unit);
    ASSERT_EQ(pgmdev_records_member(m_kinds, 0, &member, nullptr), PGMDEV_STATUS_OK);
    EXPECT_STREQ(member.name, "id");
    EXPECT_EQ(member.base, 16U);
    EXPECT_EQ(member.unit, untouched);
    EXPECT_EQ(member.struct_size, offsetof(pgmdev_member, unit));
}

TEST_F(CStructures, OfANewerProgramWhatIsNotKnownBecomesZero) {
    NEWER_MEMBER member{};
    member.known.struct_size = sizeof member;
    member.added = 5;
    ASSERT_EQ(pgmdev_records_member(m_kinds, 0, &member.known, nullptr), PGMDEV_STATUS_OK);
    EXPECT_STREQ(member.known.unit, "");
    EXPECT_EQ(member.added, 0U);
    EXPECT_EQ(member.known.struct_size, sizeof member);
}

TEST_F(CStructures, SizesThatCannotBeAreRefused) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, sizeof(std::size_t), sizeof(pgmdev_member) - 1,
                                   std::size_t{4096} + alignof(pgmdev_member), SIZE_MAX - alignof(pgmdev_member) + 1}) {
        pgmdev_member member{};
        member.struct_size = size;
        EXPECT_EQ(pgmdev_records_member(m_kinds, 0, &member, nullptr), PGMDEV_STATUS_INVALID_ARGUMENT) << size;
        pgmdev_part_filter filter{};
        filter.struct_size = size;
        C_RECORDS parts;
        EXPECT_EQ(pgmdev_part_list(&filter, parts.place(), nullptr), PGMDEV_STATUS_INVALID_ARGUMENT) << size;
    }
}

TEST_F(CStructures, AnOlderProgramsQuestionIsAskedAsItIs) {
    NEWER_FILTER filter{};
    filter.known.family = "KESTREL";
    std::memset(reinterpret_cast<char*>(&filter) + offsetof(pgmdev_part_filter, device), 0x5A,
                sizeof filter - offsetof(pgmdev_part_filter, device));
    filter.known.struct_size = offsetof(pgmdev_part_filter, device);
    C_RECORDS of_older;
    ASSERT_EQ(pgmdev_part_list(&filter.known, of_older.place(), nullptr), PGMDEV_STATUS_OK);
    pgmdev_part_filter whole{};
    whole.struct_size = sizeof whole;
    whole.family = "KESTREL";
    C_RECORDS of_this;
    ASSERT_EQ(pgmdev_part_list(&whole, of_this.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_count(of_older), pgmdev_records_count(of_this));
    EXPECT_GT(pgmdev_records_count(of_this), 100U);
}

TEST_F(CStructures, ANewerProgramsQuestionIsRefusedOnlyWhereItIsNotUnderstood) {
    NEWER_FILTER filter{};
    filter.known.struct_size = sizeof filter;
    filter.known.family = "KESTREL";
    C_RECORDS parts;
    EXPECT_EQ(pgmdev_part_list(&filter.known, parts.place(), nullptr), PGMDEV_STATUS_OK);
    filter.added = 1;
    EXPECT_EQ(pgmdev_part_list(&filter.known, parts.place(), nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(parts, nullptr);
}

TEST_F(CStructures, TheInterfaceIsThatOfTheHeaders) {
    EXPECT_EQ(pgmdev_c_interface(), uint32_t{PGMDEV_C_INTERFACE});
}
