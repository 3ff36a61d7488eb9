#include <fmt/core.h>

#include "flash/identification.h"
#include "flash/output.h"

// An identification for programs.

namespace {

constexpr std::array STANDINGS{"taken", "alike", "open", "passed_over", "ruled_out"};
constexpr std::array ODDITIES{"none",    "idle",     "stuck",   "continuation", "late", "first_byte_missing",
                              "shifted", "reversed", "repeated"};

/// In a line of a batch, "candidates" are names that may have been meant, as in every answer.
const char* candidates_key(bool in_a_chain) {
    return in_a_chain ? "candidates" : "admitted";
}

/// A record by its names.
JSON named_record(DWORD index, const PGMDEV_SFL_FLASH_INFO& record) {
    return {{"index", index}, {"manufacturer_name", record.manufacturer_name}, {"device_name", record.device_name}};
}

std::vector<SCHEMA_MEMBER> named_record_members() {
    return {{"index", number_schema()}, {"manufacturer_name", text_schema()}, {"device_name", text_schema()}};
}

JSON compared_json(const std::vector<PGMDEV_FLASH_COMPARED_BYTE>& compared) {
    JSON array = JSON::array();
    for (const PGMDEV_FLASH_COMPARED_BYTE& each : compared) {
        array.push_back(
            {{"position", each.position}, {"expected", fmt::format("{:02X}", each.expected)}, {"given", each.given}});
    }
    return array;
}

JSON compared_schema() {
    return array_schema(
        object_schema({{"position", number_schema()}, {"expected", text_schema()}, {"given", flag_schema()}}));
}

JSON risk_schema() {
    return choice_schema({"data", "voltage", "protection", "flow", "time", "none"});
}

JSON differences_json(const std::vector<PGMDEV_FLASH_DIFFERENCE>& differences) {
    JSON array = JSON::array();
    for (const PGMDEV_FLASH_DIFFERENCE& each : differences) {
        array.push_back({{"member", each.member},
                         {"risk", PGMDEV_FLASH_CANDIDATES::risk_name(each.risk)},
                         {"taken", each.taken},
                         {"other", each.other},
                         {"harm", each.harm}});
    }
    return array;
}

JSON candidates_json(const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier) {
    JSON array = JSON::array();
    for (const PGMDEV_FLASH_CANDIDATE& each : device.answer.candidates.candidates()) {
        JSON object = named_record(each.index, identifier.record(each.index));
        object["standing"] = STANDINGS[static_cast<std::size_t>(each.standing)];
        object["compared"] = compared_json(each.compared);
        object["differs"] = differences_json(each.differences);
        array.push_back(object);
    }
    return array;
}

JSON candidate_schema() {
    std::vector<SCHEMA_MEMBER> members = named_record_members();
    members.push_back({"standing", choice_schema({STANDINGS.begin(), STANDINGS.end()})});
    members.push_back({"compared", compared_schema()});
    members.push_back({"differs", array_schema(object_schema({{"member", text_schema()},
                                                              {"risk", risk_schema()},
                                                              {"taken", text_schema()},
                                                              {"other", text_schema()},
                                                              {"harm", text_schema()}}))});
    return object_schema(members);
}

JSON ambiguities_json(const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier) {
    JSON array = JSON::array();
    for (const PGMDEV_FLASH_AMBIGUITY& each : device.answer.ambiguities) {
        JSON chips = JSON::array();
        for (const std::string& chip : each.chips) {
            chips.push_back({{"device_name", chip}, {"in_table", identifier.knows(chip)}});
        }
        const bool decided = each.telling_byte != INVALID_DWORD;
        array.push_back({{"chips", chips},
                         {"telling_byte", decided ? std::optional(each.telling_byte) : std::nullopt},
                         {"told_apart_by", each.told_apart_by},
                         {"risk", PGMDEV_FLASH_CANDIDATES::risk_name(each.risk)},
                         {"harm", each.harm}});
    }
    return array;
}

JSON ambiguity_schema() {
    const JSON chip = object_schema({{"device_name", text_schema()}, {"in_table", flag_schema()}});
    return object_schema({{"chips", array_schema(chip)},
                          {"telling_byte", or_null(number_schema())},
                          {"told_apart_by", text_schema()},
                          {"risk", risk_schema()},
                          {"harm", text_schema()}});
}

JSON contradictions_json(const FLASH_IDENTIFICATION& device) {
    JSON array = JSON::array();
    for (const PGMDEV_FLASH_CONTRADICTION& each : device.answer.contradictions) {
        array.push_back(
            {{"position", each.position}, {"found", fmt::format("{:02X}", each.found)}, {"expected", each.expected}});
    }
    return array;
}

JSON oddity_json(const PGMDEV_FLASH_ODDITY& oddity) {
    if (oddity.kind == PGMDEV_FLASH_ODDITY::KIND::NONE) {
        return nullptr;
    }
    return {{"kind", ODDITIES[static_cast<std::size_t>(oddity.kind)]},
            {"text", oddity.text},
            {"index", oddity.index != INVALID_DWORD ? std::optional(oddity.index) : std::nullopt}};
}

JSON nearest_json(const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier) {
    JSON array = JSON::array();
    for (const DWORD index : device.nearest) {
        array.push_back(named_record(index, identifier.record(index)));
    }
    return array;
}

JSON missing_json(const PGMDEV_FLASH_CANDIDATES& candidates) {
    JSON array = JSON::array();
    for (const BYTE position : candidates.missing_bytes()) {
        array.push_back(position);
    }
    return array;
}

}  // namespace

