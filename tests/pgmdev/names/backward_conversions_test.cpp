#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "pgmdev/names/reference.h"
#include "pgmdev/names/test_data.h"
#include "pgmdev_part_index.h"

namespace {

namespace ref = ddb_reference;

using CONVERSION = PGMDEV_PART_INDEX::CONVERSION;
using NAMES = std::vector<std::string>;

NAMES sorted(NAMES names) {
    std::sort(names.begin(), names.end());
    return names;
}

NAMES names_before(CONVERSION conversion, const std::string& name) {
    return sorted(PGMDEV_PART_INDEX::get_names_converted_to(conversion, name));
}

NAMES origins(const std::string& name) {
    return sorted(PGMDEV_PART_INDEX::get_origins(name));
}

class BackwardConversions : public testing::Test {
protected:
    BackwardConversions() { use({{"P1", {"N1", "N2", "BOTH", "OWN"}}, {"P2", {"BOTH", "N3"}}}); }

    static void use(const ref::TABLE& package_names) {
        set_grammar_container(ref::container(ref::grammar_body({
            package_names,
            {{"G1", {"P1"}}, {"G2", {"OWN", "P2"}}, {"G3", {"G3"}}},
            {{"PCF_A", {"G1", "G2"}}, {"PCF_B", {"G2", "BARE", "N1"}}},
            {{"FAMILY_A", {"G1"}}, {"FAMILY_B", {"G1", "G3"}}},
            {{"DEV_A", {"D1", "D2"}}, {"DEV_B", {"D2"}}},
            {{"DEV_FAMILY", {"D2"}}},
            {{"BASE", {"FAMILY"}}},
            {{"FAMILY", {"PCF_A"}}},
        })));
    }
};

TEST_F(BackwardConversions, OfPackageNamesTheFirstCounts) {
    EXPECT_EQ(names_before(CONVERSION::PACKAGE_NAME, "P1"), (NAMES{"BOTH", "N1", "N2", "OWN"}));
    EXPECT_EQ(names_before(CONVERSION::PACKAGE_NAME, "P2"), NAMES{"N3"});
    use({{"P1", {"N1"}}, {"P2", {"BOTH", "N3"}}});
    EXPECT_EQ(names_before(CONVERSION::PACKAGE_NAME, "P2"), (NAMES{"BOTH", "N3"}));
}

TEST_F(BackwardConversions, AProgrammingNameOfItsOwnComesBeforeThatOfThePackage) {
    EXPECT_EQ(names_before(CONVERSION::PGM_NAME, "G1"), (NAMES{"BOTH", "N1", "N2", "P1"}));
    EXPECT_EQ(names_before(CONVERSION::PGM_NAME, "G2"), (NAMES{"N3", "OWN", "P2"}));
    EXPECT_EQ(names_before(CONVERSION::PGM_NAME, "G3"), NAMES{"G3"});
}

TEST_F(BackwardConversions, ProgrammerFilesHaveNamesByWayOfTheProgrammingNameIfThereIsOne) {
    EXPECT_EQ(names_before(CONVERSION::PGM_PART_PCF, "PCF_A"),
              (NAMES{"BOTH", "G1", "G2", "N1", "N2", "N3", "OWN", "P1", "P2"}));
    EXPECT_EQ(names_before(CONVERSION::PGM_PART_PCF, "PCF_B"), NAMES{"BARE"});
    EXPECT_EQ(names_before(CONVERSION::PGM_FAMILY_PCF, "FAMILY_A"), (NAMES{"BOTH", "G1", "N1", "N2", "P1"}));
    EXPECT_EQ(names_before(CONVERSION::PGM_FAMILY_PCF, "FAMILY_B"), NAMES{"G3"});
}

TEST_F(BackwardConversions, DevicesHaveTheirNamesThemselves) {
    EXPECT_EQ(names_before(CONVERSION::DEV_PART_PCF, "DEV_A"), (NAMES{"D1", "D2"}));
    EXPECT_EQ(names_before(CONVERSION::DEV_PART_PCF, "DEV_B"), NAMES{});
    EXPECT_EQ(names_before(CONVERSION::DEV_FAMILY_PCF, "DEV_FAMILY"), NAMES{"D2"});
}

TEST_F(BackwardConversions, OriginsAreAnyNumberOfStepsAwayAndThereOnce) {
    EXPECT_EQ(origins("PCF_A"), (NAMES{"BOTH", "G1", "G2", "N1", "N2", "N3", "OWN", "P1", "P2"}));
    EXPECT_EQ(origins(" pcf_b "), (NAMES{"BARE", "BOTH", "G2", "N1", "N3", "OWN", "P2"}));
    EXPECT_EQ(origins("FAMILY_B"), (NAMES{"BOTH", "G1", "G3", "N1", "N2", "OWN", "P1"}));
    EXPECT_EQ(origins("P2"), (NAMES{"BOTH", "N3"}));
    EXPECT_EQ(origins("DEV_A"), (NAMES{"D1", "D2"}));
    EXPECT_EQ(origins("DEV_FAMILY"), NAMES{"D2"});
    for (const char* name : {"G3", "N1", "D1", "BASE", "FAMILY", "NO_SUCH", ""}) {
        EXPECT_EQ(origins(name), NAMES{}) << name;
    }
}

TEST_F(BackwardConversions, LeadFromPackagesProgrammingNamesAndProgrammerFiles) {
    EXPECT_EQ(sorted(PGMDEV_PART_INDEX::get_converted_names()),
              (NAMES{"DEV_A", "DEV_B", "DEV_FAMILY", "FAMILY_A", "FAMILY_B", "G1", "G2", "G3", "P1", "P2", "PCF_A",
                     "PCF_B"}));
}

TEST_F(BackwardConversions, TakeNamesAsPeopleTypeThem) {
    EXPECT_EQ(names_before(CONVERSION::PACKAGE_NAME, " p2\n"), NAMES{"N3"});
}

TEST_F(BackwardConversions, NothingLeadsToOtherNames) {
    for (const CONVERSION conversion :
         {CONVERSION::PACKAGE_NAME, CONVERSION::PGM_NAME, CONVERSION::PGM_PART_PCF, CONVERSION::PGM_FAMILY_PCF,
          CONVERSION::DEV_PART_PCF, CONVERSION::DEV_FAMILY_PCF, static_cast<CONVERSION>(6)}) {
        for (const char* name : {"", "N1", "NO_SUCH", "P", "BASE"}) {
            EXPECT_EQ(names_before(conversion, name), NAMES{}) << name;
        }
    }
}

}  // namespace
