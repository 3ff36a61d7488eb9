#include "flash/identify_sfdp.h"

#include "flash/known_flash.h"
#include "flash/sfdp_dump.h"

void identify_with_sfdp(const FLASH_QUESTION& question, const std::string& dump, COMMAND& command) {
    KNOWN_FLASH flash;
    flash.query = question.text;
    flash.sfdp = sfdp_of(dump);
    FLASH_IDENTIFIER identifier(1);
    flash.identification = identifier.identify(0, question);
    give_known_flash({flash}, identifier, "", command);
}