JSON identification_json(DWORD position, const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier,
                         bool in_a_chain) {
    JSON object{{"position", position}, {"mapped", device.is_mapped()}, {"index", nullptr}};
    if (device.is_mapped()) {
        object["index"] = device.index;
        add_members(object, identifier.record(device.index));
    }
    object["given"] = device.question.bytes.count;
    object["telling"] = device.answer.candidates.telling_count();
    object["by_hand"] = device.is_by_hand();
    object["sure"] = device.is_sure();
    object["missing_bytes"] = missing_json(device.answer.candidates);
    object["ambiguities"] = ambiguities_json(device, identifier);
    object["contradictions"] = contradictions_json(device);
    object["fitting"] = device.answer.fitting;
    object["oddity"] = oddity_json(device.answer.candidates.oddity());
    object["nearest"] = nearest_json(device, identifier);
    object[candidates_key(in_a_chain)] = device.is_mapped() ? candidates_json(device, identifier) : JSON::array();
    return object;
}

std::vector<SCHEMA_MEMBER> identification_members(bool in_a_chain) {
    std::vector<SCHEMA_MEMBER> members{
        {"position", number_schema()}, {"mapped", flag_schema()}, {"index", or_null(number_schema())}};
    for (SCHEMA_MEMBER& member : record_members()) {
        members.push_back({member.name, member.schema, false});  // of a device that is mapped
    }
    const JSON contradiction =
        object_schema({{"position", number_schema()}, {"found", text_schema()}, {"expected", text_schema()}});
    const JSON oddity = object_schema({{"kind", choice_schema({ODDITIES.begin(), ODDITIES.end()})},
                                       {"text", text_schema()},
                                       {"index", or_null(number_schema())}});
    for (const SCHEMA_MEMBER& member :
         {SCHEMA_MEMBER{"given", number_schema()}, SCHEMA_MEMBER{"telling", number_schema()},
          SCHEMA_MEMBER{"by_hand", flag_schema()}, SCHEMA_MEMBER{"sure", flag_schema()},
          SCHEMA_MEMBER{"missing_bytes", array_schema(number_schema())},
          SCHEMA_MEMBER{"ambiguities", array_schema(ambiguity_schema())},
          SCHEMA_MEMBER{"contradictions", array_schema(contradiction)},
          SCHEMA_MEMBER{"fitting", array_schema(text_schema())}, SCHEMA_MEMBER{"oddity", or_null(oddity)},
          SCHEMA_MEMBER{"nearest", array_schema(object_schema(named_record_members()))},
          SCHEMA_MEMBER{candidates_key(in_a_chain), array_schema(candidate_schema())}}) {
        members.push_back(member);
    }
    return members;
}
