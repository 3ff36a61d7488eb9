#include "about/doctor.h"
#include "about/schema.h"
#include "about/version.h"
#include "nouns.h"
#include "page/page.h"
#include "terminal/global_options.h"

namespace {

NOUN_CONTENTS all_contents() {
    return {
        list_of(doctor_verb(), page_verb(), schema_verb()),
        list_of(
            NOUN("flash", "Serial flash devices: identify, look up, check and compile the table",
                 "pgmdev flash identify 20BA18", flash_contents),
            NOUN("hps", "Hard processor systems, and the flash devices they boot from", "pgmdev hps spi", hps_contents),
            NOUN("params", "The parameter blocks of pgm_flash.ini in the module directory", "pgmdev params list",
                 params_contents),
            NOUN("profile", "Device programming profiles: look up, check and compile the table",
                 "pgmdev profile show --family Kestrel", profile_contents),
            NOUN("name", "The spellings of a device's name", "pgmdev name show KES50C6", name_contents),
            NOUN("part", "Parts by less specific names", "pgmdev part complete KES50", part_contents),
            NOUN("opn", "Ordering codes: indexes and hashes of parts", "pgmdev opn index KES50C6", opn_contents),
            NOUN("device", "Devices of the device library", device_contents),
            NOUN("family", "Families of devices", family_contents),
            NOUN("enum", "Names and values of the programmer's enumerations", "pgmdev enum list sector",
                 enum_contents))};
}

std::vector<GLOBAL_OPTION> all_options() {
    std::vector<GLOBAL_OPTION> options = global_options();
    options.push_back(version_option());  // behind those that it heeds
    return options;
}

COMMAND_TABLE make() {
    return {NOUN("pgmdev", "The device data of Tessary: look it up, check it, compile it.",
                 "pgmdev flash identify 20BA18", all_contents),
            all_options(),
            "Exit codes: 0 done, 1 not found, 2 wrong usage, or a description was refused, "
            "3 an internal error was reported, or a table or a dump was refused.\n"};
}

}  // namespace

const COMMAND_TABLE& whole_command() {
    static const COMMAND_TABLE table = make();
    return table;
}
