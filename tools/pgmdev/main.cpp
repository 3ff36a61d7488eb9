#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "cfg.h"
#include "gen.h"
#include "msg.h"
#include "program.h"
#include "terminal/command.h"

namespace {

void show_internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    fmt::print(stderr, "pgmdev: internal error: {}\n        ({}, {}, line {})\n", report.condition, report.module,
               report.file, report.line);
}

void set_switch(const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == 0 || equals == std::string::npos) {
        throw CLI::ValidationError("--set", "expected KEY=VALUE, found \"" + assignment + "\"");
    }
    cfg_set_value(assignment.substr(0, equals), assignment.substr(equals + 1));
}

void add_global_options(CLI::App& app, COMMAND& command) {
    app.add_flag("--json", command.json, "Answer with one JSON document on standard output");
    app.add_option_function<std::string>("--db-dir", gen_set_device_db_fullpath, "Directory of the device databases")
        ->type_name("DIR");
    app.add_option_function<std::string>("--install-dir", gen_set_tessary_path, "Installation directory")
        ->type_name("DIR");
    app.add_option_function<std::string>("--module-dir", gen_set_module_path, "Directory of the device-data library")
        ->type_name("DIR");
    app.add_option_function<std::vector<std::string>>(
           "--set",
           [](const std::vector<std::string>& assignments) {
               for (const std::string& assignment : assignments) {
                   set_switch(assignment);
               }
           },
           "Set a configuration value for this run; may be repeated")
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->trigger_on_parse();
}

}  // namespace

void print_json(const JSON& document) {
    fmt::print("{}\n", document.dump(2, ' ', false, JSON::error_handler_t::replace));
}

void print_json_line(const JSON& document) {
    fmt::print("{}\n", document.dump(-1, ' ', false, JSON::error_handler_t::replace));
}

void print_json_answer(const JSON& answer, bool batch) {
    batch ? print_json_line(answer) : print_json(answer);
}

int main(int argc, char** argv) {
    const PROGRAM program(argc, argv);
    COMMAND command;
    CLI::App app("The device data of Tessary: look it up, check it, compile it.", "pgmdev");
    app.footer(
        "Exit codes: 0 done, 1 not found, 2 wrong usage, 3 an internal error was reported, or a table or description "
        "was refused.\n"
        "Example: pgmdev flash identify 20BA18");
    app.require_subcommand(1);
    app.fallthrough();                       // global options may stand behind the noun and the verb, too
    app.allow_windows_style_options(false);  // "/a/path" is a path on every system
    add_global_options(app, command);
    add_flash_commands(app, command);
    add_hps_commands(app, command);
    add_params_commands(app, command);
    add_profile_commands(app, command);
    add_name_commands(app, command);
    add_part_commands(app, command);
    add_opn_commands(app, command);
    add_enum_commands(app, command);

    bool reported = false;
    MSG_INTERNAL_ERROR::set_handler([&reported](const MSG_INTERNAL_ERROR_REPORT& report) {
        reported = true;
        show_internal_error(report);
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
    try {
        app.parse(std::vector<std::string>(program.arguments().rbegin(), program.arguments().rend()));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    } catch (const USAGE_ERROR& error) {
        fmt::print(stderr, "pgmdev: {}\n", error.what());
        return EXIT_USAGE;
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        return EXIT_INTERNAL_ERROR;
    } catch (const std::exception& error) {
        fmt::print(stderr, "pgmdev: {}\n", error.what());
        return EXIT_INTERNAL_ERROR;
    }
    if (std::fflush(stdout) != 0) {
        fmt::print(stderr, "pgmdev: standard output cannot be written\n");
        return EXIT_INTERNAL_ERROR;
    }
    return reported ? EXIT_INTERNAL_ERROR : command.result;
}
