#include <gtest/gtest.h>

#include "small_catalog.h"

namespace {

class CatalogFaults : public testing::TestWithParam<TABLE_DAMAGE> {};

TEST_P(CatalogFaults, AreToldWithFileAndLine) {
    SMALL_CATALOG catalog;
    expect_told(catalog, GetParam());
}

std::string name_fault(const std::string& place, const std::string& name, const std::string& what) {
    return place + ": " + what + " \"" + name + "\" must consist of letters, digits and _ - . +\n";
}

const std::string LONG_NAME(64, 'A');

const std::vector<TABLE_DAMAGE> FAMILY_DAMAGES{
    {"MissingColumn", "families.txt", "Finch  FINCH_PCF", "Finch",
     "families.txt:2: expected 3 columns (NUMBER NAME PROGRAMMER-FAMILY), found 2\n"
     "devices.txt:1: family \"Finch\" is not known\n"
     "devices.txt:2: belongs to no device: a correct \"device\" line must come before it\n"
     "devices.txt:3: belongs to no device: a correct \"device\" line must come before it\n"
     "devices.txt:4: ordering name \"FIN1F100C6\" is not known\n"
     "ordering-codes.txt:2: ordering name \"FIN1F100C6\" is not known\n"
     "ordering-codes.txt:2: ordering name \"FIN1LF100C6\" is not known\n"},
    {"Number", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n72 Wren NONE",
     "families.txt:4: family number \"72\" is not a number from 1 to 71: for more, raise DEV_FAMILY_GENERIC and "
     "DEV_FAMILY_MAX in host/h/dstr.h\n"},
    {"NumberWithText", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n3x Wren NONE",
     "families.txt:4: family number \"3x\" is not a number from 1 to 71\n"},
    {"Order", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n1 Wren NONE",
     "families.txt:4: family number 1 comes after 2: keep the file sorted\n"},
    {"NumberTwice", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n2 Wren NONE",
     "families.txt:4: family number 2 comes after 2: keep the file sorted\n"},
    {"NameTwice", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n3 ROBIN NONE",
     "families.txt:4: family \"ROBIN\" is already given at families.txt:3\n"},
    {"ReservedName", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n3 Generic NONE",
     "families.txt:4: family \"Generic\" has a meaning of its own and cannot be used as a name\n"},
    {"ReservedProgrammerFamily", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n3 Wren any",
     "families.txt:4: programmer family \"any\" has a meaning of its own and cannot be used as a name\n"},
    {"Character", "families.txt", "2  Robin  NONE", "2  Robin  NONE\n3 Wr/en NONE",
     name_fault("families.txt:4", "Wr/en", "family")},
    {"LongName", "families.txt", "2  Robin  NONE",
     "2  Robin  NONE\n3 AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"
     "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA NONE",
     "families.txt:4: family \"" + LONG_NAME + "\" is longer than 63 characters\n"},
};

const std::vector<TABLE_DAMAGE> CODE_DAMAGES{
    {"PackageColumns", "packages.txt", "Q44   PQFP  44", "Q44   PQFP  44\nX1 BGA",
     "packages.txt:3: expected 3 columns (CODE TYPE PINS), found 2\n"},
    {"PackagePins", "packages.txt", "Q44   PQFP  44", "Q44   PQFP  44\nX1 BGA many",
     "packages.txt:3: number of pins \"many\" is not a number from 1 to 100000\n"},
    {"PackageTwice", "packages.txt", "Q44   PQFP  44", "Q44   PQFP  44\nq44 PQFP 44",
     "packages.txt:3: package \"q44\" is already given at packages.txt:2\n"},
    {"PackageType", "packages.txt", "Q44   PQFP  44", "Q44   PQFP  44\nX1 ANY 4",
     "packages.txt:3: package type \"ANY\" has a meaning of its own and cannot be used as a name\n"},
    {"GradeColumns", "grades.txt", "I7  7  INDUSTRIAL", "I7  7  INDUSTRIAL\nI8",
     "grades.txt:3: expected 3 columns (CODE SPEED TEMPERATURE), found 1\n"},
    {"GradeTwice", "grades.txt", "I7  7  INDUSTRIAL", "I7  7  INDUSTRIAL\nC6 6 INDUSTRIAL",
     "grades.txt:3: grade \"C6\" is already given at grades.txt:1\n"},
    {"GradeSpeed", "grades.txt", "I7  7  INDUSTRIAL", "I7  7  INDUSTRIAL\nI8 (8) INDUSTRIAL",
     name_fault("grades.txt:3", "(8)", "speed grade")},
    {"GradeTemperature", "grades.txt", "I7  7  INDUSTRIAL", "I7  7  INDUSTRIAL\nI8 8 any",
     "grades.txt:3: temperature grade \"any\" has a meaning of its own and cannot be used as a name\n"},
};

const std::vector<TABLE_DAMAGE> DEVICE_DAMAGES{
    {"Keyword", "devices.txt", "  alias", "  allias",
     "devices.txt:4: a line begins with \"device\", \"parts\" or \"alias\", not with \"allias\"\n"},
    {"Columns", "devices.txt", "device 9 ROBIN-2 Robin -\n", "device 8 ROBIN-3 Robin\ndevice 9 ROBIN-2 Robin -\n",
     "devices.txt:8: expected 5 columns (device NUMBER NAME FAMILY PROGRAMMER-PART), found 4\n"},
    {"Number", "devices.txt", "device 9 ROBIN-2 Robin -\n", "device 0 ROBIN-3 Robin -\ndevice 9 ROBIN-2 Robin -\n",
     "devices.txt:8: device number \"0\" is not a number from 1 to 989\n"},
    {"NumberTooHigh", "devices.txt", "device 9 ROBIN-2 Robin -\n",
     "device 990 ROBIN-3 Robin -\ndevice 9 ROBIN-2 Robin -\n",
     "devices.txt:8: device number \"990\" is not a number from 1 to 989: for more, raise DEV_DEVICE_GENERIC and "
     "DEV_DEVICE_MAX in host/h/dstr.h\n"},
    {"Order", "devices.txt", "device 9 ROBIN-2 Robin -", "device 1 ROBIN-2 Robin -",
     "devices.txt:8: device number 1 comes after 2: keep the file sorted\n"},
    {"NameTwice", "devices.txt", "device 9 ROBIN-2 Robin -\n", "device 8 Robin-1 Robin -\ndevice 9 ROBIN-2 Robin -\n",
     "devices.txt:8: device \"Robin-1\" is already given at devices.txt:5\n"},
    {"Family", "devices.txt", "device 9 ROBIN-2 Robin -\n", "device 8 EGRET Egret -\ndevice 9 ROBIN-2 Robin -\n",
     "devices.txt:8: family \"Egret\" is not known\n"},
    {"ProgrammerPart", "devices.txt", "device 9 ROBIN-2 Robin -\n",
     "device 8 ROBIN-3 Robin R,B\ndevice 9 ROBIN-2 Robin -\n", name_fault("devices.txt:8", "R,B", "programmer part")},
    {"PartsColumns", "devices.txt", "  parts 8", "  parts 9 ROB3 Q44 I7\n  parts 8",
     "devices.txt:9: expected 6 columns (parts FIRST-NUMBER NAMES PACKAGES GRADES STATUS), found 5\n"},
    {"PartNumber", "devices.txt", "  parts 8", "  parts 2000001 ROB3 Q44 I7 sample\n  parts 8",
     "devices.txt:9: part number \"2000001\" is not a number from 1 to 2000000\n"},
    {"PartNumberRunsOut", "devices.txt", "  parts 8", "  parts 2000000 ROB3 Q44 C6,I7 sample\n  parts 8",
     "devices.txt:9: part number 2000001 is above the highest possible, 2000000\n"},
    {"PartNumberTwice", "devices.txt", "  parts 8", "  parts 7 ROB3 Q44 C6 sample\n  parts 8",
     "devices.txt:9: part number 7 of \"ROB3Q44C6\" is already given at devices.txt:7\n"},
    {"OrderingNameTwice", "devices.txt", "  parts 8", "  parts 9 fin1 F100 C6 sample\n  parts 8",
     "devices.txt:9: ordering name \"fin1F100C6\" is already given at devices.txt:2\n"},
    {"Package", "devices.txt", "  parts 8", "  parts 9 ROB4 F101 I7 sample\n  parts 8",
     "devices.txt:9: package \"F101\" is not known\n"},
    {"EmptyPackage", "devices.txt", "  parts 8", "  parts 9 ROB4 F100, I7 sample\n  parts 8",
     "devices.txt:9: package \"\" is not known\n"},
    {"Grade", "devices.txt", "  parts 8", "  parts 9 ROB4 F100 C6,(C9) sample\n  parts 8",
     "devices.txt:9: grade \"C9\" is not known\n"},
    {"Status", "devices.txt", "sample,hidden", "sample,hiden",
     "devices.txt:6: status \"sample,hiden\" is not production, sample, announced or discontinued, followed by "
     "\",hidden\" or nothing\n"},
    {"OpenBrace", "devices.txt", "  parts 8", "  parts 9 ROB{4,5 F100 I7 sample\n  parts 8",
     "devices.txt:9: pattern \"ROB{4,5\" has a brace without its partner, or braces within braces\n"},
    {"CloseBrace", "devices.txt", "  parts 8", "  parts 9 ROB4} F100 I7 sample\n  parts 8",
     "devices.txt:9: pattern \"ROB4}\" has a brace without its partner, or braces within braces\n"},
    {"NestedBraces", "devices.txt", "  parts 8", "  parts 9 ROB{4,{5,6}} F100 I7 sample\n  parts 8",
     "devices.txt:9: pattern \"ROB{4,{5,6}}\" has a brace without its partner, or braces within braces\n"},
    {"ManyNames", "devices.txt", "  parts 8",
     "  parts 9 R{0,1,2,3,4,5,6,7,8,9}{0,1,2,3,4,5,6,7,8,9}{0,1,2,3,4,5,6,7,8,9}{0,1} F100 I7 sample\n  parts 8",
     "devices.txt:9: pattern \"R{0,1,2,3,4,5,6,7,8,9}{0,1,2,3,4,5,6,7,8,9}{0,1,2,3,4,5,6,7,8,9}{0,1}\" stands for more "
     "than 1000 names\n"},
    {"OrderingName", "devices.txt", "  parts 8", "  parts 9 ROB*4 F100 I7 sample\n  parts 8",
     name_fault("devices.txt:9", "ROB*4F100I7", "ordering name")},
    {"ProgrammingName", "devices.txt", "  parts 8", "  parts 9 {} F100 I7 sample\n  parts 8",
     name_fault("devices.txt:9", "", "programming name")},
    {"PartsWithoutDevice", "devices.txt", "device 1 FINCH", "parts 9 ROB4 F100 I7 sample\ndevice 1 FINCH",
     "devices.txt:1: belongs to no device: a correct \"device\" line must come before it\n"},
    {"AliasColumns", "devices.txt", "alias FIN1-F100-C6 FIN1F100C6", "alias FIN1-F100-C6",
     "devices.txt:4: expected 3 columns (alias NAME PART), found 2\n"},
    {"AliasName", "devices.txt", "alias FIN1-F100-C6", "alias FIN1=", name_fault("devices.txt:4", "FIN1=", "alias")},
    {"AliasPart", "devices.txt", "FIN1-F100-C6 FIN1F100C6", "FIN1-F100-C6 FIN1F100C8",
     "devices.txt:4: ordering name \"FIN1F100C8\" is not known\n"},
    {"AliasTwice", "devices.txt", "FIN1-F100-C6 FIN1F100C6", "fin1f100i7 FIN1F100C6",
     "devices.txt:4: ordering name \"fin1f100i7\" is already given at devices.txt:2\n"},
    {"AliasWithoutNumber", "devices.txt", "FIN1-F100-C6 FIN1F100C6", "FIN1-Q44-C6 FIN1Q44C6",
     "devices.txt:4: \"FIN1Q44C6\" has no part number and so cannot have an alias\n"},
};

const std::vector<TABLE_DAMAGE> ORDERING_CODE_DAMAGES{
    {"NoEntries", "ordering-codes.txt", "entries 20\n", "",
     "ordering-codes.txt:1: expected \"entries\" and the length of the list before the first code\n"},
    {"EntriesColumns", "ordering-codes.txt", "entries 20", "entries",
     "ordering-codes.txt:1: expected 2 columns (entries COUNT), found 1\n"},
    {"EntriesNumber", "ordering-codes.txt", "entries 20", "entries 0",
     "ordering-codes.txt:1: length of the list \"0\" is not a number from 1 to 16777216\n"},
    {"Empty", "ordering-codes.txt", "entries 20\n3 FIN1{,L}F100C6\n9 ROB3F100I7\n", "# nothing\n",
     "ordering-codes.txt: has no line \"entries COUNT\"\n"},
    {"Columns", "ordering-codes.txt", "9 ROB3F100I7", "9",
     "ordering-codes.txt:3: expected 2 columns (INDEX NAMES), "
     "found 1\n"},
    {"ColumnsOfSeveralLines", "ordering-codes.txt", "3 FIN1{,L}F100C6\n9 ROB3F100I7",
     "3\n4 FIN1F100C6 FIN1LF100C6\n9 ROB4F100I7",
     "ordering-codes.txt:2: expected 2 columns (INDEX NAMES), found 1\n"
     "ordering-codes.txt:3: expected 2 columns (INDEX NAMES), found 3\n"
     "ordering-codes.txt:4: ordering name \"ROB4F100I7\" is not known\n"},
    {"Index", "ordering-codes.txt", "9 ROB3F100I7", "20 ROB3F100I7",
     "ordering-codes.txt:3: ordering-code index \"20\" is not a number from 0 to 19: for more, raise \"entries\"\n"},
    {"IndexRunsOut", "ordering-codes.txt", "9 ROB3F100I7", "19 ROB{3F100I7,2C6}",
     "ordering-codes.txt:3: ordering-code index 20 of \"ROB2C6\" is beyond the list, which ends at 19: for more, raise "
     "\"entries\"\n"},
    {"Order", "ordering-codes.txt", "9 ROB3F100I7", "4 ROB3F100I7",
     "ordering-codes.txt:3: ordering-code index 4 comes after 4: keep the file sorted\n"},
    {"Name", "ordering-codes.txt", "9 ROB3F100I7", "9 ROB4F100I7",
     "ordering-codes.txt:3: ordering name \"ROB4F100I7\" is not known\n"},
    {"Pattern", "ordering-codes.txt", "9 ROB3F100I7", "9 ROB3F100I7}",
     "ordering-codes.txt:3: pattern \"ROB3F100I7}\" has a brace without its partner, or braces within braces\n"},
    {"Twice", "ordering-codes.txt", "9 ROB3F100I7", "9 FIN1F100C6",
     "ordering-codes.txt:3: \"FIN1F100C6\" already has the ordering code 3\n"},
    {"Alias", "ordering-codes.txt", "9 ROB3F100I7", "9 FIN1-F100-C6",
     "ordering-codes.txt:3: \"FIN1-F100-C6\" is an alias of \"FIN1F100C6\": name the part itself\n"},
    {"WithoutNumber", "ordering-codes.txt", "9 ROB3F100I7", "9 FIN1Q44C6",
     "ordering-codes.txt:3: \"FIN1Q44C6\" has no part number and so cannot have an ordering code\n"},
};

const std::vector<TABLE_DAMAGE> GRAMMAR_DAMAGES{
    {"PackageNameOfTwoProgrammingNames", "devices.txt", "  parts 7 ROB2 (Q44) C6 announced",
     "  parts 7 ROB1Q44 (Q44) C6 announced\n  parts 9 ROB1 Q44 I7 sample",
     "devices.txt:8: package name \"ROB1Q44\" belongs to programming name \"ROB1\" here, but to \"ROB1Q44\" at "
     "devices.txt:7\n"},
    {"ProgrammingNameOfTwoParts", "devices.txt", "device 9 ROBIN-2 Robin -",
     "device 8 ROBIN-3 Robin ROB_3\n  parts 9 ROB1 F100 I7 sample\ndevice 9 ROBIN-2 Robin -",
     "devices.txt:9: programming name \"ROB1\" belongs to programmer part \"ROB_3\" here, but to \"ROB\" at "
     "devices.txt:6\n"},
    {"ProgrammerPartOfTwoFamilies", "devices.txt", "device 9 ROBIN-2 Robin -",
     "device 8 ROBIN-3 Robin FIN_1\n  parts 9 ROB4 F100 I7 sample\ndevice 9 ROBIN-2 Robin -",
     "devices.txt:8: programmer part \"FIN_1\" belongs to family \"ROBIN\" here, but to \"FINCH\" at devices.txt:1\n"},
    {"EmptyTable", "families.txt", "FINCH_PCF", "NONE",
     ".: no programmer family has a family: table 6 would be empty, "
     "which its format cannot say\n"},
};

TEST(CatalogFaultsTogether, ProgrammerFamilyWithoutProgrammingNames) {
    SMALL_CATALOG catalog;
    catalog.replace("families.txt", "2  Robin  NONE", "2  Robin  NONE\n3 Wren WREN_PCF");
    catalog.replace("devices.txt", "device 9", "device 8 WREN-1 Wren WRE\ndevice 9");
    EXPECT_EQ(catalog.faults(),
              "families.txt:4: programmer family \"WREN_PCF\" has devices but no programming names\n");
}

TEST(CatalogFaultsTogether, AreAllTold) {
    SMALL_CATALOG catalog;
    catalog.replace("packages.txt", "44\n", "44\nX1 BGA\n");
    catalog.replace("devices.txt", "sample,hidden", "samples");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7", "9 ROB4");
    EXPECT_EQ(catalog.faults(),
              "packages.txt:3: expected 3 columns (CODE TYPE PINS), found 2\n"
              "devices.txt:6: status \"samples\" is not production, sample, announced or discontinued, followed by "
              "\",hidden\" or nothing\n"
              "ordering-codes.txt:3: ordering name \"ROB4\" is not known\n");
}

TEST(CatalogFaultsTogether, AByteOrderMarkIsNone) {
    SMALL_CATALOG catalog;
    catalog.replace("families.txt", "# families", "\xEF\xBB\xBF# families");
    catalog.replace("grades.txt", "C6",
                    "\xEF\xBB\xBF"
                    "C6");
    EXPECT_EQ(catalog.faults(), "");
}

TEST(CatalogFaultsTogether, FormsInWhichOtherProgramsSaveTexts) {
    const auto fault = [](const std::string& text) {
        SMALL_CATALOG catalog;
        catalog.set("grades.txt", text);
        const std::string faults = catalog.faults();
        return faults.substr(0, faults.find('\n'));
    };
    EXPECT_EQ(fault(std::string("\xFF\xFE"
                                "C\0006\0 \0",
                                8)),
              "grades.txt: is UTF-16: save it as UTF-8");
    EXPECT_EQ(fault("\xFE\xFF"), "grades.txt: is UTF-16: save it as UTF-8");
    EXPECT_EQ(fault("# grades\rC6 6 COMMERCIAL\r"),
              "grades.txt: has lines that end at carriage returns alone: save it with line feeds");
}

TEST(CatalogFaultsTogether, MissingFile) {
    SMALL_CATALOG catalog;
    catalog.remove("grades.txt");
    EXPECT_EQ(catalog.faults().substr(0, 26), "grades.txt: cannot be read");
}

TEST(CatalogFaultsTogether, TooManyCodes) {
    SMALL_CATALOG catalog;
    std::string packages;
    std::string grades;
    for (int i = 0; i < 256; ++i) {
        packages += (i == 0 ? "F100" : i == 1 ? "Q44" : "P" + std::to_string(i)) + " BGA 4\n";
        grades += (i == 0 ? "C6" : i == 1 ? "I7" : "G" + std::to_string(i)) + " 4 COMMERCIAL\n";
    }
    catalog.set("packages.txt", packages);
    catalog.set("grades.txt", grades);
    EXPECT_EQ(catalog.faults(), "packages.txt: has more than 255 packages\ngrades.txt: has more than 255 grades\n");
}

TEST(CatalogFaultsTogether, NamesThatAreTooLong) {
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "ROB3 F100", "R{A}" + LONG_NAME + " F100");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7", "9 " + std::string(252, 'A'));
    EXPECT_EQ(catalog.faults(), "devices.txt:9: ordering name \"RA" + LONG_NAME +
                                    "F100I7\" is longer than 63 characters\n"
                                    "ordering-codes.txt:3: ordering name \"" +
                                    std::string(252, 'A') + "\" is not known\n");
}

