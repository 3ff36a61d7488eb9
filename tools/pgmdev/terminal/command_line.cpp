#include "terminal/command_line.h"

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <sstream>

#include "gen.h"
#include "terminal/failure.h"
#include "terminal/input.h"
#include "terminal/plain_arguments.h"
#include "terminal/standard_error.h"
#include "terminal/unknown_word.h"

namespace {

/// Ends parsing: an option was an answer of its own.
struct ANSWERED {};

void add_global_option(CLI::App& app, const GLOBAL_OPTION& option, COMMAND& command) {
    const auto apply = [&option, &command](const std::string& value) {
        option.apply(value, command);
        if (option.instead) {
            throw ANSWERED();
        }
    };
    if (option.value_name.empty()) {
        app.add_flag_callback(
            option.names, [apply] { apply(""); }, option.description);
    } else if (!option.repeats) {
        app.add_option_function<std::string>(option.names, apply, option.description)->type_name(option.value_name);
    } else {
        const auto apply_all = [apply](const std::vector<std::string>& values) {
            std::for_each(values.begin(), values.end(), apply);
        };
        app.add_option_function<std::vector<std::string>>(option.names, apply_all, option.description)
            ->type_name(option.value_name)
            ->expected(1)
            ->allow_extra_args(false)  // what stands behind the value is no other one
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->trigger_on_parse();
    }
}

/// Reads the settings.
void read_settings(const VERB& verb, const COMMAND& command) try {
    command.prepare();
} catch (const COMMAND_FAILURE& error) {
    if (verb.needs_settings) {
        throw;
    }
    print_error("pgmdev: warning: {}", failure_text(error.failure()));
}

/// Adds nouns and verbs to the parser. What making it takes is most of what a short answer takes: of those that no
/// argument names, and which can therefore not be entered, it has only what help lists.
class CONTENTS {
public:
    CONTENTS(const std::vector<std::string>& arguments, COMMAND& command)
        : m_arguments(arguments), m_command(command) {}

    void add_to(CLI::App& app, const NOUN& noun) const {
        app.require_subcommand(1);
        for (const VERB& verb : noun.verbs()) {
            CLI::App* added = app.add_subcommand(verb.name, verb.description);
            if (may_be_entered(verb.name)) {
                fill(*added, verb);
            }
        }
        for (const NOUN& group : noun.groups()) {
            CLI::App* added = app.add_subcommand(group.name, group.description);
            if (may_be_entered(group.name)) {
                added->footer("Example: " + group.example());
                add_to(*added, group);
            }
        }
    }

private:
    bool may_be_entered(const std::string& name) const {
        return std::find(m_arguments.begin(), m_arguments.end(), name) != m_arguments.end();
    }

    void fill(CLI::App& app, const VERB& verb) const {
        app.footer(verb.notes + "Example: " + verb.example);
        const auto arguments = std::make_shared<ARGUMENTS>();  // lives as long as the callback that reads it
        arguments->bind(verb.arguments, app);
        app.callback([&verb, arguments, &command = m_command] {
            read_settings(verb, command);
            verb.run(*arguments, command);
        });
    }

    const std::vector<std::string>& m_arguments;
    COMMAND& m_command;
};

/// What the parser finds wrong. A misspelt word explains more than what it leads to.
COMMAND_FAILURE wrong_arguments(const COMMAND_TABLE& table, const std::vector<std::string>& arguments,
                                const CLI::ParseError& error) {
    std::string fault;
    for (const auto fault_of : {unknown_word, unknown_option, repeated_option, missing_word}) {
        if (fault.empty()) {
            fault = fault_of(table, arguments);
        }
    }
    return COMMAND_FAILURE({FAILURE_CODE::USAGE, fault.empty() ? error.what() : fault, "", {}, "--help tells more", {}},
                           EXIT_USAGE);
}

}  // namespace

std::vector<std::string> names_of(const GLOBAL_OPTION& option) {
    const std::size_t comma = option.names.find(',');
    return comma == std::string::npos ? std::vector{option.names}
                                      : std::vector{option.names.substr(0, comma), option.names.substr(comma + 1)};
}

NOUN::NOUN(std::string noun, std::string what, std::string how, MAKE make)
    : name(std::move(noun)), description(std::move(what)), m_example(std::move(how)), m_make(make) {}

NOUN::NOUN(std::string noun, std::string what, MAKE make) : NOUN(std::move(noun), std::move(what), "", make) {}

const std::vector<VERB>& NOUN::verbs() const {
    return contents().verbs;
}

const std::vector<NOUN>& NOUN::groups() const {
    return contents().groups;
}

const std::string& NOUN::example() const {
    return m_example.empty() ? verbs().front().example : m_example;
}

const NOUN_CONTENTS& NOUN::contents() const {
    if (m_contents == nullptr) {
        m_contents = std::make_shared<const NOUN_CONTENTS>(m_make());
    }
    return *m_contents;
}

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
                option = verb.add_option(argument.name, value.text, argument.description);
                option->type_name("UINT");
                break;
            case ARGUMENT::FLAG:
                option = verb.add_flag(argument.name, value.flag, argument.description);
                break;
        }
        if (argument.kind == ARGUMENT::OPTIONAL_TEXTS && argument.name.starts_with("--")) {
            option->expected(1)->allow_extra_args(false);  // a value each time
            option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
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

ARGUMENTS ARGUMENTS::with(const std::string& name, std::string text) const {
    ARGUMENTS others = *this;
    others.m_values.at(name).text = std::move(text);
    return others;
}

const std::string& ARGUMENTS::text(const std::string& name) const {
    return m_values.at(name).text;
}

const std::vector<std::string>& ARGUMENTS::texts(const std::string& name) const {
    return m_values.at(name).texts;
}

std::optional<std::size_t> ARGUMENTS::number(const std::string& name) const {
    return has(name) ? std::optional<std::size_t>(
                           parse_dword(gen_remove_leading_and_trailing_white_spaces(text(name)), "a value of " + name))
                     : std::nullopt;
}

namespace {

/// What is asked for instead of a verb; nothing when the arguments are wrong.
std::optional<std::string> help_of(const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    output.exceptions(std::ios::badbit);
    return app.exit(error, output, errors) == 0 ? std::optional(output.str()) : std::nullopt;
}

}  // namespace

bool run_command_line(const COMMAND_TABLE& table, const std::vector<std::string>& arguments, COMMAND& command) {
    CLI::App app(table.all.description, table.all.name);
    app.footer(table.notes + "Example: " + table.all.example());
    app.fallthrough();                       // global options may stand behind the noun and the verb, too
    app.allow_windows_style_options(false);  // "/a/path" is a path on every system
    for (const GLOBAL_OPTION& option : table.options) {
        add_global_option(app, option, command);
    }
    CONTENTS(arguments, command).add_to(app, table.all);
    try {
        const std::vector<std::string> plain = plain_arguments(table, arguments);
        app.parse(std::vector<std::string>(plain.rbegin(), plain.rend()));
    } catch (const ANSWERED&) {
        return true;
    } catch (const CLI::ParseError& error) {
        const auto help = help_of(app, error);
        if (!help) {
            throw wrong_arguments(table, arguments, error);
        }
        // The library puts it together in streams of its own, which take a failing allocation for the end and tell nobody: a
        // text that lacks a part is only seen beside another one. That takes a tenth of a millisecond.
        if (help != help_of(app, error)) {
            throw std::bad_alloc();
        }
        fmt::print("{}", *help);
        return false;
    }
    return true;
}
