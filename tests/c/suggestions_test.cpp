#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "c/owned.h"

// Patterns, and what may have been meant by names that are not there: against distances computed in full.

namespace {

using NAMES = std::vector<std::string>;

NAMES names_in(const pgmdev_records* records) {
    NAMES names;
    EXPECT_EQ(member_names(records), NAMES{"name"});
    for (const NAMES& row : rows_of(records)) {
        names.push_back(row.at(0));
    }
    return names;
}

NAMES column(const pgmdev_records* records, const char* member) {
    NAMES texts;
    for (std::size_t i = 0; i < pgmdev_records_count(records); ++i) {
        const char* text = nullptr;
        EXPECT_EQ(pgmdev_records_text(records, i, member, &text, nullptr), PGMDEV_STATUS_OK);
        texts.emplace_back(text);
    }
    return texts;
}

/// How many characters must be added, left out, replaced or swapped with their neighbours: the whole table of it.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                table[i][j] = i + j;
                continue;
            }
            table[i][j] = std::min(
                {table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
            }
        }
    }
    return table[a.size()][b.size()];
}

/// Whether no more than `most` characters of `a` are without one of their own in `b`: each of them must be left out or
/// replaced, so that names of which this does not hold need no table.
bool shares_all_but(std::size_t most, std::string_view a, std::string b) {
    std::size_t without = 0;
    for (std::size_t i = 0; i < a.size() && without <= most; ++i) {
        const std::size_t place = b.find(a[i]);
        if (place == std::string::npos) {
            ++without;
        } else {
            b[place] = '\0';
        }
    }
    return without <= most;
}

/// The five nearest, of which no more than a quarter of the characters, one to three, differ; those as near by name.
NAMES expected_near(const std::string& name, const NAMES& candidates) {
    const std::size_t most = std::min<std::size_t>(std::max<std::size_t>(name.size() / 4, 1), 3);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& candidate : candidates) {
        const bool may_be_near = candidate.size() <= name.size() + most && name.size() <= candidate.size() + most &&
                                 shares_all_but(most, name, candidate);
        const std::size_t far = may_be_near ? distance(name, candidate) : most + 1;
        if (far > 0 && far <= most && !candidate.empty()) {
            near.emplace_back(far, candidate);
        }
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    NAMES names;
    for (std::size_t i = 0; i < near.size() && i < 5; ++i) {
        names.push_back(near[i].second);
    }
    return names;
}

/// The names with one character left out, doubled, replaced, or swapped with the next one.
NAMES misspelt(const NAMES& names, std::size_t step) {
    NAMES all;
    for (std::size_t i = 0; i < names.size(); i += step) {
        std::string name = names[i];
        const std::size_t place = 1 + i / step / 4 % (name.size() - 1);
        switch (i / step % 4) {
            case 0:
                name.erase(place, 1);
                break;
            case 1:
                name.insert(place, 1, name[place]);
                break;
            case 2:
                name[place] = '!';
                break;
            default:
                std::swap(name[place - 1], name[place]);
        }
        all.push_back(name);
    }
    return all;
}

NAMES suggested(const std::string& name, uint32_t kinds) {
    C_RECORDS suggestions;
    EXPECT_EQ(pgmdev_name_suggestions(name.c_str(), kinds, suggestions.place(), nullptr), PGMDEV_STATUS_OK);
    return names_in(suggestions);
}

}  // namespace

TEST(CSuggestions, PatternsFitTextsInAnyCase) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* records = pgmdev_flash_records(flash);
    const auto fitting = [records](const char* member, const char* pattern) {
        NAMES names;
        std::size_t record = 0;
        for (std::size_t first = 0;
             pgmdev_records_find_fitting(records, first, member, pattern, &record, nullptr) == PGMDEV_STATUS_OK;
             first = record + 1) {
            const char* name = nullptr;
            EXPECT_EQ(pgmdev_records_text(records, record, "device_name", &name, nullptr), PGMDEV_STATUS_OK);
            names.emplace_back(name);
        }
        EXPECT_EQ(record, PGMDEV_NO_RECORD);
        return names;
    };
    EXPECT_EQ(fitting("device_name", "w25q64j*"), (NAMES{"W25Q64JV", "W25Q64JVM", "W25Q64JWM"}));
    EXPECT_EQ(fitting("device_name", "W25Q64J?"), NAMES{"W25Q64JV"});
    EXPECT_EQ(fitting("device_name", "*w*q*6*4*jV"), (NAMES{"W25Q64JV", "W77Q64JV"}));
    EXPECT_EQ(fitting("device_name", "W25Q64J"), NAMES());
    EXPECT_EQ(fitting("device_name", ""), NAMES());
    EXPECT_EQ(fitting("device_name", "*").size(), pgmdev_records_count(records));
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_records_find_fitting(records, 0, "no such member", "*", &record, nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(pgmdev_records_find_fitting(records, 0, "memory_id", "*", &record, nullptr), PGMDEV_STATUS_NOT_FOUND);
}

