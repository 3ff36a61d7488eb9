#include <gtest/gtest.h>

#include "tools/small_catalog.h"

// `ddb_generator --check CATALOG --against OLD`.

namespace {

/// Both catalogs by their places: "new/" and "old/" are their directories.
std::string faults_of(const SMALL_CATALOG& catalog, const SMALL_CATALOG& old) {
    const std::string directory = catalog.directory();
    const std::string old_directory = old.directory();
    const GENERATOR_RUN result = run({"--check", directory, "--against", old_directory});
    EXPECT_EQ(result.result, result.errors.empty() ? 0 : 1);
    EXPECT_EQ(result.output.empty(), !result.errors.empty());
    return told_inside(old_directory, told_inside(directory, result.errors, "new"), "old");
}

}  // namespace

TEST(catalog_against, TheSameCatalogHasNoFault) {
    EXPECT_EQ(faults_of(SMALL_CATALOG(), SMALL_CATALOG()), "");
}

TEST(catalog_against, AdditionsAreFine) {
    SMALL_CATALOG catalog;
    catalog.replace("families.txt", "2  Robin  NONE\n", "2  Robin  NONE\n3  Wren  NONE\n");
    catalog.replace("devices.txt", "  parts 8 ROB3 F100 I7 discontinued\n",
                    "  parts 8 ROB3 F100 I7 discontinued\n  parts 9 ROB4 F100 I7 announced\n"
                    "device 10 WREN-1 Wren -\n  parts 10 WRE1 F100 I7 announced\n");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7\n", "9 ROB3F100I7\n10 WRE1F100I7\n");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()), "");
}

TEST(catalog_against, FindsANameThatHasAnotherPartNumber) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "parts 8 ROB3", "parts 18 ROB3");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/devices.txt:9: \"ROB3F100I7\" had the part number 8 at old/devices.txt:9, now it has 18\n");
}

TEST(catalog_against, FindsAPartNumberThatHasAnotherName) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "ROB3 F100", "ROB5 F100");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7\n", "");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/devices.txt:9: the part number 8 of \"ROB5F100I7\" stood for \"ROB3F100I7\" at old/devices.txt:9: "
              "give a new one\n");
}

TEST(catalog_against, FindsAFurtherNameThatHasAnotherPartNumber) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "alias FIN1-F100-C6 FIN1F100C6", "alias fin1-f100-c6 FIN1LF100I7");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/devices.txt:4: \"fin1-f100-c6\" had the part number 1 at old/devices.txt:4, now it has 4\n");
}

TEST(catalog_against, FindsANameOfAPartThatWasAFurtherOneOfAnother) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "  alias FIN1-F100-C6 FIN1F100C6\n", "  parts 9 FIN1-F100-C6 (Q44) (C6) sample\n");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/devices.txt:4: \"FIN1-F100-C6\" had the part number 1 at old/devices.txt:4, now it has 9\n");
}

TEST(catalog_against, FindsAFurtherNameThatTakesThePlaceOfTheName) {
    SMALL_CATALOG catalog;
    SMALL_CATALOG old;
    old.replace("devices.txt", "  alias FIN1-F100-C6 FIN1F100C6\n", "");
    old.replace("devices.txt", "  parts 8 ROB3 F100 I7 discontinued\n",
                "  parts 8 ROB3 F100 I7 discontinued\n  alias ROB5F100I7 ROB3F100I7\n");
    catalog.replace("devices.txt", "  alias FIN1-F100-C6 FIN1F100C6\n", "");
    catalog.replace("devices.txt", "ROB3 F100", "ROB5 F100");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7\n", "");
    EXPECT_EQ(faults_of(catalog, old),
              "new/devices.txt:8: the part number 8 of \"ROB5F100I7\" stood for \"ROB3F100I7\" at old/devices.txt:8: "
              "give a new one\n");
}

TEST(catalog_against, FurtherNamesThatComeAndGoAreFine) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "alias FIN1-F100-C6 FIN1F100C6", "alias FIN1-C6 FIN1F100C6");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()), "");
}

TEST(catalog_against, FindsRenumberedDevicesAndFamilies) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "device 9 ROBIN-2", "device 10 ROBIN-2");
    catalog.replace("families.txt", "2  Robin", "5  Robin");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/families.txt:3: \"Robin\" had the family number 2 at old/families.txt:3, now it has 5\n"
              "new/devices.txt:8: \"ROBIN-2\" had the device number 9 at old/devices.txt:8, now it has 10\n");
}

TEST(catalog_against, FindsRenumberedOrderingCodes) {
    SMALL_CATALOG catalog;
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7", "12 ROB3F100I7");
    EXPECT_EQ(
        faults_of(catalog, SMALL_CATALOG()),
        "new/ordering-codes.txt:3: \"ROB3F100I7\" had the ordering-code index 9 at old/ordering-codes.txt:3, now it "
        "has 12\n");
}

TEST(catalog_against, FindsAnOrderingCodeThatIsTakenAway) {
    SMALL_CATALOG catalog;
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7\n", "");
    EXPECT_EQ(faults_of(catalog, SMALL_CATALOG()),
              "new/devices.txt:9: \"ROB3F100I7\" had the ordering-code index 9 at old/ordering-codes.txt:3, now it has "
              "none\n");
}

TEST(catalog_against, FaultsOfEitherCatalogComeFirst) {
    SMALL_CATALOG old;
    old.replace("grades.txt", "I7  7  INDUSTRIAL\n", "");
    const std::string faults = faults_of(SMALL_CATALOG(), old);
    EXPECT_NE(faults.find("old/devices.txt:2: grade \"I7\" is not known"), std::string::npos) << faults;
}

TEST(catalog_against, WrongUsageIsRefused) {
    EXPECT_EQ(run({"--check", "a", "--agains", "b"}).result, 2);
    EXPECT_EQ(run({"--check", "a", "--against"}).result, 2);
}
