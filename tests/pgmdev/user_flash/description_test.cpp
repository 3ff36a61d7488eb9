#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "pgmdev/user_flash/reference.h"
#include "pgmdev_user_flash.h"
#include "support/settings.h"

// Descriptions made of records, taken apart again, and every text in which a fault of one is told.

namespace {

namespace ref = user_flash_reference;
using testing::ElementsAre;

class UserFlashDescription : public testing::Test {
protected:
    using RECORDS = std::vector<PGMDEV_SFL_FLASH_INFO>;

    static PGMDEV_SFL_FLASH_INFO named(const std::string& name) {
        PGMDEV_SFL_FLASH_INFO record = ref::record();
        record.device_name = name;
        return record;
    }

    static std::string sealed(const std::string& name) { return ref::sealed(ref::body({{"device_name", name}})); }

    static std::vector<std::string> names_of(const std::vector<PGMDEV_USER_FLASH>& all) {
        std::vector<std::string> names;
        names.reserve(all.size());
        for (const PGMDEV_USER_FLASH& flash : all) {
            names.push_back(flash.record().device_name);
        }
        return names;
    }

    static std::vector<std::string> faults_of(const std::string& decoded) {
        return PGMDEV_USER_FLASH::from_encoded(ref::encoded(decoded)).faults();
    }

    TOOL_VERSION m_version{"7.1.0", 2, 345};
};

TEST_F(UserFlashDescription, OfOneToThreeRecordsIsThatOfTheDialogue) {
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{ref::record()}), ref::encoded(ref::sealed(ref::body())));
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{named("ONE"), named("TWO"), named("THREE")}),
              ref::encoded(sealed("ONE") + sealed("TWO") + sealed("THREE")));
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{}), "");
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS(4, ref::record())), "");
}

TEST_F(UserFlashDescription, IsNoneOfTextsThatTearItApart) {
    constexpr std::array TEXTS{&PGMDEV_SFL_FLASH_INFO::manufacturer_name, &PGMDEV_SFL_FLASH_INFO::device_name,
                               &PGMDEV_SFL_FLASH_INFO::asc_voltage, &PGMDEV_SFL_FLASH_INFO::ini};
    for (const auto text : TEXTS) {
        for (const std::string value : {"A@B", "#", "A;"}) {
            PGMDEV_SFL_FLASH_INFO torn = ref::record();
            torn.*text = value;
            EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{torn}), "") << value;
            EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{ref::record(), torn}), "") << value;
        }
    }
}

TEST_F(UserFlashDescription, IsNoneOfWhatDoesNotDecodeAgain) {
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{named(std::string(5000, 'A'))}), "") << "packs too well";
    EXPECT_EQ(PGMDEV_USER_FLASH::encode(RECORDS{named(std::string("A\0B", 3))}), "") << "ends at the zero byte";
}

TEST_F(UserFlashDescription, GivesBackWhatItWasMadeOf) {
    const std::string text = PGMDEV_USER_FLASH::encode(RECORDS{named("ONE"), named("TWO"), named("THREE")});
    const std::vector<PGMDEV_USER_FLASH> all = PGMDEV_USER_FLASH::all_from_encoded(text);
    EXPECT_THAT(names_of(all), ElementsAre("ONE", "TWO", "THREE"));
    for (const PGMDEV_USER_FLASH& flash : all) {
        EXPECT_THAT(flash.faults(), ElementsAre());
        EXPECT_EQ(flash.record(), named(flash.record().device_name));
    }
    EXPECT_EQ(PGMDEV_USER_FLASH::from_encoded(text).record(), named("ONE"));
}

TEST_F(UserFlashDescription, OthersAreFoundBehindAFirstOneThatIsRefused) {
    const auto all =
        PGMDEV_USER_FLASH::all_from_encoded(ref::encoded(ref::body() + "#WRONG;" + sealed("TWO") + "rest"));
    EXPECT_THAT(names_of(all), ElementsAre("AC25X80", "TWO"));
    EXPECT_EQ(all[0].faults().size(), 1U);
    EXPECT_THAT(all[1].faults(), ElementsAre());
}

TEST_F(UserFlashDescription, WhatIsNoneBetweenOthersIsLeftOut) {
    const auto all =
        PGMDEV_USER_FLASH::all_from_encoded(ref::encoded(sealed("ONE") + "nothing of the kind;;" + sealed("TWO")));
    EXPECT_THAT(names_of(all), ElementsAre("ONE", "TWO"));
    EXPECT_EQ(PGMDEV_USER_FLASH::all_from_encoded("").size(), 1U) << "the first one is always there";
    EXPECT_EQ(PGMDEV_USER_FLASH::all_from_encoded("+")[0].faults().size(), 1U);
    EXPECT_EQ(PGMDEV_USER_FLASH::all_from_encoded(ref::encoded("no description"))[0].faults().size(), 1U);
}

TEST_F(UserFlashDescription, TextsThatDoNotDecodeAreToldApart) {
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded("abc+").faults(),
                ElementsAre("character 4 is none that encoded texts are made of: 0-9, A-Z, a-z, @ and -"));
    for (const std::string text : {"abc", ""}) {
        EXPECT_THAT(
            PGMDEV_USER_FLASH::from_encoded(text).faults(),
            ElementsAre("the text does not decompress, or not to at most 20 times its packed size: it is cut, or "
                        "damaged"));
    }
}