TEST(CatalogFaultsTogether, NamesThatAreMuchTooLongAreNotMade) {
    const auto times = [](int count, const std::string& text) {
        std::string result;
        for (int i = 0; i < count; ++i) {
            result += text;
        }
        return result;
    };
    // Each would be half a million characters long, and made of longer and longer ones.
    const std::string pattern = "ROB3" + times(9, "{4,5}") + times(500000, "{6}");
    const std::string text(253, 'A');
    SMALL_CATALOG catalog;
    catalog.replace("devices.txt", "ROB3 F100", pattern + " F100");
    catalog.replace("ordering-codes.txt", "9 ROB3F100I7", "9 {B,C}{}\n11 " + text);
    EXPECT_EQ(catalog.faults(), "devices.txt:9: pattern \"" + pattern +
                                    "\" stands for a name of more than 252 characters\n"
                                    "ordering-codes.txt:3: ordering name \"B\" is not known\n"
                                    "ordering-codes.txt:3: ordering name \"C\" is not known\n"
                                    "ordering-codes.txt:4: pattern \"" +
                                    text + "\" stands for a name of more than 252 characters\n");
}

TEST(CatalogFaultsTogether, PackageNameThatHasAMeaningOfItsOwn) {
    SMALL_CATALOG catalog;
    catalog.replace("packages.txt", "Q44", "E BGA 4\nQ44");
    catalog.replace("devices.txt", "  parts 8", "  parts 9 Non E I7 sample\n  parts 8");
    EXPECT_EQ(catalog.faults(),
              "devices.txt:9: package name \"NonE\" has a meaning of its own and cannot be used as a name\n");
}

