#include "nouns.h"

#include <string>

#include "pgmdev_dev_info_table.h"
#include "profile/look_up.h"
#include "profile/output.h"
#include "profile/show.h"
#include "profile/table_records.h"
#include "profile/tables.h"
#include "tables/table_verbs.h"
#include "terminal/listing.h"

namespace {

void list(const ARGUMENTS& given, const COMMAND& command) {
    PROFILE_DATABASE database;
    print_records({database.get_device_database(), database.count()}, given, command);
}

struct PROFILE_TABLES : PROFILE_RECORDS {
    using TABLE = PGMDEV_DEV_INFO_TABLE;
    static constexpr const char* NOUN = "profile";
    static constexpr const char* SOURCE_TABLE = "data/dev_info/pgm_dev_info.csv";
    static constexpr const char* DATABASE = "pgm_dev_info.pcf";
    static constexpr const char* DUMPED = "All records of a packed database";
    static constexpr const char* ROW_KEY = "row";
    static constexpr const DATABASE_KIND& DATABASE_FORMAT = PROFILE_DATABASE_KIND;
    static constexpr bool NEEDS_PART_LIST = true;

    static TABLE_SUPPORT support_of(const std::string& /*csv_file*/, const std::vector<RECORD>& /*records*/) {
        return {};
    }
    static JSON support_schema() { return object_schema({}); }
    static void compile(const FIO_PATH& csv_file, const FIO_PATH& pcf_file) {
        PGMDEV_DEV_INFO_MANAGER(true).generate_device_database(csv_file, pcf_file);
    }
    static TABLE read(const std::string& pcf_file, const char* argument) {
        return read_database(PROFILE_DATABASE_KIND, argument_place(pcf_file, argument),
                             [&pcf_file] { return TABLE::from_database(pcf_file); });
    }
    static JSON row() { return profile_schema(); }
    static void print(const TABLE& table, const ARGUMENTS& given, const COMMAND& command) {
        print_records(table.records(), given, command);
    }
};

}  // namespace

NOUN_CONTENTS profile_contents() {
    std::vector<VERB> verbs =
        list_of(with_list_options(VERB("list", "All records of the database", "pgmdev --json profile list", list),
                                  profile_schema),
                profile_show_verb(), profile_tables_verb());
    return {with_table_verbs<PROFILE_TABLES>(std::move(verbs))};
}
