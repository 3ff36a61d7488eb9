#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>

#include "pgmdev/names/reference.h"
#include "pgmdev/names/test_data.h"
#include "pgmdev_device_grammar_mgr.h"
#include "support/settings.h"

namespace {

namespace ref = ddb_reference;

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// A name that an operation may normalise.
std::string name(const char* text) {
    return text;
}

class DeviceGrammar : public testing::Test {
protected:
    DeviceGrammar() { set_grammar_container(ref::container(ref::grammar_body(ref::example_grammar()))); }
};

TEST_F(DeviceGrammar, PackageNames) {
    std::string asked = " device_a1f100c6 ";
    EXPECT_EQ(GRAMMAR::get_package_name(asked, false), "DEVICE_A1F100");
    EXPECT_EQ(asked, "DEVICE_A1F100C6");
    EXPECT_EQ(GRAMMAR::get_package_name(name("solo_1"), true), "SOLO_1");
    EXPECT_EQ(GRAMMAR::get_package_name(name(" unknown"), false), "UNKNOWN");
    EXPECT_EQ(GRAMMAR::get_package_name(name("unknown"), true), "");
    EXPECT_EQ(GRAMMAR::get_package_name(name(""), false), "");
}

TEST_F(DeviceGrammar, ProgrammingNames) {
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("DEVICE_A1F100"), true, true), "DEVICE_A1");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("DEVICE_A1F100C6"), false, false), "DEVICE_A1");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("device_a1f100c6"), true, false), "DEVICE_A1F100C6");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("device_a1f100c6"), true, true), "");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("plain_9"), false, true), "PLAIN_9");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("UNKNOWN"), false, true), "");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("unknown "), false, false), "UNKNOWN");
}

TEST_F(DeviceGrammar, PlainLookUps) {
    std::string asked = "\tdevice_a1\n";
    EXPECT_EQ(GRAMMAR::get_pgm_part_pcf(asked), "PCF_A1");
    EXPECT_EQ(asked, "DEVICE_A1");
    EXPECT_EQ(GRAMMAR::get_pgm_part_pcf(name("DEVICE_A1F100")), "");
    EXPECT_EQ(GRAMMAR::get_pgm_family_pcf(name("device_a1")), "FAMILY_A_PCF");
    EXPECT_EQ(GRAMMAR::get_pgm_family_pcf(name("plain_9")), "NONE");
    EXPECT_EQ(GRAMMAR::get_dev_part_pcf(name("lib_a1_es")), "PCF_A1");
    EXPECT_EQ(GRAMMAR::get_dev_part_pcf(name("device_a1")), "");
    EXPECT_EQ(GRAMMAR::get_dev_family_pcf(name("lib_a1")), "FAMILY_A_PCF");
    EXPECT_EQ(GRAMMAR::get_dev_family_pcf(name("lib_only")), "");
    EXPECT_EQ(GRAMMAR::get_pcf_family_pcf(name("family_a_base")), "FAMILY_A_PCF");
    EXPECT_EQ(GRAMMAR::get_pcf_family_pcf(name("FAMILY_A")), "");
}

TEST_F(DeviceGrammar, Families) {
    EXPECT_EQ(GRAMMAR::get_family(name("pcf_a1")), "FAMILY_A");
    EXPECT_EQ(GRAMMAR::get_family(name("device_a1")), "FAMILY_A");
    EXPECT_EQ(GRAMMAR::get_family(name("lib_only")), "FAMILY_L");
    EXPECT_EQ(GRAMMAR::get_family(name("plain_9")), "");  // its programmer-file part belongs to no family
    EXPECT_EQ(GRAMMAR::get_family(name("DEVICE_A1F100")), "");
}

