#include "profile/commands.h"

#include <memory>
#include <string>

#include "pgmdev_dev_info_table.h"
#include "profile/output.h"

namespace {

/// What the verbs take from the command line.
struct PROFILE_OPTIONS {
    std::string family;
    std::string device;
    std::string part;
    std::string csv_file;
    std::string pcf_file;
    bool csv = false;
};

void list(const COMMAND& command) {
    PROFILE_DATABASE database;
    print_records({database.get_device_database(), database.count()}, command);
}

void show(const CLI::App& verb, const PROFILE_OPTIONS& options, COMMAND& command) {
    if (verb.count("--family") + verb.count("--device") + verb.count("--part") != 1) {
        throw USAGE_ERROR("expected one of --family, --device and --part");
    }
    if (verb.count("--family") != 0) {
        show_profile(PROFILE_KEY::FAMILY, options.family, command);
    } else if (verb.count("--device") != 0) {
        show_profile(PROFILE_KEY::DEVICE, options.device, command);
    } else {
        show_profile(PROFILE_KEY::PART, options.part, command);
    }
}

void dump(const std::string& file, bool csv, const COMMAND& command) {
    const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_database(file);
    if (csv) {
        print_source_table(table.records());
    } else {
        print_records(table.records(), command);
    }
}

}  // namespace

void add_profile_commands(CLI::App& app, COMMAND& command) {
    const auto options = std::make_shared<PROFILE_OPTIONS>();  // lives as long as the callbacks that read it
    CLI::App* profile =
        app.add_subcommand("profile", "Device programming profiles: look up, check and compile the table");
    profile->require_subcommand(1);
    profile->footer("Example: pgmdev profile show --family Kestrel");

    CLI::App* verb = profile->add_subcommand("list", "All records of the database");
    verb->footer("Example: pgmdev --json profile list");
    verb->callback([&command] { list(command); });

    verb = profile->add_subcommand("show", "The profile that governs a family, device or part, and the rule behind it");
    verb->add_option("--family", options->family, "Family name, in any case; - reads one name per line")
        ->type_name("NAME");
    verb->add_option("--device", options->device, "Device name, likewise")->type_name("NAME");
    verb->add_option("--part", options->part, "Part name, likewise")->type_name("NAME");
    verb->footer("Example: pgmdev profile show --family Kestrel");
    verb->callback([options, verb, &command] { show(*verb, *options, command); });

    verb = profile->add_subcommand("check", "Find everything that is wrong with a source table");
    verb->add_option("CSV", options->csv_file, "Source table")->required();
    verb->footer("Example: pgmdev profile check data/dev_info/pgm_dev_info.csv");
    verb->callback([options, &command] { check_profile_table(options->csv_file, command); });

    verb = profile->add_subcommand("compile", "Compile a source table into a packed database");
    verb->add_option("CSV", options->csv_file, "Source table")->required();
    verb->add_option("PCF", options->pcf_file, "Packed database; replaced only when all has succeeded")->required();
    verb->footer("Example: pgmdev profile compile data/dev_info/pgm_dev_info.csv pgm_dev_info.pcf");
    verb->callback([options, &command] { compile_profile_table(options->csv_file, options->pcf_file, command); });

    verb = profile->add_subcommand("dump", "All records of a packed database");
    verb->add_option("PCF", options->pcf_file, "Packed database")->required();
    verb->add_flag("--csv", options->csv, "As a source table that compiles to the same payload");
    verb->footer("Example: pgmdev profile dump --csv pgm_dev_info.pcf");
    verb->callback([options, &command] { dump(options->pcf_file, options->csv, command); });
}
