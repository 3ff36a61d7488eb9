#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "names/grammar_parser.h"
#include "names/stores.h"
#include "pgmdev/names/catalog_reference.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"

namespace {

namespace cat = catalog_reference;

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// Runs an operation on an untidy spelling and expects the caller's string to be tidied.
template <class OPERATION>
auto run(const std::string& name, OPERATION operation) {
    std::string untidy = "\t " + name + " \n";
    for (std::size_t i = 0; i < untidy.size(); i += 2) {
        untidy[i] = untidy[i] >= 'A' && untidy[i] <= 'Z' ? static_cast<char>(untidy[i] - 'A' + 'a') : untidy[i];
    }
    auto result = operation(untidy);
    EXPECT_EQ(untidy, name);
    return result;
}

void expect_every_operation(const std::string& name) {
    SCOPED_TRACE(name);
    ASSERT_EQ(run(name, GRAMMAR::get_pgm_part_pcf), cat::key_of(cat::PGM_PART_PCF, name));
    ASSERT_EQ(run(name, GRAMMAR::get_pgm_family_pcf), cat::key_of(cat::PGM_FAMILY_PCF, name));
    ASSERT_EQ(run(name, GRAMMAR::get_dev_part_pcf), cat::key_of(cat::DEV_PART_PCF, name));
    ASSERT_EQ(run(name, GRAMMAR::get_dev_family_pcf), cat::key_of(cat::DEV_FAMILY_PCF, name));
    ASSERT_EQ(run(name, GRAMMAR::get_pcf_family_pcf), cat::key_of(cat::PCF_FAMILY_PCF, name));
    ASSERT_EQ(run(name, GRAMMAR::get_family), cat::family(name));
    ASSERT_EQ(run(name, GRAMMAR::get_pcf_device), cat::pcf_device(name));
    ASSERT_EQ(run(name, GRAMMAR::use_full_name), cat::use_full_name(name));
    ASSERT_EQ(run(name, GRAMMAR::use_package_name), cat::use_package_name(name));
    for (const bool no_fallback : {false, true}) {
        ASSERT_EQ(run(name, [&](const std::string& n) { return GRAMMAR::get_package_name(n, no_fallback); }),
                  cat::package_name(name, no_fallback));
        for (const bool skip : {false, true}) {
            ASSERT_EQ(run(name, [&](const std::string& n) { return GRAMMAR::get_pgm_name(n, skip, no_fallback); }),
                      cat::pgm_name(name, skip, no_fallback));
        }
    }
    std::string part = "before";
    std::string family = "before";
    run(name, [&](const std::string& n) { return GRAMMAR::get_dev_pcfs(n, part, family), 0; });
    ASSERT_EQ(part, cat::key_of(cat::DEV_PART_PCF, name));
    ASSERT_EQ(family, cat::key_of(cat::DEV_FAMILY_PCF, name));
    run(name, [&](const std::string& n) { return GRAMMAR::get_pgm_pcfs(n, part, family), 0; });
    const std::string pgm = cat::pgm_name(name, false, false);
    ASSERT_EQ(part, cat::key_of(cat::PGM_PART_PCF, pgm));
    ASSERT_EQ(family, cat::key_of(cat::PGM_FAMILY_PCF, pgm));
}

TEST(CatalogGrammar, EveryEntryIsFoundAsAWalkFindsIt) {
    std::size_t count = 0;
    for (DWORD table = 0; table < 8; ++table) {
        const cat::ref::MAP& map = cat::tables()[table];
        for (const auto& [key, entries] : map) {
            ASSERT_EQ(forward_lookup(get_grammar_store(), PGMDEV_DDB_GRAMMAR_ENUM(table), std::string(key)), entries);
            for (const std::string& entry : entries) {
                const std::string found =
                    reverse_lookup(get_grammar_store(), PGMDEV_DDB_GRAMMAR_ENUM(table), std::string(entry));
                ASSERT_EQ(found, cat::key_of(static_cast<int>(table), entry));
                if (count++ % 97 == 0) {
                    ASSERT_EQ(found, cat::ref::walk(map, entry));
                }
            }
        }
    }
    EXPECT_GT(count, 20000U);
}

TEST(CatalogGrammar, ItsCompiledInTextAndIndexAreThoseOfItsStream) {
    const COMPILED_DATA_SET set = grammar_data_set();
    const DATA_CONTAINER container = open_container(set);
    INDEX_NUMBERS numbers;
    for (const GRAMMAR_PLACES& places : parse_grammar(container)) {
        append_table_index(numbers, reinterpret_cast<const char*>(container.data.get()), places);
    }
    EXPECT_TRUE(numbers == INDEX_NUMBERS(set.index.begin(), set.index.end()));
    EXPECT_EQ(std::memcmp(set.text, container.data.get(), container.body_end()), 0);
    const auto store = build_grammar_store(set);
    EXPECT_TRUE(store->index.empty() && store->text == nullptr);  // none is made where there is one
}

TEST(CatalogGrammar, EveryNameThroughEveryOperation) {
    ASSERT_GT(cat::all_names().size(), 15000U);
    for (const std::string& name : cat::all_names()) {
        ASSERT_NO_FATAL_FAILURE(expect_every_operation(name));
    }
}

TEST(CatalogGrammar, NamesThatAreNearlyRightAreNotFound) {
    for (const std::string& name : cat::all_names()) {
        for (const std::string& other : {name + "0", name.substr(0, name.size() - 1), "X" + name}) {
            ASSERT_NO_FATAL_FAILURE(expect_every_operation(other));
        }
    }
}

/// What a conversion makes of a name.
std::string converted(PGMDEV_PART_INDEX::CONVERSION conversion, const std::string& name) {
    using CONVERSION = PGMDEV_PART_INDEX::CONVERSION;
    switch (conversion) {
        case CONVERSION::PACKAGE_NAME:
            return cat::package_name(name, true);
        case CONVERSION::PGM_NAME:
            return cat::pgm_name(name, false, true);
        case CONVERSION::PGM_PART_PCF:
            return cat::key_of(cat::PGM_PART_PCF, cat::pgm_name(name, false, false));
        case CONVERSION::PGM_FAMILY_PCF:
            return cat::key_of(cat::PGM_FAMILY_PCF, cat::pgm_name(name, false, false));
        case CONVERSION::DEV_PART_PCF:
            return cat::key_of(cat::DEV_PART_PCF, name);
        case CONVERSION::DEV_FAMILY_PCF:
            return cat::key_of(cat::DEV_FAMILY_PCF, name);
    }
    return "";
}

TEST(CatalogGrammar, BackwardsConversionsLeadToTheNamesThatAreConverted) {
    for (int number = 0; number < 6; ++number) {
        const auto conversion = static_cast<PGMDEV_PART_INDEX::CONVERSION>(number);
        std::unordered_map<std::string, std::vector<std::string>> expected;
        for (const std::string& name : cat::all_names()) {
            expected[converted(conversion, name)].push_back(name);
        }
        expected.erase("");
        EXPECT_GT(expected.size(), 5U) << number;
        for (const std::string& name : cat::all_names()) {
            std::vector<std::string> found = PGMDEV_PART_INDEX::get_names_converted_to(conversion, name);
            std::sort(found.begin(), found.end());
            ASSERT_EQ(found, expected[name]) << number << ' ' << name;
        }
    }
}

TEST(CatalogGrammar, ItsKnownCrcsAreThoseOfTheStreams) {
    for (const COMPILED_DATA_SET& set : {grammar_data_set(), opn_data_set()}) {
        ASSERT_TRUE(is_known(set));
        COMPILED_DATA_SET unknown = set;
        ++unknown.known_stream;
        unknown.crc = 0;
        EXPECT_EQ(crc_of(set), crc_of(unknown));
        const std::string container = cat::ref::inflated(set.stream, set.stream_length, set.length);
        EXPECT_EQ(cat::ref::le32(crc_of(set)), container.substr(container.size() - 4));
    }
}

TEST(CatalogGrammar, AwkwardNamesExist) {
    const auto count = [](auto holds) {
        return std::count_if(cat::all_names().begin(), cat::all_names().end(), holds);
    };
    EXPECT_GT(count(cat::use_full_name), 0);
    EXPECT_GT(count([](const std::string& n) { return cat::use_package_name(n) && !cat::use_full_name(n); }), 0);
    EXPECT_EQ(cat::tables()[cat::PGM_FAMILY_PCF].count("NONE"), 1U);
}

}  // namespace
