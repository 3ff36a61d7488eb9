#include "nouns.h"

#include <fmt/core.h>

#include <string>
#include <vector>

#include "flash/database.h"
#include "flash/evidence.h"
#include "flash/list.h"
#include "flash/output.h"
#include "flash/sfdp.h"
#include "flash/show.h"
#include "flash/table_records.h"
#include "flash/verbs.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_table.h"
#include "tables/table_verbs.h"
#include "terminal/json.h"

namespace {

struct FLASH_TABLES : FLASH_RECORDS {
    using TABLE = PGMDEV_FLASH_TABLE;
    static constexpr const char* NOUN = "flash";
    static constexpr const char* SOURCE_TABLE = "data/flash/pgm_flash.csv";
    static constexpr const char* DATABASE = "pgm_flash.pcf";
    static constexpr const char* DUMPED = "All records of a packed database, whatever switch enables them";
    static constexpr const char* ROW_KEY = "device_name";
    static constexpr const DATABASE_KIND& DATABASE_FORMAT = FLASH_DATABASE_KIND;
    static constexpr bool NEEDS_PART_LIST = false;

    /// The list sources.csv in the directory of the table.
    static TABLE_SUPPORT support_of(const std::string& csv_file, const std::vector<RECORD>& records) {
        const FLASH_EVIDENCE evidence(read_flash_list(beside_flash_source(csv_file, FLASH_SOURCES_LIST)));
        return ::support_of(evidence, records);
    }

    static JSON support_schema() { return shares_schema(); }

    static void compile(const FIO_PATH& csv_file, const FIO_PATH& pcf_file) {
        PGMDEV_FLASH_MANAGER(false, 0, true, false).generate_flash_database(csv_file, pcf_file);
    }
    static TABLE read(const std::string& pcf_file, const char* argument) {
        return read_database(FLASH_DATABASE_KIND, argument_place(pcf_file, argument),
                             [&pcf_file] { return TABLE::from_database(pcf_file); });
    }
    static JSON row() { return record_schema(); }
    static void print(const TABLE& table, const ARGUMENTS& given, const COMMAND& command) {
        print_records(table.records().data(), static_cast<DWORD>(table.records().size()), given, command);
    }
};

}  // namespace

NOUN_CONTENTS flash_contents() {
    std::vector<VERB> verbs = list_of(
        flash_list_verb(), flash_show_verb(),
        VERB("identify", "Which flash answered, how sure that is, and how it must be driven",
             "pgmdev flash identify 20BA18 \"EF 70 17\" silicon:13", identify_flash)
            .takes({"--silicon", "The responses are one-byte electronic signatures", ARGUMENT::FLAG})
            .takes({"HEX",
                    "What the flash behind each device position answered, in hexadecimal, missing bytes taken as 0; "
                    "silicon:XX is an electronic signature; - reads one response per line",
                    ARGUMENT::OPTIONAL_TEXTS})
            .takes({"--user",
                    "Try this description as record 0: the text that flash define prints, or @FILE as it takes it",
                    ARGUMENT::OPTIONAL_TEXT})
            .takes({"--as", "Map the device at this position (from 0) to the flash of that name; may be repeated",
                    ARGUMENT::OPTIONAL_TEXTS, "POSITION=NAME"})
            .takes({"--log",
                    "Find the response in the output of a boot loader, a kernel or a tool, or in a hex dump; - reads "
                    "standard input",
                    ARGUMENT::OPTIONAL_TEXT, "FILE"})
            .takes({"--sfdp",
                    "What the flash says of itself, as flash sfdp takes it: shown beside the record of the one HEX",
                    ARGUMENT::OPTIONAL_TEXT, "DUMP"})
            .takes({"--system",
                    "Every serial NOR flash that the kernel found, below /sys or, in place of HEX, another root DIR",
                    ARGUMENT::FLAG})
            .tells("Ends with 1 when a device is not mapped, when no chip answers like this, and when the response is\n"
                   "not that of the chip that it is mapped to.\n")
            .answers(identify_schema),
        flash_sfdp_verb(),
        VERB("define", "Describe a flash of your own: by its fields, in a file, or by answering questions",
             "pgmdev flash define --like W25Q64JV --id C86517 device_name=MYFLASH", define_flash)
            .takes(
                {"FIELD=VALUE",
                 "A member of the record, as flash show lists it, such as device_bit_size=8Mbit or program_utime=5ms; "
                 "@FILE has them in lines, of up to three flash devices; without any, and without options, questions "
                 "are asked",
                 ARGUMENT::OPTIONAL_TEXTS})
            .takes({"--like", "What is not told is as for this flash of the database, or another name of one",
                    ARGUMENT::OPTIONAL_TEXT, "NAME"})
            .takes({"--sfdp", "What the flash says of itself, as flash sfdp takes it", ARGUMENT::OPTIONAL_TEXT, "DUMP"})
            .takes({"--id", "What it answers to the identification: maker, type and capacity byte",
                    ARGUMENT::OPTIONAL_TEXT, "HEX"})
            .takes({"--save", "Write the text into the configuration file in use", ARGUMENT::FLAG})
            .tells("What is printed, in the dialogue behind \"INI : \", is the value for the configuration key\n"
                   "PGM_USER_SFL_FLASH_INFO. A time below the described limit, such as a page program time of 700us,\n"
                   "is written as the limit: a longer one does no harm.\n")
            .answers(define_schema),
        VERB("reseal", "Sign a description for this build, after an update of the tool",
             "pgmdev flash reseal \"$PGM_USER_SFL_FLASH_INFO\"", reseal_flash)
            .takes(
                {"TEXT", "The encoded description, or @FILE; none: that of the configuration", ARGUMENT::OPTIONAL_TEXT})
            .takes({"--save", "Write the text into the configuration file in use", ARGUMENT::FLAG})
            .answers(define_schema),
        VERB("decode", "What an encoded description holds, and why it would be refused",
             "pgmdev flash decode \"$PGM_USER_SFL_FLASH_INFO\"", decode_flash)
            .takes({"TEXT", "The encoded description; - reads one per line"})
            .answers(decode_schema));
    return {with_table_verbs<FLASH_TABLES>(std::move(verbs))};
}
