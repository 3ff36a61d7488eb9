#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "dev.h"
#include "gen.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "pgmdev_dev_info_table.h"
#include "support/plain_cells.h"
#include "support/scratch.h"
#include "support/settings.h"

// The real table: compiled, loaded, and compared cell by cell and entry by entry with its source, by a reader and rules
// of this test's own.

namespace {

namespace ref = dev_info_reference;

const std::string SOURCE = std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv";
const std::string DATABASE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";

std::vector<ref::CELLS> read_source() {
    std::ifstream file(SOURCE);
    std::vector<ref::CELLS> rows;
    for (std::string line; std::getline(file, line);) {
        rows.push_back(plain_cells(line));
    }
    return {rows.begin() + 2, rows.end()};
}

/// The programmer file of each device: that of its first line in the part list.
std::map<int, std::string> programmer_files() {
    std::ifstream file(gen_get_tessary_path() + "/h/pgm_parts.txt");
    std::map<int, std::string> files;
    for (std::string line; std::getline(file, line);) {
        std::istringstream stream(line);
        std::vector<std::string> words;
        for (std::string word; stream >> word;) {
            words.push_back(word);
        }
        if (words.size() >= 7 && words[0] != "//") {
            files.try_emplace(dstr_get_dev_device_enum_by_string(words[1].c_str()), words[6]);
        }
    }
    return files;
}

constexpr unsigned long NONE = 0xFFFFFFFF;

/// The first row with that key.
unsigned long row_with(const std::vector<ref::CELLS>& rows, std::size_t key, const std::string& value) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!value.empty() && ref::in_capitals(rows[i][key]) == ref::in_capitals(value)) {
            return static_cast<unsigned long>(i);
        }
    }
    return NONE;
}

/// The index tables, rule by rule.
ref::TABLES expected_tables(const std::vector<ref::CELLS>& rows) {
    ref::TABLES tables;
    const DEV_PART_MANAGER parts;
    const std::map<int, std::string> files = programmer_files();
    for (int family = 1; family <= 72; ++family) {
        const unsigned long own = row_with(rows, ref::FAMILY, ref::family_name(family));
        tables.family[static_cast<std::size_t>(family)] = own != NONE ? own : 1;
    }
    for (int device = 1; device <= 990; ++device) {
        unsigned long entry = device == 990 ? row_with(rows, ref::DEVICE, "GENERIC") : NONE;
        if (entry == NONE && files.contains(device)) {
            entry = row_with(rows, ref::PCF, files.at(device));
        }
        if (entry == NONE) {
            entry = tables.family[static_cast<std::size_t>(parts.get_family_of(static_cast<DEV_DEVICE_ENUM>(device)))];
        }
        tables.device[static_cast<std::size_t>(device)] = entry;
    }
    for (int part = 1; part < DEV_PART_MAX; ++part) {
        unsigned long entry = part == DEV_PART_GENERIC ? row_with(rows, ref::PART, "GENERIC") : NONE;
        if (entry == NONE) {
            entry = tables.device[static_cast<std::size_t>(parts.get_device_of(part))];
        }
        tables.part[static_cast<std::size_t>(part)] = entry;
    }
    return tables;
}

TEST(ShippedProfiles, TheBodyIsTheSourceCellByCellAndTheTablesFollowTheRules) {
    const std::vector<ref::CELLS> rows = read_source();
    ASSERT_EQ(rows.size(), 78U);
    const std::string body = ref::records(rows) + ref::tables(expected_tables(rows));
    const std::string file = read_file(DATABASE);
    EXPECT_EQ(file.substr(0, 44), ref::head() + ref::le32(body.size()));
    EXPECT_TRUE(ref::inflated(file.substr(44, file.size() - 46), body.size()) == body);
}

TEST(ShippedProfiles, EveryFamilyDeviceAndPartIsLookedUp) {
    const std::vector<ref::CELLS> rows = read_source();
    const ref::TABLES tables = expected_tables(rows);
    const DEVICE_DB_DIRECTORY directory(TEST_DEVICES_DIR);
    DEV_INFO_PROBE manager(false);
    const auto expect = [&](PGMDEV_DEVICE_INFO* found, unsigned long entry, const char* what, std::size_t number) {
        const std::unique_ptr<PGMDEV_DEVICE_INFO> info(found);
        ASSERT_EQ(info == nullptr, entry == NONE) << what << number;
        ASSERT_EQ(manager.m_index, entry) << what << number;
        if (info != nullptr) {
            ASSERT_EQ(*info, manager.get_device_database()[entry]) << what << number;
        }
    };
    for (std::size_t i = 0; i < 73; ++i) {
        expect(manager.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(i)), tables.family[i], "family ", i);
    }
    for (std::size_t i = 0; i < 991; ++i) {
        expect(manager.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(i)), tables.device[i], "device ", i);
    }
    for (std::size_t i = 0; i < tables.part.size(); ++i) {
        expect(manager.get_db_by_part(static_cast<int>(i)), tables.part[i], "part ", i);
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const std::vector<std::string> values = ref::values(manager.get_device_database()[row]);
        for (std::size_t i = 0; i < ref::MEMBERS; ++i) {
            EXPECT_EQ(values[i], ref::value(i, rows[row][i])) << row << " " << ref::COLUMNS[i].name;
        }
    }
}

TEST(ShippedProfiles, TheTableHasNoFaultAndLeavesOneFamilyToTheGenericRecord) {
    const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_source(SOURCE);
    ASSERT_EQ(table.faults().size(), 1U);
    EXPECT_EQ(PGMDEV_DEV_INFO_TABLE::describe(table.faults()[0], "t"),
              "t: warning: family CORNCRAKE has no row: record 1 governs it, the row of family GENERIC");
}

TEST(ShippedProfiles, EveryRuleIsAtWork) {
    const std::vector<ref::CELLS> rows = read_source();
    const ref::TABLES tables = expected_tables(rows);
    std::map<std::size_t, int> by_key;  // devices and parts by the key of their record
    for (const auto& entries : {tables.device, tables.part}) {
        for (const unsigned long entry : entries) {
            for (std::size_t key = 0; entry != NONE && key < 4; ++key) {
                by_key[key] += rows[entry][key].empty() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(by_key[ref::FAMILY], 10000);
    EXPECT_GT(by_key[ref::PCF], 100);
    EXPECT_GE(by_key[ref::DEVICE], 1);
    EXPECT_GE(by_key[ref::PART], 1);
}

}  // namespace
