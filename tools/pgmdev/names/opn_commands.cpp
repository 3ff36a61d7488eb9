#include <fmt/core.h>

#include <charconv>

#include "names/device_names.h"
#include "names/part_list.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "stl.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/json.h"

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

JSON to_json(const ORDERING_CODE& code) {
    JSON object = JSON::object();
    if (code.index != INVALID_DWORD) {
        object["index"] = code.index;
    }
    if (!code.name.empty()) {
        object["name"] = code.name;
    }
    if (code.hash != PGMDEV_MGR::INVALID_NAME_HASH) {
        object["hash"] = code.hash;
    }
    return object;
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

/// Shows a code, or says what is missing.
void answer(const ORDERING_CODE& code, bool found, bool batch, const std::string& not_found, COMMAND& command) {
    if (!found) {
        command.result = EXIT_NOT_FOUND;
        fmt::print(stderr, "pgmdev: {}\n", not_found);
    }
    if (command.json && (found || batch)) {
        print_json_answer(to_json(code), batch);
    } else if (found) {
        print_code(code);
    }
}

std::string unknown_part(const std::string& name, bool batch) {
    return fmt::format("no part is named \"{}\"{}", name, batch ? "" : did_you_mean(nearest(name, part_names())));
}

void show_name(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("INDEX"), [&](const std::string& item, bool batch) {
        const DWORD index = parse_dword(item, "an ordering-code index");
        const std::string name = PGMDEV_MGR::get_opn(index);
        ORDERING_CODE code{index, name};
        if (!name.empty()) {
            code.hash = PGMDEV_MGR::get_opn_hash(name);
        }
        answer(code, !name.empty(), batch, fmt::format("no part has the ordering-code index {}", index), command);
    });
}

void show_index(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("NAME"), [&](const std::string& item, bool batch) {
        const ORDERING_CODE code = by_name(item);
        const bool is_part = code.hash != PGMDEV_MGR::INVALID_NAME_HASH;
        const bool found = code.index != INVALID_DWORD;
        answer(code, found, batch,
               found     ? ""
               : is_part ? fmt::format("the part {} has no ordering-code index", code.name)
                         : unknown_part(item, batch),
               command);
    });
}

void show_hash(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("NAME"), [&](const std::string& item, bool batch) {
        const ORDERING_CODE code = by_name(item);
        const bool found = code.hash != PGMDEV_MGR::INVALID_NAME_HASH;
        answer(code, found, batch, found ? "" : unknown_part(item, batch), command);
    });
}

void show_from_hash(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("HASH"), [&](const std::string& item, bool batch) {
        const QWORD hash = parse_hash(item);
        const std::string name = PGMDEV_MGR::get_opn_from_hash(hash);
        const ORDERING_CODE code = name.empty() ? ORDERING_CODE{INVALID_DWORD, "", hash} : by_name(name);
        answer(code, !name.empty(), batch, fmt::format("no part's name has the hash {}", item), command);
    });
}

}  // namespace

NOUN opn_noun() {
    const ARGUMENT index{"INDEX", "Ordering-code index, decimal or 0x...; - reads one per line"};
    const ARGUMENT name{"NAME", "Part name, in any case; - reads one per line"};
    const ARGUMENT hash{"HASH", "Hash, decimal or 0x...; - reads one per line"};
    const std::vector<VERB> verbs{
        VERB("name", "The part that an ordering-code index stands for", "pgmdev opn name 1337", show_name).takes(index),
        VERB("index", "The first ordering-code index of a part", "pgmdev opn index KES50C6", show_index).takes(name),
        VERB("hash", "The 48-bit hash of a part's name", "pgmdev opn hash KES50C6", show_hash).takes(name),
        VERB("from-hash", "The part whose name has a hash", "pgmdev opn from-hash 0xDCB59F75E910", show_from_hash)
            .takes(hash),
        opn_list_verb(),
    };
    return {"opn", "Ordering codes: indexes and hashes of parts", "pgmdev opn index KES50C6", verbs};
}