TEST_F(UserFlashDescription, FaultsOfADecodedTextAreToldWordForWord) {
    constexpr const char* NO_FORM = "the decoded text is not of the form body#password;";
    constexpr const char* NO_PASSWORD =
        "the password does not fit: the body was changed, or signed by another version or build of the tool";
    for (const std::string& text :
         {std::string("text"), ref::body() + "#NOEND", ref::body() + ";" + "#X", ref::body() + "#;"}) {
        EXPECT_THAT(faults_of(text), ElementsAre(NO_FORM)) << text;
    }
    EXPECT_THAT(faults_of(ref::body() + "#X;"), ElementsAre(NO_PASSWORD));
    EXPECT_THAT(faults_of(ref::sealed("@A@B@")),
                ElementsAre("the body ends before value 3, silicon_id, and the '@' behind it"));
    EXPECT_THAT(faults_of(ref::sealed(ref::body({{"silicon_id", "2"}}))),
                ElementsAre("silicon_id is \"2\", expected 1 or 0"));
    EXPECT_THAT(faults_of(ref::sealed(ref::body({{"memory_id", "256"}}))),
                ElementsAre("memory_id is \"256\", expected a number up to 255"));
    EXPECT_THAT(faults_of(ref::sealed(ref::body({{"die_count", "300"}}))),
                ElementsAre("die_count is \"300\", expected a number from 0 to 255"));
    EXPECT_THAT(faults_of(ref::sealed(ref::body({{"device_name", ""}}))),
                ElementsAre("device_name is empty, which stands for no flash at all"));
    EXPECT_THAT(faults_of(ref::body({{"die_count", "0"}}) + "#WRONG;"),
                ElementsAre("die_count is 0, expected 1 or more", NO_PASSWORD));
}

/// A change of the record that is plausible, and the member and texts that are told of it.
struct IMPLAUSIBLE {
    void (*change)(PGMDEV_SFL_FLASH_INFO& record);
    const char* member;
    const char* found;
    const char* expected;
};

const std::vector<IMPLAUSIBLE> EVERY_RULE{
    {[](auto& r) { r.memory_id = 0; }, "memory_id", "0", "anything but 0"},
    {[](auto& r) { r.memory_id_index = 3; }, "memory_id_index", "3", "0, 1 or 2"},
    {[](auto& r) { r.memory_type_index = 3; }, "memory_type_index", "3",
     "255 for not compared, or 0, 1 or 2 and not memory_id_index"},
    {[](auto& r) { r.memory_type_index = 2; }, "memory_type_index", "2",
     "255 for not compared, or 0, 1 or 2 and not memory_id_index"},
    {[](auto& r) { r.mfc_id_index = 4; }, "mfc_id_index", "4",
     "255, or 0, 1 or 2 and neither memory_id_index nor memory_type_index"},
    {[](auto& r) { r.mfc_id_index = 1; }, "mfc_id_index", "1",
     "255, or 0, 1 or 2 and neither memory_id_index nor memory_type_index"},
    {[](auto& r) { r.orvane_id = 17; }, "orvane_id", "17", "16, 18, 20, 21, 22, 24, 25 or 32"},
    {[](auto& r) { r.die_count = 0; }, "die_count", "0", "1 or more"},
    {[](auto& r) { r.device_bit_size = 1572864; }, "device_bit_size", "1572864",
     "a multiple of 1048576, whole megabits"},
    {[](auto& r) { r.device_sector_byte = 1; }, "device_sector_byte", "1", "a multiple of 1024, whole kilobytes"},
    {[](auto& r) { r.bulk_erase_time = 901; }, "bulk_erase_time", "901", "1 to 900"},
    {[](auto& r) { r.sec_erase_time = 61; }, "sec_erase_time", "61", "1 to 60"},
    {[](auto& r) { r.program_utime = 999; }, "program_utime", "999", "1000 to 1000000"},
    {[](auto& r) { r.protection_division = 32; }, "protection_division", "32", "0 to 31, or 255 for not known"},
};

TEST_F(UserFlashDescription, ImplausibleMembersAreToldWithWhatIsExpected) {
    EXPECT_TRUE(PGMDEV_USER_FLASH::implausible(ref::record()).empty());
    for (const IMPLAUSIBLE& each : EVERY_RULE) {
        PGMDEV_SFL_FLASH_INFO record = ref::record();
        each.change(record);
        const auto members = PGMDEV_USER_FLASH::implausible(record);
        ASSERT_EQ(members.size(), 1U) << each.member;
        EXPECT_EQ(members[0].member, each.member);
        EXPECT_EQ(members[0].found, each.found);
        EXPECT_EQ(members[0].expected, each.expected);
        const auto again = PGMDEV_USER_FLASH::from_encoded(PGMDEV_USER_FLASH::encode(RECORDS{record}));
        EXPECT_THAT(again.faults(),
                    ElementsAre(std::string(each.member) + " is " + each.found + ", expected " + each.expected));
        EXPECT_TRUE(again.complete() && again.password_valid());
        EXPECT_FALSE(again.plausible());
    }
}

TEST_F(UserFlashDescription, NoNameIsImplausible) {
    EXPECT_TRUE(PGMDEV_USER_FLASH::implausible(named("")).empty()) << "the manager takes it for no flash at all";
}

}  // namespace
