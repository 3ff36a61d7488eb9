#include <set>

#include "c/owned.h"
#include "dstr.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"

// Every name of the catalog through the C interface, against what the classes answer.

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

std::string pcf_of(const std::string& name, bool family) {
    std::string part_pcf;
    std::string family_pcf;
    GRAMMAR::get_pgm_pcfs(name, part_pcf, family_pcf);
    return family ? family_pcf : part_pcf;
}

/// The class's own answer to each conversion, by its number.
std::string expected(pgmdev_name_conversion conversion, std::string name, uint32_t options) {
    const bool no_fallback = (options & PGMDEV_NAME_OR_ITSELF) == 0;
    switch (conversion) {
        case PGMDEV_NAME_PACKAGE:
            return GRAMMAR::get_package_name(name, no_fallback);
        case PGMDEV_NAME_PROGRAMMING:
            return GRAMMAR::get_pgm_name(name, (options & PGMDEV_NAME_FROM_PACKAGE) != 0, no_fallback);
        case PGMDEV_NAME_PROGRAMMING_PART:
            return GRAMMAR::get_pgm_part_pcf(name);
        case PGMDEV_NAME_PROGRAMMING_FAMILY:
            return GRAMMAR::get_pgm_family_pcf(name);
        case PGMDEV_NAME_DEVICE_PART:
            return GRAMMAR::get_dev_part_pcf(name);
        case PGMDEV_NAME_DEVICE_FAMILY:
            return GRAMMAR::get_dev_family_pcf(name);
        case PGMDEV_NAME_FAMILY_FAMILY:
            return GRAMMAR::get_pcf_family_pcf(name);
        case PGMDEV_NAME_FAMILY:
            return GRAMMAR::get_family(name);
        case PGMDEV_NAME_DEVICE:
            return GRAMMAR::get_pcf_device(name);
        case PGMDEV_NAME_PART_FILE:
            return pcf_of(name, false);
        default:
            return pcf_of(name, true);
    }
}

/// All names that the device library knows, and what these are called elsewhere.
const std::set<std::string>& all_names() {
    static const std::set<std::string> ALL = [] {
        std::set<std::string> names{"", "no such name", " kes50c6\t"};
        for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
            names.insert(dstr_get_user_string(part));
        }
        for (int number = 1; number < DEV_DEVICE_MAX; ++number) {
            names.insert(dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(number)));
        }
        for (int number = 1; number < DEV_FAMILY_MAX; ++number) {
            names.insert(dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(number)));
        }
        std::set<std::string> others;
        for (const std::string& name : names) {
            for (const auto conversion : {PGMDEV_NAME_PACKAGE, PGMDEV_NAME_PROGRAMMING, PGMDEV_NAME_PART_FILE,
                                          PGMDEV_NAME_FAMILY_FILE, PGMDEV_NAME_DEVICE_PART}) {
                others.insert(expected(conversion, name, 0));
            }
        }
        names.merge(others);
        return names;
    }();
    return ALL;
}

}  // namespace

TEST(CNames, AllAreConvertedAsByTheClass) {
    C_STRING converted;
    for (const std::string& name : all_names()) {
        for (pgmdev_name_conversion conversion = 0; conversion < PGMDEV_NAME_CONVERSIONS; ++conversion) {
            const pgmdev_status status = pgmdev_name_convert(conversion, name.c_str(), 0, converted.place(), nullptr);
            ASSERT_EQ(said(status, converted), said(expected(conversion, name, 0))) << name << ' ' << conversion;
        }
    }
    EXPECT_GT(all_names().size(), 10000U);
}

TEST(CNames, OptionsAreThoseOfTheClass) {
    C_STRING converted;
    for (const std::string name : {"KES50C6", "KES50", "any", ""}) {
        for (uint32_t options = 0; options < 4; ++options) {
            for (const auto conversion : {PGMDEV_NAME_PACKAGE, PGMDEV_NAME_PROGRAMMING}) {
                const pgmdev_status status =
                    pgmdev_name_convert(conversion, name.c_str(), options, converted.place(), nullptr);
                EXPECT_EQ(said(status, converted), said(expected(conversion, name, options)))
                    << name << ' ' << conversion << ' ' << options;
            }
        }
    }
}

TEST(CNames, SpellingsAreAllConversionsAtOnce) {
    const PGMDEV_PART_INDEX parts;
    for (std::string name : {"KES50C6", "KES50", "KES_50", "kestrel", "no such name"}) {
        C_RECORDS spellings;
        ASSERT_EQ(pgmdev_name_spellings(name.c_str(), spellings.place(), nullptr), PGMDEV_STATUS_OK);
        std::vector<std::string> row;
        for (pgmdev_name_conversion conversion = 0; conversion < PGMDEV_NAME_CONVERSIONS; ++conversion) {
            row.push_back(expected(conversion, name, 0));
        }
        row.emplace_back(GRAMMAR::use_full_name(name) ? "1" : "0");
        row.emplace_back(GRAMMAR::use_package_name(name) ? "1" : "0");
        row.push_back(parts.get_possible_full_name(name));
        EXPECT_EQ(rows_of(spellings), ROWS{row}) << name;
    }
}

TEST(CNames, WaysToANameAreThoseOfTheClass) {
    const auto names_in = [](const pgmdev_records* records) {
        std::vector<std::string> names;
        for (const std::vector<std::string>& row : rows_of(records)) {
            names.push_back(row.at(0));
        }
        return names;
    };
    C_RECORDS records;
    for (const std::string name : {"KES_50", "KES50", "KESTREL_PCF", "no such name"}) {
        ASSERT_EQ(pgmdev_name_origins(name.c_str(), records.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(names_in(records), PGMDEV_PART_INDEX::get_origins(name)) << name;
        EXPECT_EQ(names_in(records).empty(), name == "no such name");
    }
    ASSERT_EQ(pgmdev_name_converted(records.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(names_in(records), PGMDEV_PART_INDEX::get_converted_names());
    EXPECT_GT(pgmdev_records_count(records), 1000U);
}

TEST(CNames, WhatNamesServeFor) {
    int full = 0;
    for (const std::string& each : all_names()) {
        // A copy, which the question converts to upper case.
        std::string name = each;  // NOLINT(performance-unnecessary-copy-initialization)
        bool is_full = false;
        bool is_package = false;
        ASSERT_EQ(pgmdev_name_is_full_for_all(name.c_str(), &is_full, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_name_is_package_for_programming(name.c_str(), &is_package, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(is_full, GRAMMAR::use_full_name(name)) << name;
        ASSERT_EQ(is_package, GRAMMAR::use_package_name(name)) << name;
        full += is_full ? 1 : 0;
    }
    EXPECT_GT(full, 0);
}
