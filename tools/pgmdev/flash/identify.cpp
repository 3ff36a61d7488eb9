#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "flash/database.h"
#include "flash/identify_sfdp.h"
#include "flash/known_flash.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "terminal/answer.h"
#include "terminal/input.h"
#include "terminal/text_table.h"

namespace {

/// The record that the response of a flash matches.
struct DEVICE {
    DWORD index;                          ///< INVALID_DWORD: not mapped
    const PGMDEV_SFL_FLASH_INFO* record;  ///< null: not mapped
};

DEVICE identify(PGMDEV_FLASH_MANAGER& manager, DWORD position, const std::string& response, bool silicon) {
    ID_RESPONSE bytes = parse_id_response(response);
    if (manager.get_flash_count() == 0 || !manager.flash_id_database_mapping(silicon, position, bytes.data())) {
        return {INVALID_DWORD, nullptr};
    }
    const DWORD index = manager.get_flash_mapping_index(position, false);
    return {index, manager.get_flash_database() + index};
}

JSON device_json(DWORD position, const DEVICE& device) {
    JSON object{{"position", position}, {"mapped", device.record != nullptr}, {"index", nullptr}};
    if (device.record != nullptr) {
        object["index"] = device.index;
        add_members(object, *device.record);
    }
    return object;
}

void print_device(DWORD position, const std::string& response, const DEVICE& device) {
    if (device.record == nullptr) {
        fmt::print("Device {} ({}): no record matches\n", position, response);
        return;
    }
    fmt::print("Device {} ({}): {} {}, record {}\n", position, response, printable(device.record->manufacturer_name),
               printable(device.record->device_name), device.index);
    print_summary(*device.record);
}

/// One answer for each line, which tells the positions of a chain one after the other.
void identify_batch(bool silicon, COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    DWORD count = 0;
    answer_each("-", command, [&](const std::string& response) {
        const DEVICE device = identify(manager, 0, response, silicon);
        const DWORD position = count++;
        ANSWER answer;
        answer.found = device.record != nullptr;
        answer.content = device_json(position, device);
        answer.print = [position, response, device] { print_device(position, response, device); };
        return answer;
    });
}

void print_chain(const std::vector<std::string>& responses, const std::vector<DEVICE>& devices,
                 const std::optional<DWORD>& longest) {
    for (DWORD position = 0; position < devices.size(); ++position) {
        print_device(position, responses[position], devices[position]);
    }
    if (longest) {
        fmt::print("Longest program time in the chain: {} us\n", *longest);
    }
}

void identify_chain(const std::vector<std::string>& responses, bool silicon, COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(static_cast<DWORD>(responses.size()));
    std::vector<DEVICE> devices;
    JSON array = JSON::array();
    for (DWORD position = 0; position < responses.size(); ++position) {
        devices.push_back(identify(manager, position, responses[position], silicon));
        array.push_back(device_json(position, devices.back()));
    }
    const auto mapped = [](const DEVICE& device) { return device.record != nullptr; };
    std::optional<DWORD> longest;  // of the devices that are mapped
    if (std::any_of(devices.begin(), devices.end(), mapped)) {
        longest = manager.sfl_get_chain_longest_program_utime();
    }
    ANSWER answer;
    answer.found = std::all_of(devices.begin(), devices.end(), mapped);
    answer.content = {{"devices", array}, {"longest_program_utime", longest}};
    answer.print = [&] { print_chain(responses, devices, longest); };
    give_answer(responses, answer, command);
}

std::vector<SCHEMA_MEMBER> device_members() {
    std::vector<SCHEMA_MEMBER> members{
        {"position", number_schema()}, {"mapped", flag_schema()}, {"index", or_null(number_schema())}};
    for (SCHEMA_MEMBER& member : record_members()) {
        members.push_back({member.name, member.schema, false});  // of a device that is mapped
    }
    for (SCHEMA_MEMBER& member : known_flash_members()) {
        members.push_back(std::move(member));
    }
    return members;
}

}  // namespace

void identify_flash(const ARGUMENTS& given, COMMAND& command) {
    const std::vector<std::string>& responses = given.texts("HEX");
    const bool silicon = given.has("--silicon");
    if (given.has("--user")) {
        use_user_flash(given.text("--user"));
    }
    if (given.has("--system") && given.has("--sfdp")) {
        throw USAGE_ERROR("expected one of --system and --sfdp");
    }
    if (given.has("--system")) {
        identify_system(given, command);
    } else if (given.has("--sfdp")) {
        identify_with_sfdp(given, command);
    } else if (responses.empty()) {
        throw USAGE_ERROR("expected a response HEX, or --system");
    } else if (responses.size() == 1 && responses.front() == "-") {
        identify_batch(silicon, command);
    } else {
        identify_chain(responses, silicon, command);
    }
}

JSON identify_schema() {
    const JSON chain = object_schema({{"query", array_schema(text_schema())},
                                      {"found", flag_schema()},
                                      {"devices", array_schema(object_schema(device_members()))},
                                      {"longest_program_utime", or_null(number_schema())},
                                      {"candidates", array_schema(text_schema()), false}});
    return any_of({chain, question_schema(device_members(), {"position", "mapped", "index"})});
}
