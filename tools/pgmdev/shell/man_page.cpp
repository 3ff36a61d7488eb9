#include "shell/man_page.h"

#include <fmt/core.h>

#include <stdexcept>
#include <string_view>

#include "fio.h"

namespace {

/// The text so that man shows it as it is.
std::string escaped(std::string_view text) {
    std::string shown;
    bool first = true;  // of a line, where '.' and '\'' begin a request
    for (const char c : text) {
        if (first && (c == '.' || c == '\'')) {
            shown += "\\&";
        }
        if (c == '\\') {
            shown += "\\e";
        } else if (c == '-') {
            shown += "\\-";
        } else {
            shown += c;
        }
        first = c == '\n';
    }
    return shown;
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fR";
}

/// Lines that stay lines.
std::string lines(const std::string& text) {
    return ".nf\n" + escaped(text) + ".fi\n";
}

bool is_option(const ARGUMENT& argument) {
    return argument.name.starts_with('-');
}

const char* value_name(const ARGUMENT& argument) {
    if (argument.value_name != nullptr) {
        return argument.value_name;
    }
    const bool number = argument.kind == ARGUMENT::NUMBER || argument.kind == ARGUMENT::OPTIONAL_NUMBER;
    return number ? "NUMBER" : "TEXT";
}

/// The argument with its value.
std::string spelled(const ARGUMENT& argument) {
    if (!is_option(argument)) {
        return italic(argument.name);
    }
    return bold(argument.name) + (argument.kind == ARGUMENT::FLAG ? "" : " " + italic(value_name(argument)));
}

/// How the argument stands in the usage: in brackets when it may be left out, with dots when it may be repeated.
std::string usage_of(const ARGUMENT& argument) {
    const bool needed =
        argument.kind == ARGUMENT::TEXT || argument.kind == ARGUMENT::TEXTS || argument.kind == ARGUMENT::NUMBER;
    const bool many = argument.kind == ARGUMENT::TEXTS || argument.kind == ARGUMENT::OPTIONAL_TEXTS;
    return (needed ? "" : "[") + spelled(argument) + (needed ? "" : "]") + (many ? " ..." : "");
}

std::string heading(const std::string& page) {
    // Without a date: the same sources give the same page.
    return fmt::format(".TH {} 1 \"\" pgmdev\n", page);
}

std::string item(const std::string& term, std::string_view text) {
    return fmt::format(".TP\n{}\n{}\n", term, escaped(text));
}

std::string verb_section(const std::string& words, const VERB& verb) {
    std::string text = fmt::format(".SS {}\n{}\n.PP\n{}", escaped(words), escaped(verb.description), bold(words));
    for (const ARGUMENT& argument : verb.arguments) {
        text += " " + usage_of(argument);
    }
    text += "\n";
    for (const ARGUMENT& argument : verb.arguments) {
        text += item(spelled(argument), argument.description);
    }
    if (!verb.notes.empty()) {
        text += ".PP\n" + lines(verb.notes);
    }
    return text + fmt::format(".PP\nExample:\n.PP\n.nf\n    {}\n.fi\n", escaped(verb.example));
}

std::string verb_sections(const std::string& words, const NOUN& noun) {
    std::string text;
    for (const VERB& verb : noun.verbs()) {
        text += verb_section(words + " " + verb.name, verb);
    }
    for (const NOUN& group : noun.groups()) {
        text += verb_sections(words + " " + group.name, group);
    }
    return text;
}

std::string noun_page(const NOUN& noun) {
    const std::string words = "pgmdev " + noun.name;
    return heading("pgmdev\\-" + escaped(noun.name)) +
           fmt::format(".SH NAME\npgmdev\\-{} \\- {}\n", escaped(noun.name), escaped(noun.description)) +
           fmt::format(".SH SYNOPSIS\n{} {} ...\n", bold(words), italic("VERB")) + ".SH VERBS\n" +
           verb_sections(words, noun) +
           ".SH SEE ALSO\n\\fBpgmdev\\fR(1), which tells the options that go with every verb, and the exit codes.\n";
}

std::string top_page(const COMMAND_TABLE& table) {
    const NOUN& all = table.all;
    std::string text = heading(all.name);
    text += fmt::format(".SH NAME\n{} \\- {}\n", all.name, escaped(all.description));
    text += fmt::format(".SH SYNOPSIS\n{} [{}] {} {} ...\n", bold(all.name), italic("OPTION"), italic("NOUN"),
                        italic("VERB"));
    text += ".SH NOUNS\n";
    for (const NOUN& noun : all.groups()) {
        text += item(fmt::format(R"(\fBpgmdev\-{}\fR(1))", escaped(noun.name)), noun.description);
    }
    text += ".SH OPTIONS\n";
    for (const GLOBAL_OPTION& option : table.options) {
        const std::string value = option.value_name.empty() ? "" : " " + italic(option.value_name);
        text += item(bold(option.names) + value, option.description);
    }
    text += item(bold("-h,--help"), "Show help, of a noun or verb when it stands behind one");
    if (!all.verbs().empty()) {
        text += ".SH VERBS WITHOUT A NOUN\n";
        for (const VERB& verb : all.verbs()) {
            text += verb_section(all.name + " " + verb.name, verb);
        }
    }
    text += fmt::format(".SH NOTES\n{}", escaped(table.notes));
    text += fmt::format(".SH EXAMPLE\n.nf\n    {}\n.fi\n.SH SEE ALSO\n", escaped(all.example()));
    for (const NOUN& noun : all.groups()) {
        text +=
            fmt::format(R"({}\fBpgmdev\-{}\fR(1))", &noun == &all.groups().front() ? "" : ",\n", escaped(noun.name));
    }
    return text + "\n";
}

}  // namespace

void print_man_page(const COMMAND_TABLE& table, const std::vector<std::string>& words) {
    if (words.empty()) {
        fmt::print("{}", top_page(table));
        return;
    }
    for (const NOUN& noun : table.all.groups()) {
        if (noun.name == words.front()) {
            fmt::print("{}", noun_page(noun));
            return;
        }
    }
    throw USAGE_ERROR(fmt::format("there is no noun \"{}\"", words.front()));
}

void write_man_pages(const COMMAND_TABLE& table, const std::vector<std::string>& words) {
    if (words.size() != 1) {
        throw USAGE_ERROR("expected one directory");
    }
    const auto write = [&](const std::string& name, const std::string& page) {
        FIO_REPLACEMENT file(words.front() + "/" + name + ".1");
        if (!file.write({reinterpret_cast<const BYTE*>(page.data()), page.size()}) || !file.commit()) {
            throw std::runtime_error(words.front() + "/" + name + ".1 cannot be written");
        }
    };
    write("pgmdev", top_page(table));
    for (const NOUN& noun : table.all.groups()) {
        write("pgmdev-" + noun.name, noun_page(noun));
    }
}
