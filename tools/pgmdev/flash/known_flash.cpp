#include "flash/known_flash.h"

#include <fmt/core.h>

#include <algorithm>

#include "flash/output.h"
#include "flash/sfdp_comparison.h"
#include "flash/sfdp_json.h"
#include "flash/sfdp_text.h"
#include "terminal/answer.h"
#include "terminal/text_table.h"

namespace {

bool is_known(const KNOWN_FLASH& flash) {
    return flash.mapped.record != nullptr;
}

JSON system_json(const SYSTEM_FLASH& system) {
    return {{"device", system.device},
            {"jedec_id", system.jedec_id},
            {"manufacturer", system.manufacturer},
            {"partname", system.partname},
            {"problems", system.problems}};
}

JSON known_flash_json(DWORD position, const KNOWN_FLASH& flash) {
    JSON object{{"position", position}, {"mapped", is_known(flash)}, {"index", nullptr}};
    if (is_known(flash)) {
        object["index"] = flash.mapped.index;
        add_members(object, *flash.mapped.record);
    }
    if (flash.sfdp) {
        object["comparison"] =
            is_known(flash) ? comparison_json(compare_with_sfdp(*flash.mapped.record, *flash.sfdp)) : JSON();
        object["sfdp"] = sfdp_json(*flash.sfdp);
        object["record"] = derived_record_json(flash.sfdp->record(flash.response));
    }
    if (flash.system) {
        object["system"] = system_json(*flash.system);
    }
    return object;
}

std::string known_flash_title(DWORD position, const KNOWN_FLASH& flash) {
    std::string title = flash.query;
    if (flash.system) {
        title = flash.system->device;
        for (const std::string& part : {flash.query, flash.system->manufacturer, flash.system->partname}) {
            title += part.empty() ? "" : ", " + part;
        }
    }
    return fmt::format("Device {} ({})", position, printable(title));
}

void print_own_words(const KNOWN_FLASH& flash) {
    if (is_known(flash)) {
        print_comparison(compare_with_sfdp(*flash.mapped.record, *flash.sfdp));
    } else {
        print_derived_record(flash.sfdp->record(flash.response));
    }
    for (const std::string& warning : flash.sfdp->warnings()) {
        fmt::print("The flash's own words are odd: {}\n", printable(warning));
    }
}

void print_known_flash(DWORD position, const KNOWN_FLASH& flash) {
    const std::string title = known_flash_title(position, flash);
    if (is_known(flash)) {
        fmt::print("{}: {} {}, record {}\n", title, printable(flash.mapped.record->manufacturer_name),
                   printable(flash.mapped.record->device_name), flash.mapped.index);
        print_summary(*flash.mapped.record);
    } else {
        fmt::print("{}: no record matches\n", title);
    }
    if (flash.sfdp) {
        print_own_words(flash);
    }
    for (const std::string& problem : flash.system ? flash.system->problems : std::vector<std::string>()) {
        fmt::print("  {}\n", printable(problem));
    }
}

}  // namespace

void give_known_flash(const std::vector<KNOWN_FLASH>& flash, const std::string& missing, COMMAND& command) {
    std::vector<std::string> query;
    JSON devices = JSON::array();
    std::optional<DWORD> longest;
    for (const KNOWN_FLASH& each : flash) {
        devices.push_back(known_flash_json(static_cast<DWORD>(query.size()), each));
        query.push_back(each.query);
        if (is_known(each)) {
            longest = std::max(longest.value_or(0), each.mapped.record->program_utime);
        }
    }
    ANSWER answer;
    answer.found = !flash.empty() && std::all_of(flash.begin(), flash.end(), is_known);
    answer.content = {{"devices", devices}, {"longest_program_utime", longest}};
    answer.missing = flash.empty() ? missing : "";
    answer.print = [&flash] {
        for (DWORD position = 0; position < flash.size(); ++position) {
            fmt::print("{}", position == 0 ? "" : "\n");
            print_known_flash(position, flash[position]);
        }
    };
    give_answer(query, answer, command);
}

std::vector<SCHEMA_MEMBER> known_flash_members() {
    const JSON system = object_schema({{"device", text_schema()},
                                       {"jedec_id", text_schema()},
                                       {"manufacturer", text_schema()},
                                       {"partname", text_schema()},
                                       {"problems", array_schema(text_schema())}});
    return {{"comparison", or_null(comparison_schema()), false},
            {"sfdp", object_schema(sfdp_members()), false},
            {"record", derived_record_schema(), false},
            {"system", system, false}};
}
