#include <gtest/gtest.h>

#include <thread>

#include "dstr.h"
#include "names/part_indexes.h"
#include "names/stores.h"
#include "pgmdev/names/reference.h"
#include "pgmdev/names/test_data.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "support/reports.h"
#include "support/start_line.h"

namespace {

namespace ref = ddb_reference;

const std::string GOOD_GRAMMAR = ref::container(ref::grammar_body(ref::example_grammar()));
const std::string SHORT_GRAMMAR = ref::container(ref::grammar_body({{{"KEY", {"ENTRY"}}}}));
const std::string GOOD_LIST = ref::container(ref::opn_body({0, 3, 1, 3, 0xFFFFFFFF}));
const std::string NO_LIST = ref::container(ref::le32(0));

const std::string TOO_FEW_TABLES = "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)";

std::string family_of_example() {
    return PGMDEV_DEVICE_GRAMMAR_MGR::get_family("PCF_A1");
}

TEST(DdbFirstUse, AFailedBuildIsTriedAndReportedAgain) {
    set_grammar_container(SHORT_GRAMMAR);
    for (int call = 0; call < 3; ++call) {
        EXPECT_REPORT(family_of_example(), TOO_FEW_TABLES);
    }
    set_grammar_container(GOOD_GRAMMAR);
    EXPECT_EQ(family_of_example(), "FAMILY_A");
}

TEST(DdbFirstUse, AnEmptyQueryBuildsTheStore) {
    set_grammar_container(SHORT_GRAMMAR);
    EXPECT_REPORT(PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(""), TOO_FEW_TABLES);
}

TEST(DdbFirstUse, AQueryIsNotNormalisedWhenTheStoreCannotBeBuilt) {
    set_grammar_container(SHORT_GRAMMAR);
    std::string name = " name";
    EXPECT_REPORT(PGMDEV_DEVICE_GRAMMAR_MGR::get_family(name), TOO_FEW_TABLES);
    EXPECT_EQ(name, " name");
}

TEST(DdbFirstUse, AStoreIsBuiltOnce) {
    set_grammar_container(GOOD_GRAMMAR);
    set_opn_container(GOOD_LIST);
    EXPECT_EQ(get_grammar_store(), get_grammar_store());
    EXPECT_EQ(get_opn_store(), get_opn_store());
}

TEST(DdbFirstUse, TheStoresFailOnTheirOwn) {
    set_grammar_container(SHORT_GRAMMAR);
    set_opn_container(GOOD_LIST);
    EXPECT_EQ(PGMDEV_MGR::get_opn(5), "");
    EXPECT_REPORT(family_of_example(), TOO_FEW_TABLES);
    set_grammar_container(GOOD_GRAMMAR);
    set_opn_container(NO_LIST);
    EXPECT_EQ(family_of_example(), "FAMILY_A");
    for (int call = 0; call < 2; ++call) {
        EXPECT_REPORT(PGMDEV_MGR::get_opn(5), "enum_count > 0");
    }
}

TEST(DdbFirstUse, ManyThreadsMayMakeTheFirstCall) {
    constexpr int THREADS = 4;
    for (int round = 0; round < 50; ++round) {
        set_grammar_container(GOOD_GRAMMAR);
        set_opn_container(GOOD_LIST);
        START_LINE line(THREADS);
        std::vector<const GRAMMAR_STORE*> grammars(THREADS);
        std::vector<const OPN_STORE*> lists(THREADS);
        std::vector<std::string> families(THREADS);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < THREADS; ++i) {
            threads.emplace_back([&, i] {
                line.arrive_and_wait();
                families[i] = family_of_example();
                grammars[i] = get_grammar_store();
                lists[i] = get_opn_store();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(families, std::vector<std::string>(THREADS, "FAMILY_A"));
        EXPECT_EQ(grammars, std::vector<const GRAMMAR_STORE*>(THREADS, get_grammar_store()));
        EXPECT_EQ(lists, std::vector<const OPN_STORE*>(THREADS, get_opn_store()));
    }
}

TEST(DdbFirstUse, ManyThreadsMayFailTogether) {
    constexpr int THREADS = 4;
    const auto previous = MSG_INTERNAL_ERROR::set_handler(
        [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); });
    set_grammar_container(SHORT_GRAMMAR);
    START_LINE line(THREADS);
    std::vector<std::string> texts(THREADS);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < THREADS; ++i) {
        threads.emplace_back([&, i] {
            line.arrive_and_wait();
            try {
                family_of_example();
            } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
                texts[i] = error.what();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    MSG_INTERNAL_ERROR::set_handler(previous);
    EXPECT_EQ(texts, std::vector<std::string>(THREADS, TOO_FEW_TABLES));
}

TEST(DdbFirstUse, AReporterMayLookUpAName) {
    set_grammar_container(SHORT_GRAMMAR);
    int depth = 0;
    std::vector<std::string> texts;
    const auto previous = MSG_INTERNAL_ERROR::set_handler([&](const MSG_INTERNAL_ERROR_REPORT& report) {
        texts.push_back(report.condition);
        if (depth++ == 0) {
            EXPECT_THROW(family_of_example(), MSG_INTERNAL_ERROR_EXCEPTION);
            set_grammar_container(GOOD_GRAMMAR);
            EXPECT_EQ(family_of_example(), "FAMILY_A");
            std::thread([] { EXPECT_EQ(family_of_example(), "FAMILY_A"); }).join();
        }
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
    EXPECT_THROW(family_of_example(), MSG_INTERNAL_ERROR_EXCEPTION);
    MSG_INTERNAL_ERROR::set_handler(previous);
    EXPECT_EQ(texts, std::vector<std::string>(2, TOO_FEW_TABLES));
    EXPECT_EQ(family_of_example(), "FAMILY_A");
}

TEST(DdbFirstUse, AnIndexThatCannotBeMadeIsTriedAndReportedAgain) {
    set_grammar_container(SHORT_GRAMMAR);
    const std::string part = dstr_get_user_string(1);
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(part), part);  // the first part: no conversion is asked for
    for (int call = 0; call < 3; ++call) {
        EXPECT_REPORT(PGMDEV_MGR::get_part_name_from_pcf("PCF_A1"), TOO_FEW_TABLES);
        EXPECT_REPORT(PGMDEV_PART_INDEX(), TOO_FEW_TABLES);
    }
    set_grammar_container(GOOD_GRAMMAR);
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(part), part);
    EXPECT_EQ(PGMDEV_PART_INDEX().get_possible_full_name(part), part);
}

TEST(DdbFirstUse, AnIndexGoesWithTheStores) {
    set_opn_container(GOOD_LIST);
    const DWORD part_of_list = 3;
    const std::string part = dstr_get_user_string(static_cast<int>(part_of_list));
    EXPECT_EQ(*ordering_codes_by_part(INDEX_WANTED::NOW)->find(part_of_list), 1U);
    set_opn_container(ref::container(ref::opn_body({part_of_list})));
    for (int call = 0; call < 100; ++call) {
        ASSERT_EQ(PGMDEV_MGR::get_opn_enum(part), 0U) << call;
    }
    EXPECT_EQ(*ordering_codes_by_part(INDEX_WANTED::NOW)->find(part_of_list), 0U);
}

TEST(DdbFirstUse, OrderingCodesOfNoUsablePartAreEmpty) {
    set_opn_container(GOOD_LIST);
    EXPECT_EQ(PGMDEV_MGR::get_opn(0), "");  // 0: no part
    EXPECT_EQ(PGMDEV_MGR::get_opn(4), "");  // no number of a part
    EXPECT_EQ(PGMDEV_MGR::get_opn(5), "");  // behind the list
    EXPECT_EQ(PGMDEV_MGR::get_opn(INVALID_DWORD), "");
}

TEST(DdbFirstUse, OnlyQuestionsThatNeedTheListBuildIt) {
    set_opn_container(NO_LIST);
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum("no such part"), INVALID_DWORD);
    EXPECT_EQ(PGMDEV_MGR::get_opn_hash("no such part"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(0), "");
    const std::string part = dstr_get_user_string(1);
    EXPECT_NE(PGMDEV_MGR::get_opn_hash(part), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_REPORT(PGMDEV_MGR::get_opn_enum(part), "enum_count > 0");
    set_opn_container(GOOD_LIST);
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum(part), 2U);
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum(dstr_get_user_string(3)), 1U);  // the first of two
    EXPECT_EQ(PGMDEV_MGR::get_opn_enum(dstr_get_user_string(2)), INVALID_DWORD);
}

}  // namespace
