#include "profile/tables.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "profile/look_up.h"
#include "profile/output.h"
#include "stl.h"
#include "terminal/did_you_mean.h"
#include "terminal/filtered_listing.h"
#include "terminal/schema.h"

namespace {

template <class IDENTIFIER>
std::string name_of(int number) {
    std::string name = dstr_get_user_string(static_cast<IDENTIFIER>(number));
    stl_toupper(name);
    return name;
}

struct INDEX_TABLE {
    const char* option;
    const char* name;
    const char* description;
    PROFILE_KEY key;
    std::string (*entry_name)(int number);
};

constexpr std::array INDEX_TABLES{
    INDEX_TABLE{"--family", "family", "The table of the families", PROFILE_KEY::FAMILY, name_of<DEV_FAMILY_ENUM>},
    INDEX_TABLE{"--device", "device", "The table of the devices", PROFILE_KEY::DEVICE, name_of<DEV_DEVICE_ENUM>},
    INDEX_TABLE{"--part", "part", "The table of the parts", PROFILE_KEY::PART, name_of<int>},
};

JSON entry_schema() {
    return object_schema({{"table", choice_schema({"family", "device", "part"})},
                          {"number", number_schema()},
                          {"name", text_schema()},
                          {"index", or_null(number_schema())},
                          {"key", or_null(text_schema())}});
}

/// The entries of index tables.
struct SHOWN_ENTRIES {
    std::vector<std::string> names;  ///< of all entries, whether they fit the pattern or not
    std::vector<JSON> rows;
    TEXT_TABLE table{{"table", "number", "name", "index", "key"}};
};

void add_entries(const INDEX_TABLE& table, PROFILE_DATABASE& database, const GIVEN_PATTERN& pattern,
                 SHOWN_ENTRIES& shown) {
    const std::span<const DWORD> entries = database.index_table(table.key);
    for (std::size_t number = 0; number < entries.size(); ++number) {
        const std::string name = table.entry_name(static_cast<int>(number));
        shown.names.push_back(name);
        if (!pattern.fits(name)) {
            continue;
        }
        const DWORD index = entries[number];
        const bool governed = index < database.count();
        const std::string key = governed ? key_text(database.get_device_database()[index]) : "";
        shown.rows.push_back({{"table", table.name},
                              {"number", number},
                              {"name", name},
                              {"index", governed ? JSON(index) : JSON()},
                              {"key", governed ? JSON(key) : JSON()}});
        shown.table.add(
            {table.name, std::to_string(number), name, governed ? std::to_string(index) : "-", governed ? key : "-"});
    }
}

/// That no entry fits the pattern, and what may have been meant.
std::string no_entry_text(const ARGUMENTS& given, const std::vector<std::string>& names) {
    const auto count_fitting = [&names](const ARGUMENTS& others) {
        const GIVEN_PATTERN longer(others);
        return std::count_if(names.begin(), names.end(),
                             [&longer](const std::string& name) { return longer.fits(name); });
    };
    return fmt::format("the index tables have no entry{}{}", given_pattern_text(given),
                       did_you_mean_by_pattern(
                           given, [&names](const std::string& name) { return nearest(name, names); }, count_fitting));
}

void show_tables(const ARGUMENTS& given, COMMAND& command) {
    const bool is_choice = std::any_of(INDEX_TABLES.begin(), INDEX_TABLES.end(),
                                       [&given](const INDEX_TABLE& table) { return given.has(table.option); });
    PROFILE_DATABASE database;
    const GIVEN_PATTERN pattern(given);
    SHOWN_ENTRIES shown;
    for (const INDEX_TABLE& table : INDEX_TABLES) {
        if (!is_choice || given.has(table.option)) {
            add_entries(table, database, pattern, shown);
        }
    }
    print_filtered_listing(
        entry_schema(), shown.rows, shown.table, [&] { return no_entry_text(given, shown.names); }, given, command);
}

}  // namespace

VERB profile_tables_verb() {
    VERB verb = with_pattern(VERB("tables",
                                  "The index tables of the database: which record governs each family, device and part",
                                  "pgmdev profile tables --device \"OSPREY*\"", show_tables));
    for (const INDEX_TABLE& table : INDEX_TABLES) {
        verb.takes({table.option, table.description, ARGUMENT::FLAG});
    }
    return with_list_options(std::move(verb), entry_schema);
}
