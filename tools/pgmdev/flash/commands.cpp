#include "flash/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "flash/output.h"
#include "gen.h"
#include "pgmdev_flash_table.h"
#include "terminal/command.h"
#include "terminal/input.h"

namespace {

void list(COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    print_records(manager.get_flash_database(), manager.get_flash_count(), command);
}

/// Names that a person may have meant: those that begin with what was typed, or are the beginning of it.
std::string similar_names(PGMDEV_FLASH_MANAGER& manager, const std::string& name) {
    constexpr int MOST = 8;
    std::string names;
    int count = 0;
    for (DWORD i = 0; i < manager.get_flash_count() && count < MOST; ++i) {
        const PGMDEV_SFL_FLASH_INFO& record = manager.get_flash_database()[i];
        const std::size_t shared = std::min(record.device_name.size(), name.size());
        if (record.default_dev && shared >= 3 &&
            gen_stricmp(record.device_name.substr(0, shared), name.substr(0, shared)) == 0) {
            names += (count++ == 0 ? "" : ", ") + record.device_name;
        }
    }
    return names;
}

void show_one(PGMDEV_FLASH_MANAGER& manager, const std::string& name, bool batch, COMMAND& command) {
    const PGMDEV_SFL_FLASH_INFO* record = manager.get_default_flash(name);
    if (record == nullptr) {
        command.result = EXIT_NOT_FOUND;
        const std::string similar = similar_names(manager, name);
        fmt::print(stderr, "pgmdev: no flash is named \"{}\"{}{}\n", name, similar.empty() ? "" : "; did you mean ",
                   similar);
        if (command.json && batch) {
            print_json_line({{"index", nullptr}, {"device_name", name}});
        }
        return;
    }
    const auto index = static_cast<DWORD>(record - manager.get_flash_database());
    if (!command.json) {
        print_members(index, *record);
    } else if (batch) {
        print_json_line(record_json(index, *record));
    } else {
        print_json(record_json(index, *record));
    }
}

void show(const std::string& name, COMMAND& command) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    if (name != "-") {
        show_one(manager, name, false, command);
        return;
    }
    for_each_input_line([&](const std::string& line) {
        show_one(manager, line, true, command);
        if (!command.json) {
            fmt::print("\n");
        }
    });
}

void dump(const std::string& file, bool csv, const COMMAND& command) {
    const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_database(file);
    if (table.records().empty()) {
        throw std::runtime_error(file + " is no flash database");
    }
    if (csv) {
        print_source_table(table.records());
    } else {
        print_records(table.records().data(), static_cast<DWORD>(table.records().size()), command);
    }
}

/// What the verbs take from the command line.
struct FLASH_OPTIONS {
    std::string name;
    std::vector<std::string> responses;
    std::string csv_file;
    std::string pcf_file;
    std::optional<std::string> user;  ///< an encoded description
    std::string encoded;
    bool silicon = false;
    bool csv = false;
};

}  // namespace

PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count) {
    PGMDEV_FLASH_MANAGER manager(false, device_count, false, false);
    if (manager.get_flash_database() == nullptr) {
        throw std::runtime_error("the flash database was not loaded");
    }
    return manager;
}

void add_flash_commands(CLI::App& app, COMMAND& command) {
    const auto options = std::make_shared<FLASH_OPTIONS>();  // lives as long as the callbacks that read it
    CLI::App* flash =
        app.add_subcommand("flash", "Serial flash devices: identify, look up, check and compile the table");
    flash->require_subcommand(1);
    flash->footer("Example: pgmdev flash identify 20BA18");

    CLI::App* verb = flash->add_subcommand("list", "All enabled records of the database");
    verb->footer("Example: pgmdev --json flash list");
    verb->callback([&command] { list(command); });

    verb = flash->add_subcommand("show", "The default record of a device name");
    verb->add_option("NAME", options->name, "Device name, in any case; - reads one name per line")->required();
    verb->footer("Example: pgmdev flash show W25Q64JV");
    verb->callback([options, &command] { show(options->name, command); });

    verb = flash->add_subcommand("identify", "Which flash answered, and how it must be driven");
    verb->add_flag("--silicon", options->silicon, "The responses are one-byte electronic signatures");
    verb->add_option("HEX", options->responses,
                     "What the flash behind each device position answered, in hexadecimal, missing bytes taken as 0; "
                     "- reads one response per line")
        ->required();
    verb->add_option("--user", options->user, "Try this encoded description, as flash define prints it, as record 0");
    verb->footer("Example: pgmdev flash identify 20BA18 \"EF 70 17\"");
    verb->callback([options, &command] {
        if (options->user) {
            use_user_flash(*options->user);
        }
        identify_flash(options->responses, options->silicon, command);
    });

    verb = flash->add_subcommand("define", "Describe a flash of your own by answering questions");
    verb->footer(
        "What is printed behind \"INI : \" is the value for the configuration key PGM_USER_SFL_FLASH_INFO.\n"
        "Example: pgmdev flash define < answers.txt");
    verb->callback([&command] { define_flash(command); });

    verb = flash->add_subcommand("decode", "What an encoded description holds, and why it would be refused");
    verb->add_option("TEXT", options->encoded, "The encoded description; - reads one per line")->required();
    verb->footer("Example: pgmdev flash decode \"$PGM_USER_SFL_FLASH_INFO\"");
    verb->callback([options, &command] { decode_flash(options->encoded, command); });

    verb = flash->add_subcommand("check", "Find everything that is wrong with a source table");
    verb->add_option("CSV", options->csv_file, "Source table")->required();
    verb->footer("Example: pgmdev flash check data/flash/pgm_flash.csv");
    verb->callback([options, &command] { check_flash_table(options->csv_file, command); });

    verb = flash->add_subcommand("compile", "Compile a source table into a packed database");
    verb->add_option("CSV", options->csv_file, "Source table")->required();
    verb->add_option("PCF", options->pcf_file, "Packed database; replaced only when all has succeeded")->required();
    verb->footer("Example: pgmdev flash compile data/flash/pgm_flash.csv pgm_flash.pcf");
    verb->callback([options, &command] { compile_flash_table(options->csv_file, options->pcf_file, command); });

    verb = flash->add_subcommand("dump", "All records of a packed database, whatever switch enables them");
    verb->add_option("PCF", options->pcf_file, "Packed database")->required();
    verb->add_flag("--csv", options->csv, "As a source table that compiles to the same payload");
    verb->footer("Example: pgmdev flash dump --csv pgm_flash.pcf");
    verb->callback([options, &command] { dump(options->pcf_file, options->csv, command); });
}
