#include "about/schema.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <span>

#include "files/output.h"
#include "nouns.h"
#include "terminal/did_you_mean.h"
#include "terminal/schema.h"

namespace {

/// A verb, or an option, that answers in JSON, and the words that lead to it; an option without its dashes.
struct ANSWERING_VERB {
    std::vector<std::string> path;
    std::string command_line;
    std::string description;
    std::function<JSON()> schema;
};

std::string joined(std::span<const std::string> words, const char* separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string file_name(const ANSWERING_VERB& answering) {
    return joined(answering.path, "-");
}

void add_verbs(const NOUN& noun, const std::vector<std::string>& path, std::vector<ANSWERING_VERB>& verbs) {
    const auto behind = [&path](const std::string& word) {
        std::vector<std::string> longer = path;
        longer.push_back(word);
        return longer;
    };
    for (const VERB& verb : noun.verbs()) {
        if (verb.schema) {
            const std::vector<std::string> words = behind(verb.name);
            verbs.push_back({words, "pgmdev " + joined(words, " "), verb.description, verb.schema});
        }
    }
    for (const NOUN& group : noun.groups()) {
        add_verbs(group, behind(group.name), verbs);
    }
}

std::vector<ANSWERING_VERB> all_verbs() {
    std::vector<ANSWERING_VERB> verbs;
    add_verbs(whole_command().all, {}, verbs);
    for (const GLOBAL_OPTION& option : whole_command().options) {
        if (option.schema) {
            const std::string word = option.names.substr(option.names.find_first_not_of('-'));
            verbs.push_back({{word}, "pgmdev " + option.names, option.description, option.schema});
        }
    }
    return verbs;
}

/// The verbs whose paths begin with the words.
std::vector<ANSWERING_VERB> verbs_behind(const std::vector<std::string>& words) {
    std::vector<ANSWERING_VERB> verbs;
    std::vector<std::string> known;
    for (const ANSWERING_VERB& answering : all_verbs()) {
        known.push_back(joined(answering.path, " "));
        known.push_back(answering.path.front());
        if (words.size() <= answering.path.size() && std::equal(words.begin(), words.end(), answering.path.begin())) {
            verbs.push_back(answering);
        }
    }
    if (verbs.empty()) {
        const std::string text = joined(words, " ");
        throw USAGE_ERROR(
            fmt::format("no verb that answers in JSON is named \"{}\"{}", text, did_you_mean(nearest(text, known))));
    }
    return verbs;
}

/// What is told when nothing can be answered.
JSON failure_document() {
    return object_schema({{"error", failure_reference()}});
}

JSON heading(const std::string& title, const std::string& description) {
    return {{"title", title}, {"description", description}};
}

JSON answers_of(const ANSWERING_VERB& answering) {
    JSON schema = heading(answering.command_line, answering.description);
    schema["anyOf"] = std::vector<JSON>{answering.schema(), failure_document()};
    return schema;
}

/// A document of its own, which holds what its parts refer to.
JSON document_of(const JSON& schema, const JSON& definitions) {
    JSON document{{"$schema", "https://json-schema.org/draft/2020-12/schema"}};
    document.append(schema);
    document["$defs"] = definitions;
    return document;
}

JSON definitions() {
    return {{"failure", failure_schema()}};
}

JSON document_of_one(const ANSWERING_VERB& answering) {
    return document_of(answers_of(answering), definitions());
}

JSON document_of_all(const std::vector<ANSWERING_VERB>& verbs) {
    const NOUN& all = whole_command().all;
    JSON parts = definitions();
    std::vector<JSON> choices;
    for (const ANSWERING_VERB& answering : verbs) {
        parts[file_name(answering)] = answers_of(answering);
        choices.push_back({{"$ref", "#/$defs/" + file_name(answering)}});
    }
    JSON schema = heading(all.name, all.description);
    schema["anyOf"] = choices;
    return document_of(schema, parts);
}

void write_files(const std::vector<ANSWERING_VERB>& verbs, const std::string& directory) {
    if (directory.empty()) {  // behind which a file would be one of the root
        throw output_failure({directory, {"option --directory"}});
    }
    for (const ANSWERING_VERB& answering : verbs) {
        const std::string path = fmt::format("{}/{}.json", directory, file_name(answering));
        const std::string text = readable_json_text(document_of_one(answering)) + "\n";
        OUTPUT_FILE output({path, {"option --directory"}});
        output.write(std::span(reinterpret_cast<const BYTE*>(text.data()), text.size()));
        output.commit();
    }
}

void show_schema(const ARGUMENTS& given, const COMMAND&) {
    const std::vector<std::string>& words = given.texts("WORD");
    const std::vector<ANSWERING_VERB> verbs = verbs_behind(words);
    if (given.has("--directory")) {
        write_files(verbs, given.text("--directory"));
    } else if (verbs.size() == 1 && verbs.front().path == words) {
        print_json(document_of_one(verbs.front()));
    } else {
        print_json(document_of_all(verbs));
    }
}

}  // namespace

VERB schema_verb() {
    return VERB("schema", "The JSON Schema of the answers in JSON", "pgmdev schema flash show", show_schema)
        .takes({"WORD", "Noun and verb whose answer it is, or version; none: all", ARGUMENT::OPTIONAL_TEXTS})
        .takes({"--directory", "Write a file for each verb into this directory, NOUN-VERB.json",
                ARGUMENT::OPTIONAL_TEXT, "DIR"});
}