TEST_F(DeviceGrammar, DevicesOfAProgrammerFilePart) {
    std::string asked = " pcf_a1";
    EXPECT_EQ(GRAMMAR::get_pcf_device(asked), "LIB_A1");
    EXPECT_EQ(asked, "PCF_A1");
    EXPECT_EQ(GRAMMAR::get_pcf_device(name("UNKNOWN")), "");
    EXPECT_EQ(GRAMMAR::get_pcf_device(name("")), "");
}

TEST_F(DeviceGrammar, BothProgrammerFileNames) {
    std::string part = "before";
    std::string family = "before";
    GRAMMAR::get_dev_pcfs(name("lib_a1"), part, family);
    EXPECT_EQ(part, "PCF_A1");
    EXPECT_EQ(family, "FAMILY_A_PCF");
    GRAMMAR::get_dev_pcfs(name("unknown"), part, family);
    EXPECT_EQ(part, "");
    EXPECT_EQ(family, "");
    for (const char* spelling : {"device_a1f100i7", "device_a1f100", "device_a1"}) {
        GRAMMAR::get_pgm_pcfs(name(spelling), part, family);
        EXPECT_EQ(part, "PCF_A1") << spelling;
        EXPECT_EQ(family, "FAMILY_A_PCF") << spelling;
    }
    GRAMMAR::get_pgm_pcfs(name("lib_a1"), part, family);
    EXPECT_EQ(part, "");
    EXPECT_EQ(family, "");
}

TEST_F(DeviceGrammar, UseFullName) {
    std::string asked = " solo_1";
    EXPECT_TRUE(GRAMMAR::use_full_name(asked));
    EXPECT_EQ(asked, "SOLO_1");
    EXPECT_FALSE(GRAMMAR::use_full_name(name("DEVICE_A1F100C6")));
    EXPECT_FALSE(GRAMMAR::use_full_name(name("PLAIN_9")));  // has no package name
    EXPECT_FALSE(GRAMMAR::use_full_name(name("")));
    EXPECT_FALSE(GRAMMAR::use_full_name(name("unknown")));
}

TEST_F(DeviceGrammar, UsePackageName) {
    EXPECT_FALSE(GRAMMAR::use_package_name(name("DEVICE_A1F100C6")));
    EXPECT_TRUE(GRAMMAR::use_package_name(name("plain_9 ")));
    EXPECT_TRUE(GRAMMAR::use_package_name(name("SOLO_1")));
    EXPECT_TRUE(GRAMMAR::use_package_name(name("")));
    EXPECT_FALSE(GRAMMAR::use_package_name(name("UNKNOWN")));
}

/// Nothing keeps a build's own data from having keys that are not normal: as answers they stay as they are, as the next
/// question they are normalised.
class DeviceGrammarWithUntidyKeys : public testing::Test {
protected:
    DeviceGrammarWithUntidyKeys() {
        std::vector<ref::TABLE> tables = ref::example_grammar();
        tables[0] = {{" package_1", {"FULL_1"}}, {"Alone ", {"ALONE"}}};
        tables[1] = {{"PGM_1", {"PACKAGE_1"}}, {"ALONE", {"ALONE"}}, {"raw", {" package_1"}}};
        set_grammar_container(ref::container(ref::grammar_body(tables)));
    }
};

TEST_F(DeviceGrammarWithUntidyKeys, APackageNameIsNormalisedBeforeItIsLookedUp) {
    EXPECT_EQ(GRAMMAR::get_package_name(name("full_1"), true), " package_1");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("full_1"), false, true), "PGM_1");
    EXPECT_EQ(GRAMMAR::get_pgm_name(name("full_1"), true, true), "");
}

TEST_F(DeviceGrammarWithUntidyKeys, APackageNameIsNormalisedBeforeItIsCompared) {
    EXPECT_TRUE(GRAMMAR::use_full_name(name("alone")));
    EXPECT_TRUE(GRAMMAR::use_package_name(name("alone")));
    EXPECT_FALSE(GRAMMAR::use_package_name(name("full_1")));
}

