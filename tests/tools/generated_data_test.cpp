#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "names/compiled_in_data.h"
#include "tools/shipped_catalog.h"

namespace {

using TABLE = std::map<std::string, std::vector<std::string>>;

/// Unpacks a data set, checks its frame, and returns the body.
std::string body_of(const BYTE* data, DWORD packed_length, DWORD length) {
    std::string container(length + 1, '\0');  // a byte more, to see that the length is exact
    auto produced = static_cast<uLongf>(container.size());
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(container.data()), &produced, data, packed_length), Z_OK);
    EXPECT_EQ(produced, length);
    container.resize(length);
    EXPECT_EQ(container.substr(0, 10), "PGMDEV_DDB");
    // What the complement of the check sum leaves when it is appended to what it was made from, top byte first.
    std::string message = container.substr(0, length - 4);
    message.append(container.rbegin(), container.rbegin() + 4);
    unsigned long long remainder = 0xFFFFFFFF;
    for (const char c : message) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool in = ((static_cast<unsigned char>(c) >> bit) & 1) != 0;
            const bool out = (remainder & 0x80000000) != 0;
            remainder = (remainder << 1) & 0xFFFFFFFF;
            remainder = in != out ? remainder ^ 0x04C11DB7 : remainder;
        }
    }
    EXPECT_EQ(remainder, 0xC704DD7BULL);
    return container.substr(10, length - 14);
}

/// Splits at NULs; a record ends where an empty text follows its entries, a table where another one follows.
std::vector<TABLE> tables_of(const std::string& body) {
    std::vector<std::string> texts;
    std::size_t begin = 0;
    for (std::size_t end = body.find('\0'); end != std::string::npos; end = body.find('\0', begin)) {
        texts.push_back(body.substr(begin, end - begin));
        begin = end + 1;
    }
    EXPECT_EQ(begin, body.size());
    std::vector<TABLE> tables(1);
    std::string key;
    for (const std::string& text : texts) {
        if (text.empty() && key.empty()) {
            tables.emplace_back();
        } else if (text.empty()) {
            key.clear();
        } else if (key.empty()) {
            key = text;
            EXPECT_TRUE(tables.back().emplace(key, std::vector<std::string>()).second) << key << " twice";
        } else {
            tables.back()[key].push_back(text);
        }
    }
    EXPECT_TRUE(tables.back().empty());
    tables.pop_back();
    return tables;
}

const std::vector<TABLE>& tables() {
    static const std::vector<TABLE> read =
        tables_of(body_of(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH));
    return read;
}

std::set<std::string> keys(std::size_t table) {
    std::set<std::string> keys;
    for (const auto& [key, entries] : tables()[table]) {
        keys.insert(key);
    }
    return keys;
}

/// The entries of a table; each must occur once.
std::set<std::string> entries(std::size_t table) {
    std::set<std::string> found;
    for (const auto& [key, list] : tables()[table]) {
        EXPECT_FALSE(list.empty()) << key;
        for (const std::string& entry : list) {
            EXPECT_TRUE(found.insert(entry).second) << entry << " twice in table " << table;
        }
    }
    return found;
}

TEST(GeneratedGrammar, HasTheEightTablesAtScale) {
    constexpr std::array<std::array<double, 2>, 8> SIZES{
        {{3427, 15988}, {2304, 3427}, {277, 2304}, {9, 2304}, {307, 899}, {9, 899}, {8, 56}, {43, 307}}};
    ASSERT_EQ(tables().size(), SIZES.size());
    for (std::size_t table = 0; table < SIZES.size(); ++table) {
        EXPECT_NEAR(static_cast<double>(keys(table).size()), SIZES[table][0], SIZES[table][0] * 0.02) << table;
        EXPECT_NEAR(static_cast<double>(entries(table).size()), SIZES[table][1], SIZES[table][1] * 0.02) << table;
    }
}

TEST(GeneratedGrammar, SpellsNamesAsLookupsNormaliseThem) {
    std::size_t longest = 0;
    for (std::size_t table = 0; table < 8; ++table) {
        std::set<std::string> names = keys(table);
        names.merge(entries(table));
        for (const std::string& name : names) {
            EXPECT_EQ(name, upper(name));
            EXPECT_EQ(name.find_first_of(" \t\r\n\v\f"), std::string::npos) << name;
            longest = std::max(longest, name.size());
        }
    }
    EXPECT_EQ(longest, 37U);
}

TEST(GeneratedGrammar, RelatesItsTablesToEachOther) {
    EXPECT_EQ(keys(0), entries(1));
    EXPECT_EQ(keys(1), entries(2));
    EXPECT_EQ(keys(1), entries(3));
    EXPECT_EQ(entries(4), entries(5));
    EXPECT_EQ(keys(3), keys(5));
    EXPECT_EQ(keys(3).count("NONE"), 1U);
    std::set<std::string> programmer_parts = keys(2);
    programmer_parts.merge(keys(4));
    EXPECT_EQ(entries(7), programmer_parts);  // each of them has a family
    for (const std::string& family : keys(6)) {
        EXPECT_EQ(keys(3).count(family), 1U) << family;
    }
}

