#include "flash/identify_sfdp.h"

#include <fmt/core.h>

#include "flash/database.h"
#include "flash/output.h"
#include "flash/sfdp_comparison.h"
#include "flash/sfdp_dump.h"
#include "flash/sfdp_json.h"
#include "flash/sfdp_text.h"
#include "terminal/answer.h"
#include "terminal/text_table.h"

JSON known_flash_json(const KNOWN_FLASH& flash) {
    JSON object{{"mapped", flash.mapped.record != nullptr},
                {"index", nullptr},
                {"device", nullptr},
                {"comparison", nullptr},
                {"sfdp", nullptr},
                {"record", nullptr}};
    if (flash.mapped.record != nullptr) {
        JSON device = JSON::object();
        add_members(device, *flash.mapped.record);
        object["index"] = flash.mapped.index;
        object["device"] = device;
    }
    if (flash.sfdp) {
        object["sfdp"] = sfdp_json(*flash.sfdp);
        object["record"] = derived_record_json(flash.sfdp->record(flash.response));
        if (flash.mapped.record != nullptr) {
            object["comparison"] = comparison_json(compare_with_sfdp(*flash.mapped.record, *flash.sfdp));
        }
    }
    return object;
}

std::vector<SCHEMA_MEMBER> known_flash_members() {
    return {{"mapped", flag_schema()},
            {"index", or_null(number_schema())},
            {"device", or_null(object_schema(record_members()))},
            {"comparison", or_null(comparison_schema())},
            {"sfdp", or_null(object_schema(sfdp_members()))},
            {"record", derived_record_schema()}};
}

void print_known_flash(const std::string& title, const KNOWN_FLASH& flash) {
    const PGMDEV_SFL_FLASH_INFO* record = flash.mapped.record;
    if (record == nullptr) {
        fmt::print("{}: no record matches\n", title);
    } else {
        fmt::print("{}: {} {}, record {}\n", title, printable(record->manufacturer_name),
                   printable(record->device_name), flash.mapped.index);
        print_summary(*record);
    }
    if (!flash.sfdp) {
        return;
    }
    if (record != nullptr) {
        print_comparison(compare_with_sfdp(*record, *flash.sfdp));
    } else {
        print_derived_record(flash.sfdp->record(flash.response));
    }
    for (const std::string& warning : flash.sfdp->warnings()) {
        fmt::print("The flash's own words are odd: {}\n", printable(warning));
    }
}

void identify_with_sfdp(const ARGUMENTS& given, COMMAND& command) {
    const std::vector<std::string>& responses = given.texts("HEX");
    if (responses.size() != 1 || responses.front() == "-") {
        throw USAGE_ERROR("expected one response HEX with --sfdp");
    }
    KNOWN_FLASH flash;
    flash.response = response_bytes(responses.front());
    flash.sfdp = sfdp_of(given.text("--sfdp"));
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    flash.mapped = map_response(manager, flash.response, given.has("--silicon"));
    ANSWER answer;
    answer.found = flash.mapped.record != nullptr;
    answer.content = known_flash_json(flash);
    answer.print = [&] { print_known_flash(responses.front(), flash); };
    give_answer(responses.front(), answer, command);
}

JSON identify_sfdp_schema() {
    return question_schema(known_flash_members(), {"mapped", "index", "device", "comparison", "sfdp", "record"});
}
