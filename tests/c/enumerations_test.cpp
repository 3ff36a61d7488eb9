#include "c/owned.h"
#include "pgmdev_mgr.h"

TEST(CEnumerations, AreThoseOfTheClass) {
    C_STRING name;
    for (uint32_t type = 0; type < PGMDEV_ENUMERATIONS; ++type) {
        C_RECORDS list;
        ASSERT_EQ(pgmdev_enum_list(type, list.place(), nullptr), PGMDEV_STATUS_OK);
        const auto class_type = static_cast<PGM_ENUM_TYPE>(type);
        const std::size_t count = pgmdev_records_count(list);
        EXPECT_GT(count, 5U);
        for (DWORD value = 0; value <= count + 1; ++value) {
            std::string expected;
            PGMDEV_MGR::pgm_check_type_enum_supported(class_type, value, &expected);
            ASSERT_EQ(said(pgmdev_enum_name(type, value, name.place(), nullptr), name), said(expected));
            if (value >= 1 && value <= count) {
                ASSERT_EQ(row_of(list, value - 1), (std::vector<std::string>{std::to_string(value), expected}));
                uint32_t found = 0;
                DWORD of_class = 0;
                ASSERT_EQ(pgmdev_enum_value(type, expected.c_str(), &found, nullptr), PGMDEV_STATUS_OK);
                PGMDEV_MGR::pgm_check_type_name_supported(class_type, expected, &of_class);
                ASSERT_EQ(found, of_class);
            }
        }
        uint32_t found = 1;
        EXPECT_EQ(pgmdev_enum_value(type, "no such name", &found, nullptr), PGMDEV_STATUS_NOT_FOUND);
        EXPECT_EQ(found, 0U);
    }
}
