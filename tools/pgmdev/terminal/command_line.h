#pragma once

/// \file
/// The command line: a noun, a verb, its arguments. Each noun describes its verbs in a table; only what carries this out
/// knows the library that parses.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "terminal/command.h"
#include "terminal/json.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// What the user may write behind a verb.
struct ARGUMENT {
    /// An option of OPTIONAL_TEXTS takes one text, and may be given more than once.
    enum KIND { TEXT, OPTIONAL_TEXT, TEXTS, OPTIONAL_TEXTS, NUMBER, OPTIONAL_NUMBER, FLAG };

    std::string name;  ///< "--name" is an option; others are told by their position
    std::string description;
    KIND kind = TEXT;
    const char* value_name = nullptr;  ///< what the help calls the value of an option; null: after its kind
};

/// What the user has written behind a verb. A name that the verb's table does not have throws std::out_of_range.
class ARGUMENTS {
public:
    bool has(const std::string& name) const;                               ///< is it given?
    const std::string& text(const std::string& name) const;                ///< "": not given
    const std::vector<std::string>& texts(const std::string& name) const;  ///< none: not given
    std::optional<std::size_t> number(const std::string& name) const;      ///< anything else throws USAGE_ERROR

    /// The same, with another text for an argument that is given.
    ARGUMENTS with(const std::string& name, std::string text) const;

    /// Has the parser fill in what is given for the arguments of the table.
    void bind(const std::vector<ARGUMENT>& table, CLI::App& verb);

private:
    struct VALUE {
        std::string text;
        std::vector<std::string> texts;
        bool flag = false;
        const CLI::Option* option = nullptr;
    };
    std::map<std::string, VALUE> m_values;
};

/// A verb: what help says of it, what carries it out, and what it takes.
struct VERB {
    using RUN = std::function<void(const ARGUMENTS& given, COMMAND& command)>;

    VERB(std::string verb, std::string what, std::string how, RUN action)
        : name(std::move(verb)), description(std::move(what)), example(std::move(how)), run(std::move(action)) {}

    // Each is also for a verb that is being made: who returns that, or puts it into a list, does not copy it.
    VERB& takes(ARGUMENT argument) & {
        arguments.push_back(std::move(argument));
        return *this;
    }
    VERB&& takes(ARGUMENT argument) && { return std::move(takes(std::move(argument))); }

    /// Lines of help before the example, each with its line feed.
    VERB& tells(std::string lines) & {
        notes = std::move(lines);
        return *this;
    }
    VERB&& tells(std::string lines) && { return std::move(tells(std::move(lines))); }

    /// The JSON Schema of what it answers (schema.h).
    VERB& answers(std::function<JSON()> what) & {
        schema = std::move(what);
        return *this;
    }
    VERB&& answers(std::function<JSON()> what) && { return std::move(answers(std::move(what))); }

    /// Carries it out although the settings cannot be read, which then is only warned of.
    VERB& needs_no_settings() & {
        needs_settings = false;
        return *this;
    }
    VERB&& needs_no_settings() && { return std::move(needs_no_settings()); }

    VERB(VERB&&) = default;
    VERB& operator=(VERB&&) = default;
    VERB(const VERB&) = delete;
    VERB& operator=(const VERB&) = delete;
    ~VERB() = default;

    std::string name;
    std::string description;
    std::string example;
    RUN run;
    bool needs_settings = true;
    std::vector<ARGUMENT> arguments;
    std::string notes;
    std::function<JSON()> schema;  ///< none: there is no answer in JSON
    JSON (*row)() = nullptr;       ///< of a list: the schema of its rows
};

/// Lists of verbs and of nouns. A list in braces would copy them, which takes longer than making them.
template <class ITEM, class... ITEMS>
std::vector<ITEM> list_of(ITEM first, ITEMS... others) {
    std::vector<ITEM> list;
    list.reserve(1 + sizeof...(others));
    list.push_back(std::move(first));
    (list.push_back(std::move(others)), ...);
    return list;
}

struct NOUN_CONTENTS;

/// A noun. The command itself is one, too. Its contents are made when they are asked for: an answer needs those of one noun.
class NOUN {
public:
    using MAKE = NOUN_CONTENTS (*)();

    NOUN(std::string noun, std::string what, std::string how, MAKE make);
    /// Its example is that of its first verb.
    NOUN(std::string noun, std::string what, MAKE make);

    const std::vector<VERB>& verbs() const;
    const std::vector<NOUN>& groups() const;
    const std::string& example() const;

    std::string name;
    std::string description;

private:
    const NOUN_CONTENTS& contents() const;

    std::string m_example;  ///< "": that of its first verb
    MAKE m_make;
    mutable std::shared_ptr<const NOUN_CONTENTS> m_contents;  ///< null: nobody has asked yet
};

/// What may stand behind a noun: one of its verbs, or one of its groups of verbs, which are nouns themselves.
struct NOUN_CONTENTS {
    std::vector<VERB> verbs;
    std::vector<NOUN> groups = {};
};

/// An option that goes with every verb.
struct GLOBAL_OPTION {
    using APPLY = std::function<void(const std::string& value, COMMAND& command)>;

    std::string names;                  ///< "--long" or "-s,--long"
    std::string value_name;             ///< what the help calls its value; "": it has none
    std::string description;            ///< what it does
    APPLY apply;                        ///< carries it out; a flag's value is ""
    bool repeats = false;               ///< may be given more than once
    bool instead = false;               ///< is an answer of its own: no verb is carried out
    std::function<JSON()> schema = {};  ///< the JSON Schema of that answer
};

/// "-s,--long" as its two names.
std::vector<std::string> names_of(const GLOBAL_OPTION& option);

/// All that can be asked for: the nouns are groups of the whole command, what needs no noun are verbs of it.
struct COMMAND_TABLE {
    NOUN all;
    std::vector<GLOBAL_OPTION> options;  ///< applied in this order
    std::string notes;                   ///< lines of help before the example, each with its line feed
};

/// Carries out what the arguments ask for, after the options that go with every verb. False when there is nothing to
/// carry out: help was asked for and is shown. Wrong arguments throw COMMAND_FAILURE.
bool run_command_line(const COMMAND_TABLE& table, const std::vector<std::string>& arguments, COMMAND& command);
