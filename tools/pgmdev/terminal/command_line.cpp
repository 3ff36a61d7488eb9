#include "terminal/command_line.h"

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <sstream>

#include "cfg.h"
#include "gen.h"
#include "terminal/failure.h"
#include "terminal/unknown_word.h"

namespace {

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

void add_verb(CLI::App& noun, const VERB& verb, COMMAND& command) {
    CLI::App* app = noun.add_subcommand(verb.name, verb.description);
    app->footer(verb.notes + "Example: " + verb.example);
    const auto arguments = std::make_shared<ARGUMENTS>();  // lives as long as the callback that reads it
    arguments->bind(verb.arguments, *app);
    app->callback([run = verb.run, arguments, &command] {
        command.prepare();
        run(*arguments, command);
    });
}

void add_noun(CLI::App& parent, const NOUN& noun, COMMAND& command) {
    CLI::App* app = parent.add_subcommand(noun.name, noun.description);
    app->require_subcommand(1);
    app->footer("Example: " + noun.example);
    for (const VERB& verb : noun.verbs) {
        add_verb(*app, verb, command);
    }
    for (const NOUN& group : noun.groups) {
        add_noun(*app, group, command);
    }
}

/// What the parser finds wrong. A misspelt word explains more than what it leads to.
COMMAND_FAILURE wrong_arguments(const std::vector<NOUN>& nouns, const std::vector<std::string>& arguments,
                                const CLI::ParseError& error) {
    const std::string word = unknown_word(nouns, arguments);
    return COMMAND_FAILURE({"usage", word.empty() ? error.what() : word, "", {}, "--help tells more", {}}, EXIT_USAGE);
}

}  // namespace

void ARGUMENTS::bind(const std::vector<ARGUMENT>& table, CLI::App& verb) {
    for (const ARGUMENT& argument : table) {
        VALUE& value = m_values[argument.name];
        CLI::Option* option = nullptr;
        switch (argument.kind) {
            case ARGUMENT::TEXT:
            case ARGUMENT::OPTIONAL_TEXT:
                option = verb.add_option(argument.name, value.text, argument.description);
                break;
            case ARGUMENT::TEXTS:
            case ARGUMENT::OPTIONAL_TEXTS:
                option = verb.add_option(argument.name, value.texts, argument.description);
                break;
            case ARGUMENT::NUMBER:
            case ARGUMENT::OPTIONAL_NUMBER:
                option = verb.add_option(argument.name, value.number, argument.description);
                break;
            case ARGUMENT::FLAG:
                option = verb.add_flag(argument.name, value.flag, argument.description);
                break;
        }
        option->required(argument.kind == ARGUMENT::TEXT || argument.kind == ARGUMENT::TEXTS ||
                         argument.kind == ARGUMENT::NUMBER);
        if (argument.value_name != nullptr) {
            option->type_name(argument.value_name);
        }
        value.option = option;
    }
}

bool ARGUMENTS::has(const std::string& name) const {
    return m_values.at(name).option->count() != 0;
}

const std::string& ARGUMENTS::text(const std::string& name) const {
    return m_values.at(name).text;
}

const std::vector<std::string>& ARGUMENTS::texts(const std::string& name) const {
    return m_values.at(name).texts;
}

std::optional<std::size_t> ARGUMENTS::number(const std::string& name) const {
    return has(name) ? std::optional(m_values.at(name).number) : std::nullopt;
}

bool run_command_line(const std::vector<NOUN>& nouns, const std::vector<std::string>& arguments, COMMAND& command) {
    CLI::App app("The device data of Tessary: look it up, check it, compile it.", "pgmdev");
    app.footer(
        "Exit codes: 0 done, 1 not found, 2 wrong usage, 3 an internal error was reported, or a table or description "
        "was refused.\n"
        "Example: pgmdev flash identify 20BA18");
    app.require_subcommand(1);
    app.fallthrough();                       // global options may stand behind the noun and the verb, too
    app.allow_windows_style_options(false);  // "/a/path" is a path on every system
    add_global_options(app, command);
    for (const NOUN& noun : nouns) {
        add_noun(app, noun, command);
    }
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        std::ostringstream errors;
        if (app.exit(error, output, errors) != 0) {
            throw wrong_arguments(nouns, arguments, error);
        }
        fmt::print("{}", output.str());
        return false;
    }
    return true;
}
