#include "flash/identify_sfdp.h"

#include "flash/database.h"
#include "flash/known_flash.h"
#include "flash/sfdp_dump.h"

void identify_with_sfdp(const ARGUMENTS& given, COMMAND& command) {
    const std::vector<std::string>& responses = given.texts("HEX");
    if (responses.size() != 1 || responses.front() == "-") {
        throw USAGE_ERROR("expected one response HEX with --sfdp");
    }
    KNOWN_FLASH flash;
    flash.query = responses.front();
    flash.response = response_bytes(flash.query);
    flash.sfdp = sfdp_of(given.text("--sfdp"));
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    flash.mapped = map_response(manager, flash.response, given.has("--silicon"));
    give_known_flash({flash}, "", command);
}
