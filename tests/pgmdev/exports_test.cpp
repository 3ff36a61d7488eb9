#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

// The library exports classes named PGMDEV_ and nothing else.

namespace {

/// The demangled names of the symbols that the library defines for others.
std::vector<std::string> exported_names() {
    const std::string command = std::string("nm --dynamic --defined-only --demangle '") + TEST_LIBRARY + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> listing(popen(command.c_str(), "r"), pclose);
    std::vector<std::string> names;
    std::array<char, 4096> line{};
    while (listing && std::fgets(line.data(), line.size(), listing.get()) != nullptr) {
        const std::string text(line.data());  // "0000000000012345 T name"
        names.push_back(text.substr(text.find(' ', text.find(' ') + 1) + 1));
        names.back().pop_back();
    }
    return names;
}

TEST(Exports, AreMembersOfPgmdevClassesOnly) {
    const std::vector<std::string> names = exported_names();
    bool manager = false;
    for (const std::string& name : names) {
        EXPECT_TRUE(name.starts_with("PGMDEV_") && name.find("::") != std::string::npos) << name;
        manager = manager || name.starts_with("PGMDEV_FLASH_MANAGER::flash_id_database_mapping(");
    }
    EXPECT_TRUE(manager);
    EXPECT_GT(names.size(), 80U);
}

}  // namespace
