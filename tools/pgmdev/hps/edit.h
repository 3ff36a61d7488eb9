#pragma once

/// \file
/// The user's boot flash lists, for FLASH = HPS_NAND or HPS_SPI: changing them.

#include <optional>
#include <string>
#include <vector>

#include "hps/flash.h"
#include "terminal/command.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// `index`, the values under their names, and whether the entry is the user's.
template <class FLASH>
JSON entry_json(std::size_t index, const typename FLASH::RECORD& record, bool user) {
    JSON object{{"index", index}};
    for (const auto& member : FLASH::MEMBERS) {
        std::visit([&](auto field) { object[member.name] = record.*field; }, member.field);
    }
    object["user"] = user;
    return object;
}

/// The schema of entry_json.
template <class FLASH>
JSON entry_schema() {
    std::vector<SCHEMA_MEMBER> members{{"index", number_schema()}};
    for (const auto& member : FLASH::MEMBERS) {
        const auto schema = [](auto field) { return schema_of_field(field); };
        members.push_back({std::string(member.name), std::visit(schema, member.field)});
    }
    members.push_back({"user", flag_schema()});
    return object_schema(members);
}

/// Adds an entry of the user's from "FIELD=VALUE" texts; what they leave out is taken from the entry `like`, if given. It
/// comes before the user's entry `before`, or behind all of them. `force`: in a doubtful container, too.
template <class FLASH>
void add_entry(const std::vector<std::string>& assignments, std::optional<std::size_t> like,
               std::optional<std::size_t> before, bool force, const COMMAND& command);

/// Changes fields of an entry of the user's.
template <class FLASH>
void edit_entry(std::size_t index, const std::vector<std::string>& assignments, bool force, const COMMAND& command);

/// Removes an entry of the user's by its index in the list.
template <class FLASH>
void remove_entry(std::size_t index, bool force, const COMMAND& command);
