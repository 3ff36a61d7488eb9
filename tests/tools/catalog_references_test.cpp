#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "faults.h"
#include "small_catalog.h"
#include "support/repeatable_random.h"

// Catalogs in which lines refer to others that are refused, and catalogs with more faults than anybody reads.

namespace {

TEST(CatalogReferences, APartThatIsRefusedIsNotFound) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "  parts 8 ROB3 F100 I7 discontinued\n",
                    "  parts 8 ROB3 F100 I7 discontinued\n"
                    "  parts 8 ROB4 F100 I7 discontinued\n"
                    "  alias ROB4-X ROB4F100I7\n");
    EXPECT_EQ(catalog.faults(),
              "devices.txt:10: part number 8 of \"ROB4F100I7\" is already given at devices.txt:9\n"
              "devices.txt:11: ordering name \"ROB4F100I7\" is not known\n");
    SMALL_CATALOG codes;
    codes.replace("devices.txt", "  parts 8 ROB3 F100 I7 discontinued\n",
                  "  parts 8 ROB3 F100 I7 discontinued\n"
                  "  parts 8 ROB4 F100 I7 discontinued\n");
    codes.replace("ordering-codes.txt", "9 ROB3F100I7\n", "9 ROB3F100I7\n10 ROB4F100I7\n");
    EXPECT_EQ(codes.faults(),
              "devices.txt:10: part number 8 of \"ROB4F100I7\" is already given at devices.txt:9\n"
              "ordering-codes.txt:4: ordering name \"ROB4F100I7\" is not known\n");
}

/// Numbers and words of the catalog's files in each other's places: every fault is told, and nothing is touched that is
/// not there, as the address sanitizer sees when it runs this.
TEST(CatalogReferences, RandomFaultyCatalogs) {
    const std::vector<std::string> words{
        "1",     "2",      "6",     "8",       "65000", "FIN1{,L}", "FIN1F100C6", "ROB3F100I7",
        "ROB1",  "F100",   "Q44",   "C6",      "C6,I7", "-",        "production", "discontinued",
        "alias", "device", "parts", "FINCH-1", "Finch"};
    auto random = repeatable_random(15);
    for (int round = 0; round < 600; ++round) {
        SMALL_CATALOG catalog;
        std::string devices;
        for (int line = 0; line < 12; ++line) {
            const std::vector<std::string> lines{
                "device 1 FINCH-1 Finch FIN_1",        "  parts 1 FIN1{,L} F100 C6,I7 production",
                "  parts 6 ROB1 (Q44) (C6) sample",    "  parts 8 ROB3 F100 I7 discontinued",
                "  parts 8 ROB4 F100 I7 discontinued", "  alias FIN1-X FIN1F100C6",
                "  alias ROB4-X ROB4F100I7",           "device 9 ROBIN-2 Robin -"};
            std::string text = line == 0 ? lines[0] : lines[random() % lines.size()];
            if (random() % 4 == 0) {
                const std::size_t at = text.rfind(' ') + 1;
                text.replace(at, std::string::npos, words[random() % words.size()]);
            }
            devices += text + "\n";
        }
        catalog.set("devices.txt", devices);
        catalog.set("ordering-codes.txt", "entries 20\n3 FIN1{,L}F100C6\n9 ROB3F100I7\n10 ROB4F100I7\n11 FIN1-X\n");
        const GENERATOR_RUN checked = catalog.check();
        ASSERT_TRUE(checked.result == 0 || checked.result == 1) << devices << checked.errors;
        EXPECT_EQ(checked.result == 0, checked.errors.empty());
        EXPECT_EQ(checked.errors.find("\"\""), std::string::npos) << checked.errors;
        for (std::size_t at = 0; (at = checked.errors.find("ordering code ", at)) != std::string::npos; ++at) {
            EXPECT_LT(std::stoul(checked.errors.substr(at + 14)), 20U) << checked.errors;
        }
    }
}

TEST(CatalogReferences, FaultsAreListedUpToALimit) {
    SMALL_CATALOG catalog;
    std::string lines;
    for (int i = 0; i < 12000; ++i) {
        lines += "x\n";
    }
    catalog.set("grades.txt", lines);
    const std::string told = catalog.faults();
    EXPECT_LE(std::count(told.begin(), told.end(), '\n'), 10001);
    EXPECT_NE(told.find(" further faults\n"), std::string::npos);
}

TEST(CatalogReferences, FaultsAreCountedBeyondTheLimit) {
    FAULTS faults;
    const SOURCE_PLACE place{std::string("file")};
    const auto last_line = [&] {
        faults.add(place, "fault");
        std::ostringstream told;
        faults.print(told);
        const std::string text = told.str();
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    };
    for (std::size_t i = 1; i < FAULTS::MOST_LINES; ++i) {
        faults.add(place, "fault");
    }
    EXPECT_EQ(last_line(), "file: fault\n");
    EXPECT_EQ(last_line(), "and 1 further fault\n");
    EXPECT_EQ(last_line(), "and 2 further faults\n");
}

TEST(CatalogReferences, WhatACellHoldsCommandsNoTerminal) {
    SMALL_CATALOG catalog;
    catalog.replace("families.txt", "2  Robin  NONE",
                    "2  Robin  NONE\n3 Wr\x1B[31m\xFF"
                    "en NONE");
    EXPECT_EQ(catalog.faults(),
              "families.txt:4: family \"Wr\\x1B[31m\\xFFen\" must consist of letters, digits and _ - . +\n");
}

TEST(CatalogReferences, ALineForMorePartsThanThereAre) {
    SMALL_CATALOG catalog;
    std::string codes = "F100";
    for (int i = 0; i < 300; ++i) {
        codes += ",F100";
    }
    catalog.replace("devices.txt", "  parts 8 ROB3 F100 I7",
                    "  parts 8 ROB3{0,1,2,3,4,5,6,7,8,9}{0,1,2,3,4,5,6,7,8,9} " + codes + " C6,I7,C6");
    EXPECT_NE(catalog.faults().find("devices.txt:9: stands for more parts than a line may have, 65000\n"),
              std::string::npos);
}

}  // namespace
