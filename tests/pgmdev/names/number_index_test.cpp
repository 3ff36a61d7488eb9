#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "names/number_index.h"
#include "support/repeatable_random.h"
#include "text_filter.h"

// What indexes for parts are made of.

namespace {

TEST(NumberIndex, FindsTheFirstNumberBesideEachKey) {
    auto random = repeatable_random<std::mt19937_64>(3);
    for (const QWORD largest : {QWORD{0}, QWORD{1}, QWORD{255}, QWORD{256}, QWORD{0xFFFFFFFFFFFF}, ~QWORD{0}}) {
        std::map<QWORD, DWORD> expected;
        std::vector<NUMBER_INDEX::PAIR> pairs;
        for (DWORD number = 0; number < 500; ++number) {
            const QWORD key = number % 50 == 0 ? largest : random() & largest;
            expected.try_emplace(key, number);
            pairs.emplace_back(key, number);
        }
        const NUMBER_INDEX index(pairs);
        for (const auto& [key, number] : expected) {
            ASSERT_NE(index.find(key), nullptr) << key;
            EXPECT_EQ(*index.find(key), number) << key;
            for (const QWORD other : {key + 1, key - 1}) {
                EXPECT_EQ(index.find(other) != nullptr, expected.contains(other)) << other;
            }
        }
    }
    EXPECT_EQ(NUMBER_INDEX({}).find(0), nullptr);
}

TEST(TextFilter, PassesAllTextsOfTheListAndFewOthers) {
    std::vector<std::string> texts;
    texts.reserve(2000);
    for (int i = 0; i < 2000; ++i) {
        texts.push_back("KES" + std::to_string(i));
    }
    const TEXT_FILTER filter({texts.begin(), texts.end()});
    int passing = 0;
    for (const std::string& text : texts) {
        EXPECT_TRUE(filter.may_have(text)) << text;
        passing += filter.may_have(text + "F") ? 1 : 0;
    }
    EXPECT_LT(passing, 200);
    EXPECT_FALSE(TEXT_FILTER({}).may_have("KES"));
    EXPECT_FALSE(TEXT_FILTER({}).may_have(""));
}

}  // namespace
