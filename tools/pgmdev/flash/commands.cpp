#include "nouns.h"

#include <fmt/core.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "flash/database.h"
#include "flash/output.h"
#include "flash/table_records.h"
#include "flash/verbs.h"
#include "pgmdev_flash_table.h"
#include "tables/table_verbs.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/json.h"
#include "terminal/listing.h"

namespace {

void list(const ARGUMENTS& given, const COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    print_records(manager.get_flash_database(), manager.get_flash_count(), given, command);
}

std::vector<std::string> default_names(PGMDEV_FLASH_MANAGER& manager) {
    std::vector<std::string> names;
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        const PGMDEV_SFL_FLASH_INFO& record = manager.get_flash_database()[i];
        if (record.default_dev) {
            names.push_back(record.device_name);
        }
    }
    return names;
}

ANSWER show_one(PGMDEV_FLASH_MANAGER& manager, const std::string& name, const std::vector<std::string>& names) {
    ANSWER answer;
    const PGMDEV_SFL_FLASH_INFO* record = manager.get_default_flash(name);
    answer.found = record != nullptr;
    if (!answer.found) {
        answer.content = {{"index", nullptr}, {"device_name", name}};
        answer.missing = fmt::format("no flash is named \"{}\"", name);
        answer.candidates = longer_or_shorter(name, names);
        return answer;
    }
    const auto index = static_cast<DWORD>(record - manager.get_flash_database());
    answer.content = record_json(index, *record);
    answer.print = [index, record] { print_members(index, *record); };
    answer.is_block = true;
    return answer;
}

void show(const ARGUMENTS& given, COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    const std::vector<std::string> names = default_names(manager);
    answer_each(given.text("NAME"), command, [&](const std::string& name) { return show_one(manager, name, names); });
}

JSON show_schema() {
    return question_schema(indexed_record_members(), {"index", "device_name"});
}

struct FLASH_TABLES : FLASH_RECORDS {
    using TABLE = PGMDEV_FLASH_TABLE;
    static constexpr const char* NOUN = "flash";
    static constexpr const char* SOURCE_TABLE = "data/flash/pgm_flash.csv";
    static constexpr const char* DATABASE = "pgm_flash.pcf";
    static constexpr const char* DUMPED = "All records of a packed database, whatever switch enables them";
    static constexpr const char* ROW_KEY = "device_name";

    static void compile(const FIO_PATH& csv_file, const FIO_PATH& pcf_file) {
        PGMDEV_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv_file, pcf_file);
    }
    static TABLE read(const std::string& pcf_file) {
        TABLE table = TABLE::from_database(pcf_file);
        if (table.records().empty()) {
            throw std::runtime_error(pcf_file + " is not a flash database");
        }
        return table;
    }
    static JSON row() { return record_schema(); }
    static void print(const TABLE& table, const ARGUMENTS& given, const COMMAND& command) {
        print_records(table.records().data(), static_cast<DWORD>(table.records().size()), given, command);
    }
};

}  // namespace

NOUN flash_noun() {
    const std::vector<VERB> verbs{
        with_list_options(VERB("list", "All enabled records of the database", "pgmdev --json flash list", list),
                          record_schema),
        VERB("show", "The default record of a device name", "pgmdev flash show W25Q64JV", show)
            .takes({"NAME", "Device name, in any case; - reads one name per line"})
            .answers(show_schema),
        VERB("identify", "Which flash answered, and how it must be driven", "pgmdev flash identify 20BA18 \"EF 70 17\"",
             identify_flash)
            .takes({"--silicon", "The responses are one-byte electronic signatures", ARGUMENT::FLAG})
            .takes({"HEX",
                    "What the flash behind each device position answered, in hexadecimal, missing bytes taken as 0; "
                    "- reads one response per line",
                    ARGUMENT::TEXTS})
            .takes({"--user", "Try this encoded description, as flash define prints it, as record 0",
                    ARGUMENT::OPTIONAL_TEXT})
            .answers(identify_schema),
        VERB("define", "Describe a flash of your own by answering questions", "pgmdev flash define < answers.txt",
             define_flash)
            .tells("What is printed behind \"INI : \" is the value for the configuration key "
                   "PGM_USER_SFL_FLASH_INFO.\n")
            .answers(define_schema),
        VERB("decode", "What an encoded description holds, and why it would be refused",
             "pgmdev flash decode \"$PGM_USER_SFL_FLASH_INFO\"", decode_flash)
            .takes({"TEXT", "The encoded description; - reads one per line"})
            .answers(decode_schema),
    };
    return {"flash", "Serial flash devices: identify, look up, check and compile the table",
            "pgmdev flash identify 20BA18", with_table_verbs<FLASH_TABLES>(verbs)};
}
