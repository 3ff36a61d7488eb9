#pragma once

/// \file
/// The user's boot flash lists, for FLASH = HPS_NAND or HPS_SPI: changing them.

#include <optional>
#include <string>
#include <vector>

#include "hps/flash.h"
#include "terminal/command.h"
#include "terminal/json.h"

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

/// Adds an entry of the user's from "FIELD=VALUE" texts; what they leave out is taken from the entry `like`, if given.
template <class FLASH>
void add_entry(const std::vector<std::string>& assignments, std::optional<std::size_t> like, const COMMAND& command);

/// Removes an entry of the user's by its index in the list.
template <class FLASH>
void remove_entry(std::size_t index, COMMAND& command);
