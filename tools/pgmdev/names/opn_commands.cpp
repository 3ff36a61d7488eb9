#include <fmt/core.h>

#include <charconv>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "names/part_list.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "stl.h"
#include "terminal/answer.h"
#include "terminal/input.h"
#include "terminal/json.h"
#include "terminal/schema.h"

namespace {

/// An ordering code, as far as it is known.
struct ORDERING_CODE {
    DWORD index = INVALID_DWORD;
    std::string name;
    QWORD hash = PGMDEV_MGR::INVALID_NAME_HASH;
};

ORDERING_CODE by_name(std::string name) {
    stl_toupper(name);
    return {PGMDEV_MGR::get_opn_enum(name), name, PGMDEV_MGR::get_opn_hash(name)};
}

/// What is not known is null.
JSON to_json(const ORDERING_CODE& code) {
    const bool indexed = code.index != INVALID_DWORD;
    const bool hashed = code.hash != PGMDEV_MGR::INVALID_NAME_HASH;
    return {{"index", indexed ? JSON(code.index) : JSON()},
            {"name", !code.name.empty() ? JSON(code.name) : JSON()},
            {"hash", hashed ? JSON(code.hash) : JSON()}};
}

/// The index is not known of every part whose hash is.
JSON ordering_code_schema() {
    return question_schema({{"index", or_null(number_schema())}, {"name", text_schema()}, {"hash", number_schema()}},
                           {"index", "name", "hash"});
}

void print_code(const ORDERING_CODE& code) {
    const std::string index = code.index != INVALID_DWORD ? std::to_string(code.index) : "-";
    fmt::print("index {}  name {}  hash 0x{:012X}\n", index, code.name, code.hash);
}

QWORD parse_hash(const std::string& text) {
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const char* last = text.data() + text.size();
    QWORD hash = 0;
    const auto [end, error] = std::from_chars(text.data() + (hex ? 2 : 0), last, hash, hex ? 16 : 10);
    if (error != std::errc() || end != last) {
        throw USAGE_ERROR(fmt::format("\"{}\" is not a hash: expected a number, in hexadecimal after 0x", text));
    }
    return hash;
}

ANSWER answer_of(const ORDERING_CODE& code, bool found) {
    ANSWER answer;
    answer.found = found;
    answer.content = to_json(code);
    if (found) {
        answer.print = [code] { print_code(code); };
    }
    return answer;
}

ANSWER unknown_part(const ORDERING_CODE& code, const std::string& name) {
    ANSWER answer = answer_of(code, false);
    answer.missing = fmt::format("no part is named \"{}\"", name);
    answer.candidates = near_names(name, {.part = true}).best([](const std::string&) { return true; });
    return answer;
}

ANSWER ask_name(const std::string& item) {
    const DWORD index = parse_dword(item, "an ordering-code index");
    ORDERING_CODE code{index, PGMDEV_MGR::get_opn(index)};
    if (!code.name.empty()) {
        code.hash = PGMDEV_MGR::get_opn_hash(code.name);
    }
    ANSWER answer = answer_of(code, !code.name.empty());
    answer.missing = fmt::format("no part has the ordering-code index {}", index);
    return answer;
}

ANSWER ask_index(const std::string& item) {
    const ORDERING_CODE code = by_name(item);
    if (code.hash == PGMDEV_MGR::INVALID_NAME_HASH) {
        return unknown_part(code, item);
    }
    ANSWER answer = answer_of(code, code.index != INVALID_DWORD);
    answer.missing = fmt::format("the part {} has no ordering-code index", code.name);
    return answer;
}

ANSWER ask_hash(const std::string& item) {
    const ORDERING_CODE code = by_name(item);
    const bool found = code.hash != PGMDEV_MGR::INVALID_NAME_HASH;
    return found ? answer_of(code, true) : unknown_part(code, item);
}

ANSWER ask_from_hash(const std::string& item) {
    const QWORD hash = parse_hash(item);
    const std::string name = PGMDEV_MGR::get_opn_from_hash(hash);
    ANSWER answer = answer_of(name.empty() ? ORDERING_CODE{INVALID_DWORD, "", hash} : by_name(name), !name.empty());
    answer.missing = fmt::format("no part's name has the hash {}", item);
    return answer;
}

VERB question(const char* verb, const char* description, const char* example, const ARGUMENT& argument,
              ANSWER (*ask)(const std::string&)) {
    const auto run = [name = argument.name, ask](const ARGUMENTS& given, COMMAND& command) {
        answer_each(given.text(name), command, ask);
    };
    return VERB(verb, description, example, run).takes(argument).answers(ordering_code_schema);
}

}  // namespace

NOUN_CONTENTS opn_contents() {
    const ARGUMENT index{"INDEX", "Ordering-code index, decimal or 0x...; - reads one per line"};
    const ARGUMENT name{"NAME", "Part name, in any case; - reads one per line"};
    const ARGUMENT hash{"HASH", "Hash, decimal or 0x...; - reads one per line"};
    return {list_of(
        question("name", "The part that an ordering-code index stands for", "pgmdev opn name 1337", index, ask_name),
        question("index", "The first ordering-code index of a part", "pgmdev opn index KES50C6", name, ask_index),
        question("hash", "The 48-bit hash of a part's name", "pgmdev opn hash KES50C6", name, ask_hash),
        question("from-hash", "The part whose name has a hash", "pgmdev opn from-hash 0xDCB59F75E910", hash,
                 ask_from_hash),
        opn_list_verb())};
}
