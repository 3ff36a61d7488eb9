#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "flash/database.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "terminal/input.h"
#include "terminal/text_table.h"

namespace {

/// The flash behind one device position: its response, and the record that it matches.
struct DEVICE {
    DWORD position;
    const std::string& response;
    DWORD index;                          ///< INVALID_DWORD: not mapped
    const PGMDEV_SFL_FLASH_INFO* record;  ///< null: not mapped
};

DEVICE identify(PGMDEV_FLASH_MANAGER& manager, DWORD position, const std::string& response, bool silicon) {
    ID_RESPONSE bytes = parse_id_response(response);
    if (manager.get_flash_count() == 0 || !manager.flash_id_database_mapping(silicon, position, bytes.data())) {
        return {position, response, INVALID_DWORD, nullptr};
    }
    const DWORD index = manager.get_flash_mapping_index(position, false);
    return {position, response, index, manager.get_flash_database() + index};
}

JSON device_json(DWORD position, const DEVICE& device) {
    JSON object{{"position", position}, {"mapped", device.record != nullptr}, {"index", nullptr}};
    if (device.record != nullptr) {
        object["index"] = device.index;
        add_members(object, *device.record);
    }
    return object;
}

void print_device(DWORD position, const DEVICE& device) {
    if (device.record == nullptr) {
        fmt::print("Device {} ({}): no record matches\n", position, device.response);
        return;
    }
    fmt::print("Device {} ({}): {} {}, record {}\n", position, device.response,
               printable(device.record->manufacturer_name), printable(device.record->device_name), device.index);
    print_summary(*device.record);
}

void identify_batch(bool silicon, COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    DWORD line_number = 0;
    for_each_input_line([&](const std::string& response) {
        const DEVICE device = identify(manager, 0, response, silicon);
        if (device.record == nullptr) {
            command.result = EXIT_NOT_FOUND;
        }
        if (command.json) {
            print_json_line(device_json(line_number, device));
        } else {
            print_device(line_number, device);
        }
        ++line_number;
    });
}

}  // namespace

void identify_flash(const ARGUMENTS& given, COMMAND& command) {
    const std::vector<std::string>& responses = given.texts("HEX");
    const bool silicon = given.has("--silicon");
    if (given.has("--user")) {
        use_user_flash(given.text("--user"));
    }
    if (responses.size() == 1 && responses.front() == "-") {
        identify_batch(silicon, command);
        return;
    }
    PGMDEV_FLASH_MANAGER manager = open_flash_database(static_cast<DWORD>(responses.size()));
    std::vector<DEVICE> devices;
    for (DWORD position = 0; position < responses.size(); ++position) {
        devices.push_back(identify(manager, position, responses[position], silicon));
    }
    const auto mapped = [](const DEVICE& device) { return device.record != nullptr; };
    if (!std::all_of(devices.begin(), devices.end(), mapped)) {
        command.result = EXIT_NOT_FOUND;
    }
    std::optional<DWORD> longest;  // of the devices that are mapped
    if (std::any_of(devices.begin(), devices.end(), mapped)) {
        longest = manager.sfl_get_chain_longest_program_utime();
    }
    if (command.json) {
        JSON array = JSON::array();
        for (const DEVICE& device : devices) {
            array.push_back(device_json(device.position, device));
        }
        print_json({{"devices", array}, {"longest_program_utime", longest}});
        return;
    }
    for (const DEVICE& device : devices) {
        print_device(device.position, device);
    }
    if (longest) {
        fmt::print("Longest program time in the chain: {} us\n", *longest);
    }
}
