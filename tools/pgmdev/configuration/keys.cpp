#include "configuration/keys.h"

#include <set>

#include "files/origins.h"
#include "gen.h"
#include "msg.h"
#include "pgmdev_flash_table.h"
#include "pgmdev_user_flash.h"
#include "terminal/reports.h"

namespace {

/// The switches that enable rows of the flash database; whether it could be read.
bool add_row_switches(std::vector<CONFIGURATION_KEY>& keys) try {
    std::set<std::string> switches;
    const auto table = PGMDEV_FLASH_TABLE::from_database(flash_database_place().path);
    for (const PGMDEV_SFL_FLASH_INFO& record : table.records()) {
        switches.insert(enabling_switch_of(record));
    }
    switches.erase("");
    for (const std::string& name : switches) {
        keys.push_back({name, CONFIGURATION_KEY::SWITCH});
    }
    const bool read = !last_report();
    forget_report();
    return read;
} catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
    forget_report();  // the verb that needs the database will tell
    return false;
}

}  // namespace

std::string enabling_switch_of(const PGMDEV_SFL_FLASH_INFO& record) {
    constexpr const char* NO_SWITCH = "NONE";
    return gen_stricmp(record.ini, NO_SWITCH) == 0 ? "" : ROW_SWITCH + record.ini;
}

KNOWN_KEYS known_keys(bool with_row_switches) {
    const std::string user_flash = PGMDEV_USER_FLASH::CONFIGURATION_KEY;
    KNOWN_KEYS known;
    known.keys = {
        {"PGMDEV_ENABLE_GRAMMAR_DEBUG", CONFIGURATION_KEY::SWITCH},
        {user_flash, CONFIGURATION_KEY::TEXT},
        {user_flash + "_DEBUG", CONFIGURATION_KEY::SWITCH},
        {"TESSARY_DEBUG_LEVEL", CONFIGURATION_KEY::NUMBER},
        {"TESSARY_OUTBOX_DIR", CONFIGURATION_KEY::TEXT},
        {"TESSARY_CONFIG_FILE", CONFIGURATION_KEY::TEXT, true},
        {"TESSARY_INSTALL_DIR", CONFIGURATION_KEY::TEXT, true},
        {"TESSARY_DEVICE_DB_DIR", CONFIGURATION_KEY::TEXT, true},
        {"TESSARY_MODULE_DIR", CONFIGURATION_KEY::TEXT, true},
        {"TESSARY_SYSTEM_ROOT", CONFIGURATION_KEY::TEXT, true},
    };
    known.row_switches = with_row_switches && add_row_switches(known.keys);
    return known;
}
