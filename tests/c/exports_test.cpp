#include "support/exports.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "c/owned.h"
#include "support/scratch.h"

// The C library exports the functions of its headers and nothing else.

namespace {

using NAMES_IN_C = std::set<std::string>;

NAMES_IN_C exported_functions() {
    NAMES_IN_C names;
    for (const EXPORT& each : exports_of(TEST_C_LIBRARY)) {
        names.insert(each.name);
    }
    return names;
}

NAMES_IN_C listed_functions() {
    std::ifstream list(TEST_EXPORT_LIST);
    NAMES_IN_C names;
    for (std::string line; std::getline(list, line);) {
        names.insert(line);
    }
    return names;
}

NAMES_IN_C declared_functions() {
    NAMES_IN_C names;
    const std::regex declaration(R"(PGMDEV_C_EXPORT [^;(]*?(pgmdev_\w+)\()");
    for (const auto& header : std::filesystem::directory_iterator(TEST_C_HEADERS)) {
        const std::string text = read_file(header.path());
        for (std::sregex_iterator found(text.begin(), text.end(), declaration); found != std::sregex_iterator();
             ++found) {
            names.insert((*found)[1]);
        }
    }
    return names;
}

}  // namespace

TEST(CExports, AreTheFunctionsOfTheHeaders) {
    EXPECT_EQ(exported_functions(), declared_functions());
}

TEST(CExports, AreThoseOfTheList) {
    EXPECT_EQ(exported_functions(), listed_functions())
        << "docs/releasing.md says when the list may change: " << TEST_EXPORT_LIST;
    EXPECT_GT(listed_functions().size(), 80U);
}

#if !defined(_WIN32)

TEST(CExports, HaveTheVersionOfTheSoname) {
    for (const EXPORT& each : exports_of(TEST_C_LIBRARY)) {
        EXPECT_EQ(each.version, "PGMDEV_C_" TEST_SOVERSION) << each.name;
    }
}

#endif
