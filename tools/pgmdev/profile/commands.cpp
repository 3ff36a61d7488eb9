#include "nouns.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "pgmdev_dev_info_table.h"
#include "profile/output.h"
#include "profile/show.h"
#include "profile/table_records.h"
#include "tables/table_verbs.h"
#include "terminal/listing.h"

namespace {

constexpr std::array<std::pair<const char*, PROFILE_KEY>, 3> KEY_OPTIONS{
    {{"--family", PROFILE_KEY::FAMILY}, {"--device", PROFILE_KEY::DEVICE}, {"--part", PROFILE_KEY::PART}}};

void list(const ARGUMENTS& given, const COMMAND& command) {
    PROFILE_DATABASE database;
    print_records({database.get_device_database(), database.count()}, given, command);
}

void show(const ARGUMENTS& given, COMMAND& command) {
    const auto is_given = [&given](const auto& option) { return given.has(option.first); };
    if (std::count_if(KEY_OPTIONS.begin(), KEY_OPTIONS.end(), is_given) != 1) {
        throw USAGE_ERROR("expected one of --family, --device and --part");
    }
    const auto [option, key] = *std::find_if(KEY_OPTIONS.begin(), KEY_OPTIONS.end(), is_given);
    show_profile(key, given.text(option), command);
}

struct PROFILE_TABLES : PROFILE_RECORDS {
    using TABLE = PGMDEV_DEV_INFO_TABLE;
    static constexpr const char* NOUN = "profile";
    static constexpr const char* SOURCE_TABLE = "data/dev_info/pgm_dev_info.csv";
    static constexpr const char* DATABASE = "pgm_dev_info.pcf";
    static constexpr const char* DUMPED = "All records of a packed database";
    static constexpr const char* ROW_KEY = "row";

    static void compile(const FIO_PATH& csv_file, const FIO_PATH& pcf_file) {
        PGMDEV_DEV_INFO_MANAGER(true).generate_device_database(csv_file, pcf_file);
    }
    static TABLE read(const std::string& pcf_file) { return TABLE::from_database(pcf_file); }
    static JSON row() { return profile_schema(); }
    static void print(const TABLE& table, const ARGUMENTS& given, const COMMAND& command) {
        print_records(table.records(), given, command);
    }
};

}  // namespace

NOUN profile_noun() {
    const std::vector<VERB> verbs{
        with_list_options(VERB("list", "All records of the database", "pgmdev --json profile list", list),
                          profile_schema),
        VERB("show", "The profile that governs a family, device or part, and the rule behind it",
             "pgmdev profile show --family Kestrel", show)
            .takes({"--family", "Family name, in any case; - reads one name per line", ARGUMENT::OPTIONAL_TEXT, "NAME"})
            .takes({"--device", "Device name, likewise", ARGUMENT::OPTIONAL_TEXT, "NAME"})
            .takes({"--part", "Part name, likewise", ARGUMENT::OPTIONAL_TEXT, "NAME"})
            .answers(show_profile_schema),
    };
    return {"profile", "Device programming profiles: look up, check and compile the table",
            "pgmdev profile show --family Kestrel", with_table_verbs<PROFILE_TABLES>(verbs)};
}
