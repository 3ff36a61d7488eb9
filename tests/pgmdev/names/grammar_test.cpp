#include <gtest/gtest.h>

#include "names/grammar.h"
#include "names/stores.h"
#include "pgmdev/names/data_set.h"
#include "pgmdev/names/reference.h"
#include "support/repeatable_random.h"
#include "support/reports.h"

namespace {

namespace ref = ddb_reference;

using TABLES = std::vector<ref::TABLE>;
using TYPE = PGMDEV_DDB_GRAMMAR_ENUM;

const std::string NINTH_TABLE = "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)";
const std::string TABLE_COUNT = "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)";
const std::string BEYOND_END = "index < data_size";
const std::string NOT_EMPTY = "data[index] != 0";
const std::string NOT_ENDED = "index < data_size && data[index] == 0";
const std::string TWICE_IN_RECORD = "std::find(contents.begin(), contents.end(), content) == contents.end()";
const std::string NO_ENTRIES = "contents.size()";
const std::string TWICE_IN_TABLE = "map->find(key) == map->end()";

std::string report_on_body(const std::string& body) {
    const DATA_SET set(ref::container(body));
    return report_of([&] { build_grammar_store(set); });
}

std::string report_on(const TABLES& tables) {
    return report_on_body(ref::grammar_body(tables));
}

/// What an independent reader has to say about a body.
std::string expected_report(const std::string& body) {
    try {
        ref::read_grammar(ref::container(body));
    } catch (const ref::REFUSED& refused) {
        return refused.what();
    }
    return "(no report)";
}

TABLES with_table(std::size_t place, const ref::TABLE& table) {
    TABLES tables = ref::example_grammar();
    tables.at(place) = table;
    return tables;
}

/// Compares every key and every entry of a store with the maps of the independent reader.
void expect_equal(const GRAMMAR_STORE& store, const std::vector<ref::MAP>& maps) {
    for (DWORD type = 0; type < maps.size(); ++type) {
        const auto keys = ref::keys_by_walk(maps[type]);
        for (const auto& [key, entries] : maps[type]) {
            ASSERT_EQ(forward_lookup(&store, TYPE(type), std::string(key)), entries);
            for (const std::string& entry : entries) {
                ASSERT_EQ(store.tables[type]->key_of(entry), keys.at(entry));
            }
        }
    }
}

TEST(DdbGrammar, KeepsEveryKeyAndEntry) {
    const std::string container = ref::container(ref::grammar_body(ref::example_grammar()));
    const DATA_SET set(container);
    expect_equal(*build_grammar_store(set), ref::read_grammar(container));
}

TEST(DdbGrammar, RefusesAnEmptyTable) {
    EXPECT_EQ(report_on(with_table(3, {})), NOT_EMPTY);
    EXPECT_EQ(report_on(with_table(7, {})), NOT_EMPTY);
}

TEST(DdbGrammar, RefusesEveryOtherNumberOfTables) {
    TABLES tables = ref::example_grammar();
    tables.push_back({{"KEY", {"ENTRY"}}});
    EXPECT_EQ(report_on(tables), NINTH_TABLE);
    tables.resize(7);
    EXPECT_EQ(report_on(tables), TABLE_COUNT);
    EXPECT_EQ(report_on({}), TABLE_COUNT);
}

TEST(DdbGrammar, RefusesARecordWithoutEntries) {
    EXPECT_EQ(report_on(with_table(0, {{"KEY", {}}})), NO_ENTRIES);
}

TEST(DdbGrammar, RefusesAnEmptyKey) {
    EXPECT_EQ(report_on(with_table(0, {{"", {"ENTRY"}}})), NOT_EMPTY);
}

TEST(DdbGrammar, RefusesAKeyTwice) {
    EXPECT_EQ(report_on(with_table(1, {{"KEY", {"A"}}, {"OTHER", {"B"}}, {"KEY", {"C"}}})), TWICE_IN_TABLE);
    EXPECT_EQ(report_on(with_table(1, {{"KEY", {"A"}}, {"key", {"B"}}})), "(no report)");
}

TEST(DdbGrammar, RefusesAnEntryTwiceInOneRecord) {
    EXPECT_EQ(report_on(with_table(2, {{"KEY", {"A", "B", "A"}}})), TWICE_IN_RECORD);
    EXPECT_EQ(report_on(with_table(2, {{"A", {"X"}}, {"B", {"X", "Y", "X"}}})), TWICE_IN_RECORD);
    // The entry comes before the key of its record is looked at.
    EXPECT_EQ(report_on(with_table(2, {{"KEY", {"A"}}, {"KEY", {"B", "B"}}})), TWICE_IN_RECORD);
}

TEST(DdbGrammar, RefusesTextThatRunsIntoTheCrc) {
    EXPECT_EQ(report_on_body("KEY"), NOT_ENDED);
    EXPECT_EQ(report_on_body(std::string("KEY\0", 4)), BEYOND_END);
    EXPECT_EQ(report_on_body(std::string("KEY\0ENTRY", 9)), NOT_ENDED);
    EXPECT_EQ(report_on_body(std::string("KEY\0ENTRY\0", 10)), BEYOND_END);
    EXPECT_EQ(report_on_body(std::string("KEY\0ENTRY\0\0", 11)), BEYOND_END);
}

TEST(DdbGrammar, AnEntryOfSeveralKeysBelongsToTheFirstInOrder) {
    for (const auto& keys : {std::vector<std::string>{"B", "A", "C"}, {"C", "B", "A"}, {"A", "B", "C"}}) {
        ref::TABLE table;
        for (const std::string& key : keys) {
            table.push_back({key, {"OWN_" + key, "SHARED"}});
        }
        const DATA_SET set(ref::container(ref::grammar_body(with_table(0, table))));
        const auto store = build_grammar_store(set);
        EXPECT_EQ(store->tables[0]->key_of("SHARED"), "A");
        EXPECT_EQ(store->tables[0]->key_of("OWN_C"), "C");
    }
    const DATA_SET prefix(ref::container(ref::grammar_body(with_table(0, {{"AB", {"X"}}, {"A", {"X"}}}))));
    EXPECT_EQ(build_grammar_store(prefix)->tables[0]->key_of("X"), "A");
    const DATA_SET high(ref::container(ref::grammar_body(with_table(0, {{"\xC4", {"X"}}, {"a", {"X"}}}))));
    EXPECT_EQ(build_grammar_store(high)->tables[0]->key_of("X"), "a");
}

TEST(DdbGrammar, RefusesEveryTruncation) {
    const std::string body = ref::grammar_body(ref::example_grammar());
    for (std::size_t length = 0; length < body.size(); ++length) {
        const std::string truncated = body.substr(0, length);
        ASSERT_NE(expected_report(truncated), "(no report)");
        ASSERT_EQ(report_on_body(truncated), expected_report(truncated)) << length;
    }
}

TEST(DdbGrammar, AgreesWithAnIndependentReaderOnDamagedBodies) {
    constexpr int ROUNDS = 20 * TEST_ROUNDS;
    auto random = repeatable_random(20);
    const std::string original = ref::grammar_body(ref::example_grammar());
    int accepted = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        std::string body = original;
        for (auto edits = random() % 3 + 1; edits > 0; --edits) {
            const std::size_t place = random() % body.size();
            switch (random() % 4) {
                case 0:
                    body[place] = 0;
                    break;
                case 1:
                    body.erase(place, random() % 12 + 1);
                    break;
                case 2:
                    body.insert(place, original, random() % original.size(), random() % 20);
                    break;
                default:
                    body[place] = static_cast<char>("ABC1_"[random() % 5]);
            }
        }
        const std::string expected = expected_report(body);
        ASSERT_EQ(report_on_body(body), expected) << round;
        if (expected == "(no report)") {
            ++accepted;
            const DATA_SET set(ref::container(body));
            expect_equal(*build_grammar_store(set), ref::read_grammar(ref::container(body)));
        }
    }
    EXPECT_GT(accepted, ROUNDS / 20);
}