TEST(CatalogFaultsTogether, TooManyAliases) {
    SMALL_CATALOG catalog;
    std::string aliases;
    for (int i = 1; i <= 501; ++i) {
        aliases += "alias A" + std::to_string(i) + " FIN1F100C6\n";
    }
    catalog.replace("devices.txt", "  alias FIN1-F100-C6 FIN1F100C6\n", aliases);
    EXPECT_EQ(catalog.faults(), "devices.txt:504: more than 500 aliases\n");
}

TEST(CatalogFaultsTogether, WriteNothing) {
    SMALL_CATALOG catalog;
    ASSERT_EQ(catalog.generate().result, 0);
    const std::string before = read_file(catalog.output("host.cpp"));
    catalog.replace("devices.txt", "sample,hidden", "samples");
    const GENERATOR_RUN run = catalog.generate();
    EXPECT_EQ(run.result, 1);
    EXPECT_NE(run.errors, "");
    EXPECT_EQ(read_file(catalog.output("host.cpp")), before);
}

INSTANTIATE_TEST_SUITE_P(Families, CatalogFaults, testing::ValuesIn(FAMILY_DAMAGES), name_of_damage);
INSTANTIATE_TEST_SUITE_P(Codes, CatalogFaults, testing::ValuesIn(CODE_DAMAGES), name_of_damage);
INSTANTIATE_TEST_SUITE_P(Devices, CatalogFaults, testing::ValuesIn(DEVICE_DAMAGES), name_of_damage);
INSTANTIATE_TEST_SUITE_P(OrderingCodes, CatalogFaults, testing::ValuesIn(ORDERING_CODE_DAMAGES), name_of_damage);
INSTANTIATE_TEST_SUITE_P(Grammar, CatalogFaults, testing::ValuesIn(GRAMMAR_DAMAGES), name_of_damage);

}  // namespace
