#include "about/doctor.h"
#include "about/schema.h"
#include "about/version.h"
#include "nouns.h"
#include "page/page.h"
#include "terminal/global_options.h"

namespace {

COMMAND_TABLE make() {
    COMMAND_TABLE table;
    table.all = {"pgmdev", "The device data of Tessary: look it up, check it, compile it.",
                 "pgmdev flash identify 20BA18", list_of(doctor_verb(), page_verb(), schema_verb()),
                 list_of(flash_noun(), hps_noun(), params_noun(), profile_noun(), name_noun(), part_noun(), opn_noun(),
                         device_noun(), family_noun(), enum_noun())};
    table.options = global_options();
    table.options.push_back(version_option());  // behind those that it heeds
    table.notes =
        "Exit codes: 0 done, 1 not found, 2 wrong usage, 3 an internal error was reported, or a table or description "
        "was refused.\n";
    return table;
}

}  // namespace

const COMMAND_TABLE& whole_command() {
    static const COMMAND_TABLE table = make();
    return table;
}
