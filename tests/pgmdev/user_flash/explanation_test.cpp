#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev/user_flash/reference.h"
#include "pgmdev_user_flash.h"
#include "support/console.h"
#include "support/settings.h"

namespace {

namespace ref = user_flash_reference;
using testing::ElementsAre;
using testing::HasSubstr;

class UserFlashExplanation : public testing::Test {
protected:
    static PGMDEV_USER_FLASH explain(const ref::CHANGES& changes) {
        return PGMDEV_USER_FLASH::from_encoded(ref::encoded(ref::sealed(ref::body(changes))));
    }

    TOOL_VERSION m_version{"7.1.0", 2, 345};
};

TEST_F(UserFlashExplanation, FindsNothingInAGoodDescription) {
    const PGMDEV_USER_FLASH flash = explain({});
    EXPECT_EQ(flash.body(), ref::body());
    EXPECT_EQ(flash.password(), ref::password(ref::body(), ref::BANNER));
    EXPECT_TRUE(flash.password_valid() && flash.complete() && flash.plausible());
    EXPECT_EQ(flash.record(), ref::record());
    EXPECT_TRUE(flash.faults().empty());
}

TEST_F(UserFlashExplanation, SaysWhatDoesNotDecode) {
    const CONSOLE console;
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded("abc+").faults(), ElementsAre(HasSubstr("character 4")));
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded("abc").faults(), ElementsAre(HasSubstr("does not decompress")));
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded("").faults(), ElementsAre(HasSubstr("does not decompress")));
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded(ref::encoded("some other text")).faults(),
                ElementsAre(HasSubstr("not of the form body#password;")));
    EXPECT_THAT(PGMDEV_USER_FLASH::from_encoded(ref::encoded("#PASSWORDPASSWORD;")).faults(),
                ElementsAre(HasSubstr("not of the form body#password;")));
    EXPECT_EQ(console.output(), "");
}

TEST_F(UserFlashExplanation, NamesEveryRuleThatIsBroken) {
    const PGMDEV_USER_FLASH flash = explain({{"memory_id", "0"},
                                             {"memory_id_index", "3"},
                                             {"memory_type_index", "3"},
                                             {"mfc_id_index", "4"},
                                             {"orvane_id", "17"},
                                             {"die_count", "0"},
                                             {"device_bit_size", "1572864"},
                                             {"device_sector_byte", "1"},
                                             {"bulk_erase_time", "901"},
                                             {"sec_erase_time", "61"},
                                             {"program_utime", "999"},
                                             {"protection_division", "32"}});
    EXPECT_TRUE(flash.complete());
    EXPECT_FALSE(flash.plausible());
    EXPECT_TRUE(flash.password_valid());
    EXPECT_THAT(flash.faults(),
                ElementsAre(HasSubstr("memory_id is 0,"), HasSubstr("memory_id_index is 3, expected 0, 1 or 2"),
                            HasSubstr("memory_type_index is 3,"), HasSubstr("mfc_id_index is 4,"),
                            HasSubstr("orvane_id is 17,"), HasSubstr("die_count is 0,"),
                            HasSubstr("device_bit_size is 1572864,"), HasSubstr("device_sector_byte is 1,"),
                            HasSubstr("bulk_erase_time is 901, expected 1 to 900"), HasSubstr("sec_erase_time is 61,"),
                            HasSubstr("program_utime is 999,"), HasSubstr("protection_division is 32,")));
}

TEST_F(UserFlashExplanation, NamesTheValueThatIsRefused) {
    EXPECT_THAT(explain({{"sdm_support", "yes"}}).faults(), ElementsAre("sdm_support is \"YES\", expected 1 or 0"));
    EXPECT_THAT(explain({{"bottom_value", "-1"}}).faults(),
                ElementsAre("bottom_value is \"-1\", expected a number from 0 to 255"));
    EXPECT_THAT(explain({{"mfc_id", "300"}}).faults(), ElementsAre("mfc_id is \"300\", expected a number up to 255"));
    EXPECT_FALSE(explain({{"mfc_id", "300"}}).complete());
    EXPECT_FALSE(explain({{"mfc_id", "300"}}).plausible());
}

TEST_F(UserFlashExplanation, NamesTheValueThatIsMissing) {
    std::string body = ref::body();
    body.pop_back();
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(ref::encoded(ref::sealed(body)));
    EXPECT_THAT(flash.faults(), ElementsAre(HasSubstr("value 33, asc_voltage")));
}

TEST_F(UserFlashExplanation, TellsAnotherBuild) {
    const TOOL_VERSION version("7.1.1", 0, 1);
    const PGMDEV_USER_FLASH flash = explain({});
    EXPECT_TRUE(flash.plausible());
    EXPECT_FALSE(flash.password_valid());
    EXPECT_THAT(flash.faults(), ElementsAre(HasSubstr("the password does not fit")));
}

TEST_F(UserFlashExplanation, TellsThatAFlashWithoutANameIsNone) {
    EXPECT_TRUE(explain({{"device_name", ""}}).plausible());
    EXPECT_THAT(explain({{"device_name", ""}}).faults(), ElementsAre(HasSubstr("device_name is empty")));
}

TEST_F(UserFlashExplanation, AgreesWithTheLoader) {
    // Whatever is wrong: faults are found exactly when a manager does not take the flash.
    const std::vector<std::string> spellings{"", "0", "1", "2", "3", "-1", "255", "256", "32", "900", "901", "65536"};
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        for (const std::string& spelling : spellings) {
            const ref::CHANGES changes{{std::string(member.name), spelling}};
            const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body(changes))));
            USER_FLASH_PROBE manager;
            manager.parse_ext_flash_info();
            EXPECT_EQ(explain(changes).faults().empty(), !manager.m_ini_flash_info.device_name.empty())
                << member.name << " " << spelling;
        }
    }
}

TEST_F(UserFlashExplanation, HoldsTheDialogueOnStreams) {
    std::istringstream answers("4\n");
    std::ostringstream prompts;
    EXPECT_EQ(PGMDEV_USER_FLASH::define(answers, prompts), "");
    EXPECT_EQ(prompts.str(), "Number of 3rd party flash to define (max 3) : ");
}

TEST_F(UserFlashExplanation, AsksAgainUntilTheAnswersEnd) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> CASES{{"4\n0\n5", {"4", "0", "5"}},
                                                                              {"4\n", {"4", ""}}};
    for (const auto& [text, all] : CASES) {
        std::istringstream answers(text);
        std::ostringstream prompts;
        std::vector<std::string> refused;
        EXPECT_EQ(PGMDEV_USER_FLASH::define(answers, prompts,
                                            [&](const PGMDEV_USER_FLASH::REFUSED_ANSWER& each) {
                                                refused.push_back(each.answer);
                                                return true;
                                            }),
                  "");
        EXPECT_EQ(refused, all);
    }
}

}  // namespace