TEST(DdbGrammar, WhatIsKnownOfAStreamIsUsedForNoOther) {
    const std::string container = ref::container(ref::grammar_body(ref::example_grammar()));
    const DATA_SET set(container);
    const auto made = build_grammar_store(set);
    COMPILED_DATA_SET indexed = set;
    indexed.index = made->index;
    indexed.text = reinterpret_cast<const char*>(made->text.get());
    indexed.known_stream = text_digest({reinterpret_cast<const char*>(indexed.stream), indexed.stream_length});
    const auto store = build_grammar_store(indexed);
    EXPECT_TRUE(store->index.empty() && store->text == nullptr);
    expect_equal(*store, ref::read_grammar(container));

    const std::string other_container = ref::container(ref::grammar_body(with_table(3, {{"OTHER", {"A", "B"}}})));
    const DATA_SET other(other_container);
    COMPILED_DATA_SET wrongly_indexed = other;
    wrongly_indexed.index = indexed.index;
    wrongly_indexed.text = indexed.text;
    wrongly_indexed.known_stream = indexed.known_stream;
    const auto other_store = build_grammar_store(wrongly_indexed);
    EXPECT_FALSE(other_store->index.empty());
    expect_equal(*other_store, ref::read_grammar(other_container));

    COMPILED_DATA_SET flipped = indexed;
    for (DWORD i = 0; i < indexed.stream_length; ++i) {
        std::string stream(indexed.stream, indexed.stream + indexed.stream_length);
        stream[i] = static_cast<char>(stream[i] ^ 1);
        flipped.stream = reinterpret_cast<const BYTE*>(stream.data());
        // Refused, or, since some bits of a stream mean nothing, decompressed.
        report_of([&] { EXPECT_NE(build_grammar_store(flipped)->text, nullptr) << i; });
    }

    const DATA_SET damaged(ref::container("KEY"));
    wrongly_indexed.stream = static_cast<const COMPILED_DATA_SET&>(damaged).stream;
    wrongly_indexed.stream_length = static_cast<const COMPILED_DATA_SET&>(damaged).stream_length;
    wrongly_indexed.length = static_cast<const COMPILED_DATA_SET&>(damaged).length;
    EXPECT_EQ(report_of([&] { build_grammar_store(wrongly_indexed); }), NOT_ENDED);
}

