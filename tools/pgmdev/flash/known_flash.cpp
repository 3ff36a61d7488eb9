#include "flash/known_flash.h"

#include <fmt/core.h>

#include <algorithm>

#include "flash/sfdp_comparison.h"
#include "flash/sfdp_json.h"
#include "flash/sfdp_ranking.h"
#include "flash/sfdp_text.h"
#include "terminal/answer.h"
#include "terminal/wrapped.h"

namespace {

/// The record that it is mapped to; null: none.
const PGMDEV_SFL_FLASH_INFO* record_of(const KNOWN_FLASH& flash, const FLASH_IDENTIFIER& identifier) {
    return flash.identification && flash.identification->is_mapped() ? &identifier.record(flash.identification->index)
                                                                     : nullptr;
}

/// What it may be by its own words; nothing when these or its response are not known.
std::vector<RANKED_RECORD> ranking_of(const KNOWN_FLASH& flash, const FLASH_IDENTIFIER& identifier) {
    return flash.identification && flash.sfdp ? rank_by_sfdp(*flash.identification, identifier, *flash.sfdp)
                                              : std::vector<RANKED_RECORD>();
}

/// Whether it is not what it is mapped to.
bool is_another(const KNOWN_FLASH& flash, const FLASH_IDENTIFIER& identifier) {
    return flash.identification && contradicts_mapping(*flash.identification, ranking_of(flash, identifier));
}

/// The record that follows from its own words.
PGMDEV_FLASH_SFDP::DERIVED_RECORD own_record(const KNOWN_FLASH& flash) {
    if (!flash.identification || flash.identification->question.silicon_id) {
        return flash.sfdp->record({});
    }
    const ID_RESPONSE& response = flash.identification->question.bytes;
    return flash.sfdp->record({response.data(), response.count});
}

/// Of a flash whose response is not known, what identification_json gives of others.
JSON unidentified_json(DWORD position) {
    JSON object{{"position", position}, {"mapped", false},  {"index", nullptr}, {"given", DWORD{0}},
                {"telling", DWORD{0}},  {"by_hand", false}, {"sure", false},    {"oddity", nullptr}};
    for (const char* list : {"missing_bytes", "ambiguities", "contradictions", "fitting", "nearest", "candidates"}) {
        object[list] = JSON::array();
    }
    return object;
}

JSON system_json(const SYSTEM_FLASH& system) {
    return {{"device", system.device},
            {"jedec_id", system.jedec_id},
            {"manufacturer", system.manufacturer},
            {"partname", system.partname},
            {"problems", system.problems}};
}

JSON known_flash_json(DWORD position, const KNOWN_FLASH& flash, FLASH_IDENTIFIER& identifier) {
    JSON object = flash.identification ? identification_json(position, *flash.identification, identifier, true)
                                       : unidentified_json(position);
    if (flash.sfdp) {
        const PGMDEV_SFL_FLASH_INFO* record = record_of(flash, identifier);
        object["comparison"] = record != nullptr ? comparison_json(compare_with_sfdp(*record, *flash.sfdp)) : JSON();
        object["sure"] = flash.identification && flash.identification->is_sure() && !is_another(flash, identifier);
        object["ranking"] = ranking_json(ranking_of(flash, identifier), identifier);
        object["sfdp"] = sfdp_json(*flash.sfdp);
        object["record"] = derived_record_json(own_record(flash));
    }
    if (flash.system) {
        object["system"] = system_json(*flash.system);
    }
    return object;
}

std::string system_text(const SYSTEM_FLASH& system) {
    std::string text = "The kernel calls it " + system.device;
    for (const std::string& part : {system.manufacturer, system.partname}) {
        text += part.empty() ? "" : ", " + part;
    }
    return text;
}

void print_own_words(const KNOWN_FLASH& flash, const PGMDEV_SFL_FLASH_INFO* record) {
    if (record != nullptr) {
        print_comparison(compare_with_sfdp(*record, *flash.sfdp));
    } else {
        print_derived_record(own_record(flash));
    }
    for (const std::string& warning : flash.sfdp->warnings()) {
        print_sentence("The flash's own words are odd: " + warning);
    }
}

void print_known_flash(DWORD position, const KNOWN_FLASH& flash, FLASH_IDENTIFIER& identifier) {
    const std::vector<RANKED_RECORD> ranking = ranking_of(flash, identifier);
    const bool harms = is_another(flash, identifier);
    if (harms) {
        print_ranking(position, *flash.identification, ranking, identifier);
    }
    if (flash.identification) {
        print_identification(position, *flash.identification, identifier);
    } else {
        fmt::print("Device {}: its response is not known\n", position);
    }
    if (flash.system) {
        print_sentence(system_text(*flash.system));
        for (const std::string& problem : flash.system->problems) {
            print_labelled("", 2, problem);
        }
    }
    if (!ranking.empty() && !harms) {
        print_ranking(position, *flash.identification, ranking, identifier);
    }
    if (flash.sfdp) {
        print_own_words(flash, record_of(flash, identifier));
    }
}

}  // namespace

void give_known_flash(const std::vector<KNOWN_FLASH>& flash, FLASH_IDENTIFIER& identifier, const std::string& missing,
                      COMMAND& command) {
    std::vector<std::string> query;
    JSON devices = JSON::array();
    for (const KNOWN_FLASH& each : flash) {
        devices.push_back(known_flash_json(static_cast<DWORD>(query.size()), each, identifier));
        query.push_back(each.query);
        const bool is_doubtful = each.identification && each.identification->is_doubtful();
        const bool is_by_hand = each.identification && each.identification->is_by_hand();
        if (is_doubtful || (!is_by_hand && is_another(each, identifier))) {
            command.result = std::max(command.result, EXIT_NOT_FOUND);
        }
    }
    ANSWER answer;
    answer.found = !flash.empty() && std::all_of(flash.begin(), flash.end(), [&identifier](const KNOWN_FLASH& each) {
        return record_of(each, identifier) != nullptr;
    });
    answer.content = {{"devices", devices}, {"longest_program_utime", identifier.longest_program_utime()}};
    answer.missing = flash.empty() ? missing : "";
    answer.print = [&] {
        for (DWORD position = 0; position < flash.size(); ++position) {
            fmt::print("{}", position == 0 ? "" : "\n");
            print_known_flash(position, flash[position], identifier);
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
            {"ranking", ranking_schema(), false},
            {"sfdp", object_schema(sfdp_members()), false},
            {"record", derived_record_schema(), false},
            {"system", system, false}};
}