TEST(CSuggestions, OfAMemberAreTheNearestTexts) {
    C_RECORDS devices;
    ASSERT_EQ(pgmdev_device_list(devices.place(), nullptr), PGMDEV_STATUS_OK);
    const NAMES names = column(devices, "name");
    C_RECORDS suggestions;
    std::size_t with_some = 0;
    for (const std::string& name : misspelt(names, 11)) {
        ASSERT_EQ(pgmdev_records_suggestions(devices, "name", name.c_str(), suggestions.place(), nullptr),
                  PGMDEV_STATUS_OK);
        ASSERT_EQ(names_in(suggestions), expected_near(name, names)) << name;
        with_some += pgmdev_records_count(suggestions) != 0 ? 1U : 0U;
    }
    EXPECT_GT(with_some, 20U);
    ASSERT_EQ(pgmdev_records_suggestions(devices, "name", "nothing like this", suggestions.place(), nullptr),
              PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_count(suggestions), 0U);
    EXPECT_EQ(pgmdev_records_suggestions(devices, "no such member", "any", suggestions.place(), nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(suggestions, nullptr);
}

TEST(CSuggestions, OfNamesAreOfTheKindsThatAreWanted) {
    pgmdev_part_filter filter{};
    filter.struct_size = sizeof filter;
    filter.hidden = true;
    C_RECORDS parts;
    C_RECORDS devices;
    C_RECORDS families;
    ASSERT_EQ(pgmdev_part_list(&filter, parts.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_device_list(devices.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_family_list(families.place(), nullptr), PGMDEV_STATUS_OK);
    const auto together = [](std::initializer_list<NAMES> lists) {
        NAMES all;
        for (const NAMES& list : lists) {
            all.insert(all.end(), list.begin(), list.end());
        }
        return all;
    };
    const NAMES part_names = column(parts, "name");
    const NAMES packages = together({column(parts, "package_name"), column(parts, "pgm_name")});
    const NAMES files = column(parts, "pgm_part_pcf");
    const NAMES device_names = column(devices, "name");
    const NAMES family_names = column(families, "name");
    const std::map<uint32_t, NAMES> kinds{
        {PGMDEV_NAMED_PART, part_names},
        {PGMDEV_NAMED_PACKAGE, packages},
        {PGMDEV_NAMED_PROGRAMMER_PART, files},
        {PGMDEV_NAMED_DEVICE, device_names},
        {PGMDEV_NAMED_FAMILY, family_names},
        {PGMDEV_NAMED_ANYTHING, together({part_names, packages, files, device_names, family_names})},
    };
    for (const auto& [kind, names] : kinds) {
        std::size_t with_some = 0;
        for (const std::string& name : misspelt(names, names.size() / 12 + 1)) {
            const NAMES found = suggested(name, kind);
            ASSERT_EQ(found, expected_near(name, names)) << name << ' ' << kind;
            with_some += found.empty() ? 0U : 1U;
        }
        EXPECT_GT(with_some, 4U) << kind;
    }
    EXPECT_EQ(suggested("kestrell", PGMDEV_NAMED_FAMILY), NAMES{"KESTREL"});
    EXPECT_EQ(suggested("ekstrel", PGMDEV_NAMED_FAMILY), NAMES{"KESTREL"});
    EXPECT_EQ(suggested("kestrell", PGMDEV_NAMED_PART), NAMES());
    EXPECT_EQ(suggested("", PGMDEV_NAMED_ANYTHING), NAMES());
}

TEST(CSuggestions, OfFlashBeginWithLongerNames) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    const auto of = [&flash](const char* name) {
        C_RECORDS suggestions;
        EXPECT_EQ(pgmdev_flash_suggestions(flash, name, suggestions.place(), nullptr), PGMDEV_STATUS_OK);
        return names_in(suggestions);
    };
    // The command says the same: pgmdev flash show W25Q64VJ.
    EXPECT_EQ(of("W25Q64VJ"), (NAMES{"W25Q64JV", "W25Q64BV", "W25Q64CV", "W25Q64DW", "W25Q64"}));
    const NAMES longer = of("w25q64j");
    ASSERT_GE(longer.size(), 2U);
    EXPECT_EQ(NAMES(longer.begin(), longer.begin() + 2), (NAMES{"W25Q64JV", "W25Q64JVM"}));
    EXPECT_EQ(of("W25Q128J").size(), 8U);  // of more, shorter ones too
    EXPECT_EQ(of("nothing like this"), NAMES());
}

TEST(CSuggestions, OfNoKindsAndOfUnknownOnesAreRefused) {
    for (const uint32_t kinds : {0U, PGMDEV_NAMED_ANYTHING + 1U, UINT32_MAX}) {
        C_RECORDS suggestions;
        C_ERROR error;
        EXPECT_EQ(pgmdev_name_suggestions("KES50", kinds, suggestions.place(), error.place()),
                  PGMDEV_STATUS_INVALID_ARGUMENT);
        EXPECT_STREQ(pgmdev_error_message(error), "there are no such kinds of names");
    }
}
