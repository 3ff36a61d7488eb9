#include "names/part_from_pcf.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "gen.h"
#include "names/name_schemes.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "stl.h"
#include "terminal/answer.h"
#include "terminal/schema.h"

// The library answers with a part whose own name is a programming name. Most parts have longer names: package and grade
// follow. These have their programmer-file part name by way of their programming name, which is followed backwards.

namespace {

/// The names of the parts with a programmer-file part name by way of their programming name, hidden ones, too.
std::vector<std::string> parts_of(std::string pcf) {
    static NAME_SCHEMES schemes;
    stl_toupper(pcf);
    std::vector<std::string> names;
    for (const NAMED_PART& part : schemes.parts_named(pcf)) {
        if (part.is_named_by(SCHEME::PGM_PART_PCF)) {
            names.push_back(upper_name(part.number));
        }
    }
    return names;
}

/// The library's answer. To a blank name it gives any part whose name is no programming name.
std::string first_part_of(const std::string& pcf) {
    return pcf.empty() ? "" : PGMDEV_MGR::get_part_name_from_pcf(pcf);
}

bool is_name_of_device(const std::string& pcf) {
    const std::vector<std::string>& known = device_names();  // of which some have none, that is ""
    return !pcf.empty() && std::any_of(known.begin(), known.end(), [&pcf](const std::string& device) {
        return gen_stricmp(PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(device), pcf) == 0;
    });
}

ANSWER not_found(const std::string& pcf, const std::vector<std::string>& parts) {
    ANSWER answer;
    answer.found = false;
    answer.content = {{"name", pcf}, {"part", nullptr}};
    if (parts.empty() && is_name_of_device(pcf)) {
        answer.missing =
            fmt::format("no part has the programmer-file part name \"{}\": its devices have no parts", pcf);
    } else if (parts.empty()) {
        answer.missing = fmt::format("there is no part with the programmer-file part name \"{}\"", pcf);
        answer.candidates = nearest_names(pcf, {.programmer_part = true});
    } else {
        answer.missing = fmt::format(
            "no part's own name is a programming name of \"{}\", which is what this answers for; --all lists the {} "
            "part{} "
            "that {} it by way of a programming name",
            pcf, parts.size(), parts.size() == 1 ? "" : "s", parts.size() == 1 ? "has" : "have");
    }
    return answer;
}

ANSWER first_part(const std::string& pcf) {
    const std::string part = first_part_of(pcf);
    if (part.empty()) {
        return not_found(pcf, parts_of(pcf));
    }
    ANSWER answer;
    answer.content = {{"name", pcf}, {"part", part}};
    answer.print = [part] { fmt::print("{}\n", part); };
    return answer;
}

ANSWER all_parts(const std::string& pcf) {
    const std::string first = first_part_of(pcf);
    std::vector<std::string> parts = parts_of(pcf);
    if (parts.empty()) {
        return not_found(pcf, parts);
    }
    ANSWER answer;
    answer.content = {{"name", pcf}, {"part", first.empty() ? JSON() : JSON(first)}, {"parts", parts}};
    answer.print = [parts = std::move(parts)] {
        for (const std::string& part : parts) {
            fmt::print("{}\n", part);
        }
    };
    answer.is_block = true;
    return answer;
}

void show_parts_of_pcf(const ARGUMENTS& given, COMMAND& command) {
    answer_each(given.text("NAME"), command, given.has("--all") ? all_parts : first_part);
}

JSON parts_of_pcf_schema() {
    return question_schema(
        {{"name", text_schema()}, {"part", or_null(text_schema())}, {"parts", array_schema(text_schema()), false}},
        {"name", "part"});
}

}  // namespace

VERB part_from_pcf_verb() {
    return VERB("from-pcf", "The first part with a programmer-file part name, or all of them",
                "pgmdev part from-pcf BLU_R35", show_parts_of_pcf)
        .takes({"NAME", "Programmer-file part name, in any case; - reads one per line"})
        .takes({"--all", "All parts with that name, hidden ones, too", ARGUMENT::FLAG})
        .tells(
            "Without --all only a part counts whose own name is a programming name; few are, for package and\n"
            "grade mostly follow it. With --all every part counts whose programming name has that name.\n")
        .answers(parts_of_pcf_schema);
}