/// Adds an entry unless it is there, as often as parts repeat what they share.
void put(TABLE& table, const std::string& key, const std::string& entry) {
    std::vector<std::string>& list = table[upper(key)];
    if (std::find(list.begin(), list.end(), upper(entry)) == list.end()) {
        list.push_back(upper(entry));
    }
}

TEST(GeneratedGrammar, SaysWhatTheCatalogSays) {
    std::vector<TABLE> expected(8);
    for (const auto& [number, family] : catalog().families) {
        if (catalog().programmer_families.at(family) != "NONE") {
            put(expected[6], catalog().programmer_families.at(family), family);
        }
    }
    for (const PLAIN_DEVICE& device : catalog().devices) {
        if (device.pcf != "-") {
            put(expected[4], device.pcf, device.name);
            put(expected[5], catalog().programmer_families.at(device.family), device.name);
            put(expected[7], device.family, device.pcf);
        }
    }
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.pcf != "-") {
            put(expected[0], part.package_name, part.name);
            put(expected[1], part.pgm_name, part.package_name);
            put(expected[2], part.pcf, part.pgm_name);
            put(expected[3], catalog().programmer_families.at(part.family), part.pgm_name);
        }
    }
    for (std::size_t table = 0; table < 8; ++table) {
        EXPECT_EQ(tables()[table], expected[table]) << table;
    }
}

TEST(GeneratedGrammar, HasTheCasesOfRealLists) {
    std::map<std::string, int> devices_by_programmer_part;
    for (const PLAIN_DEVICE& device : catalog().devices) {
        ++devices_by_programmer_part[device.pcf];
    }
    devices_by_programmer_part.erase("-");
    EXPECT_TRUE(std::any_of(devices_by_programmer_part.begin(), devices_by_programmer_part.end(),
                            [](const auto& shared) { return shared.second >= 20; }));

    const auto any_part = [](const auto& condition) {
        return std::any_of(catalog().parts.begin(), catalog().parts.end(), condition);
    };
    EXPECT_TRUE(any_part([](const PLAIN_PART& p) { return p.name == p.package_name && p.name == p.pgm_name; }));
    EXPECT_TRUE(any_part([](const PLAIN_PART& p) { return p.name != p.package_name && p.package_name == p.pgm_name; }));
    EXPECT_TRUE(any_part([](const PLAIN_PART& p) { return p.number == 0 && p.pcf != "-"; })) << "only in the grammar";
    EXPECT_TRUE(any_part([](const PLAIN_PART& p) { return p.number != 0 && p.pcf == "-"; })) << "only in the library";
    EXPECT_TRUE(any_part([](const PLAIN_PART& p) { return p.name != upper(p.name); })) << "display name in mixed case";
    EXPECT_TRUE(std::any_of(catalog().devices.begin(), catalog().devices.end(), [](const PLAIN_DEVICE& device) {
        return device.pcf != "-" && device.has_parts && !keys(1).contains(upper(device.name));
    })) << "a device that the library names otherwise";
}

TEST(GeneratedOrderingCodes, StandForPartsAtTheIndexesOfTheCatalog) {
    const std::string body = body_of(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
    EXPECT_EQ(body.substr(0, 4), std::string("\x8E\x49\x00\x00", 4)) << "18830 entries";
    std::vector<int> parts;
    int value = 0;
    int factor = 1;
    for (const char c : body.substr(4)) {
        const int byte = static_cast<unsigned char>(c);
        value += byte % 128 * factor;
        factor *= 128;
        if (byte < 128) {
            EXPECT_LE(factor, 128 * 128) << "more than two bytes";
            parts.push_back(value);
            value = 0;
            factor = 1;
        }
    }
    EXPECT_EQ(factor, 1);

    std::vector<int> expected(catalog().ordering_entries);
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.ordering_index >= 0) {
            expected.at(static_cast<std::size_t>(part.ordering_index)) = part.number;
        }
    }
    EXPECT_EQ(parts, expected);

    std::set<int> distinct(parts.begin(), parts.end());
    EXPECT_EQ(distinct.erase(0), 1U);
    const auto used = static_cast<std::size_t>(std::count_if(parts.begin(), parts.end(), [](int p) { return p != 0; }));
    EXPECT_EQ(distinct.size(), used) << "a part has two ordering codes";
    EXPECT_NEAR(static_cast<double>(used), 2999, 60);
}

TEST(GeneratedPartList, NamesPartDeviceAndProgrammerPart) {
    std::map<std::string, const PLAIN_PART*> expected;
    for (const PLAIN_PART& part : catalog().parts) {
        if (part.number != 0) {
            expected[part.name] = &part;
        }
    }
    std::ifstream list(TEST_INSTALL_DIR "/h/pgm_parts.txt");
    std::size_t lines = 0;
    for (std::string line; std::getline(list, line);) {
        if (line.empty() || line.substr(0, 2) == "//") {
            continue;
        }
        ++lines;
        std::istringstream words(line);
        const std::vector<std::string> tokens(std::istream_iterator<std::string>(words), {});
        ASSERT_GE(tokens.size(), 7U) << line;
        const PLAIN_PART& part = *expected.at(tokens[0]);
        ASSERT_EQ(tokens[1], part.device);
        ASSERT_EQ(tokens[6], part.pcf == "-" ? "NONE" : part.pcf);
    }
    EXPECT_EQ(lines, expected.size());
}

}  // namespace
