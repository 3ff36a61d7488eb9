#include "support/exports.h"

#include <gtest/gtest.h>

// The library exports classes named PGMDEV_ and nothing else.

namespace {

TEST(Exports, AreMembersOfPgmdevClassesOnly) {
    const std::vector<std::string> names = exported_names(TEST_LIBRARY);
    bool manager = false;
    for (const std::string& name : names) {
        EXPECT_TRUE(name.starts_with("PGMDEV_") && name.find("::") != std::string::npos) << name;
        manager = manager || name.starts_with("PGMDEV_FLASH_MANAGER::flash_id_database_mapping(");
    }
    EXPECT_TRUE(manager);
    EXPECT_GT(names.size(), 80U);
}

}  // namespace