TEST(DdbGrammar, ListsTheKeysInTheirOrder) {
    const DATA_SET set(ref::container(ref::grammar_body(with_table(6, {{"B", {"X"}}, {"C", {"Y"}}, {"A", {"Z"}}}))));
    const auto store = build_grammar_store(set);
    EXPECT_EQ(store->tables[6]->keys(), (std::vector<std::string_view>{"B", "C", "A"}));
}

TEST(DdbGrammar, HoldsTablesOfAllSizes) {
    for (const std::size_t count : {1U, 31U, 32U, 33U, 127U, 128U, 129U, 5000U}) {
        ref::TABLE table;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string number = std::to_string(i * 7919);
            table.push_back({"K" + number, {"E" + number, "LONG_ENTRY_NAME_" + number}});
        }
        const std::string container = ref::container(ref::grammar_body(with_table(5, table)));
        const DATA_SET set(container);
        const auto store = build_grammar_store(set);
        expect_equal(*store, ref::read_grammar(container));
        EXPECT_EQ(store->tables[5]->key_of("LONG_ENTRY_NAME_"), "");
        EXPECT_EQ(store->tables[5]->key_of("K0"), "");
        EXPECT_TRUE(store->tables[5]->entries_of("E0").empty());
    }
}

TEST(DdbLookup, ChecksStoreTypeAndTable) {
    const std::string name = "NAME";
    const GRAMMAR_STORE hollow;
    EXPECT_REPORT(reverse_lookup(nullptr, TYPE::MAX, name), "mgr != NULL");
    EXPECT_REPORT(reverse_lookup(&hollow, TYPE::MAX, name), "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX");
    EXPECT_REPORT(reverse_lookup(&hollow, TYPE::FAMILY, name), "mapping != NULL");
    EXPECT_REPORT(forward_lookup(&hollow, TYPE::FAMILY, name), "mapping != NULL");
}

TEST(DdbLookup, NormalisesTheCallersStringInPlace) {
    const DATA_SET set(ref::container(ref::grammar_body(ref::example_grammar())));
    const auto store = build_grammar_store(set);
    std::string name = " \t\r\n\v\fdevice_a1f100c6 ";
    EXPECT_EQ(reverse_lookup(store.get(), TYPE::PACKAGE_NAME, name), "DEVICE_A1F100");
    EXPECT_EQ(name, "DEVICE_A1F100C6");
    name = " pcf_a1";
    EXPECT_EQ(forward_lookup(store.get(), TYPE::DEV_PART_PCF, name), (std::vector<std::string>{"LIB_A1", "LIB_A1_ES"}));
    EXPECT_EQ(name, "PCF_A1");
    name = "\xE4 b";  // only ASCII letters have a case; blanks inside stay
    EXPECT_EQ(reverse_lookup(store.get(), TYPE::PACKAGE_NAME, name), "");
    EXPECT_EQ(name, "\xE4 B");
}

TEST(DdbLookup, FindsWholeNamesOnly) {
    const DATA_SET set(ref::container(ref::grammar_body(ref::example_grammar())));
    const auto store = build_grammar_store(set);
    for (const std::string name : {"DEVICE_A1F100C", "DEVICE_A1F100C66", "EVICE_A1F100C6", "DEVICE_A1F100", ""}) {
        EXPECT_EQ(reverse_lookup(store.get(), TYPE::PACKAGE_NAME, name), "") << name;
    }
    EXPECT_EQ(reverse_lookup(store.get(), TYPE::PACKAGE_NAME, std::string("SOLO_1\0", 7)), "");
    EXPECT_EQ(reverse_lookup(store.get(), TYPE::PACKAGE_NAME, std::string(100000, 'A')), "");
    EXPECT_TRUE(forward_lookup(store.get(), TYPE::DEV_PART_PCF, "PCF_A").empty());
}

}  // namespace