/// What an operation writes to standard output with the trace switched on.
template <class OPERATION>
std::string trace_of(OPERATION operation) {
    const SETTING on("PGMDEV_ENABLE_GRAMMAR_DEBUG", "on");
    testing::internal::CaptureStdout();
    operation();
    return testing::internal::GetCapturedStdout();
}

TEST_F(DeviceGrammar, TracesPackageNames) {
    EXPECT_EQ(trace_of([] { GRAMMAR::get_package_name(name(" device_a1f100c6"), true); }),
              "Map Flow   : Strip Speedgrade\n"
              "    Input  : DEVICE_A1F100C6\n"
              "    Output : DEVICE_A1F100\n");
    EXPECT_EQ(trace_of([] { GRAMMAR::get_package_name(name("x"), true); }),
              "Map Flow   : Strip Speedgrade\n    Input  : X\n    Output : \n");
}

TEST_F(DeviceGrammar, TracesProgrammingNames) {
    EXPECT_EQ(trace_of([] { GRAMMAR::get_pgm_name(name("device_a1f100c6"), false, false); }),
              "Map Flow   : Strip Package (skip package conversion: 0)\n"
              "    Input0 : DEVICE_A1F100C6\n"
              "    Input1 : DEVICE_A1F100\n"
              "    Output : DEVICE_A1\n");
    EXPECT_EQ(trace_of([] { GRAMMAR::get_pgm_name(name("x"), true, true); }),
              "Map Flow   : Strip Package (skip package conversion: 1)\n"
              "    Input0 : X\n"
              "    Input1 : \n"
              "    Output : \n");
}

TEST_F(DeviceGrammarWithUntidyKeys, TheTraceShowsThePackageNameThatIsLookedUp) {
    EXPECT_EQ(trace_of([] { GRAMMAR::get_pgm_name(name("full_1"), false, false); }),
              "Map Flow   : Strip Package (skip package conversion: 0)\n"
              "    Input0 : FULL_1\n"
              "    Input1 : PACKAGE_1\n"
              "    Output : PGM_1\n");
}

TEST_F(DeviceGrammar, TracesLookAlikeHoweverTheProgramFormatsItsOwnOutput) {
    EXPECT_EQ(trace_of([] {
                  std::cout << std::setw(90) << std::setfill('.');
                  GRAMMAR::get_package_name(name("x"), true);
                  std::cout << "own\n" << std::setfill(' ');
              }),
              "Map Flow   : Strip Speedgrade\n    Input  : X\n    Output : \n" + std::string(86, '.') + "own\n");
}

TEST_F(DeviceGrammar, CompositeOperationsTraceTheirInnerCalls) {
    EXPECT_EQ(trace_of([] { GRAMMAR::use_package_name(name("PLAIN_9")); }),
              "Map Flow   : Strip Speedgrade\n"
              "    Input  : PLAIN_9\n"
              "    Output : PLAIN_9\n"
              "Map Flow   : Strip Package (skip package conversion: 1)\n"
              "    Input0 : PLAIN_9\n"
              "    Input1 : \n"
              "    Output : PLAIN_9\n");
    EXPECT_EQ(trace_of([] { GRAMMAR::use_full_name(name("UNKNOWN")); }),
              "Map Flow   : Strip Speedgrade\n    Input  : UNKNOWN\n    Output : \n");
}

TEST_F(DeviceGrammar, IsSilentWithoutTheSwitch) {
    testing::internal::CaptureStdout();
    GRAMMAR::get_pgm_name(name("DEVICE_A1F100C6"), false, false);
    GRAMMAR::use_full_name(name("SOLO_1"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(trace_of([] { GRAMMAR::get_family(name("DEVICE_A1")); }), "");
}

TEST_F(DeviceGrammar, DoesNotWriteToANameThatIsNormal) {
    static const std::string NAME = "DEVICE_A1";
    EXPECT_EQ(GRAMMAR::get_pgm_part_pcf(NAME), "PCF_A1");
}

}  // namespace
