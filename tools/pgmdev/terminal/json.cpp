#include "terminal/json.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "terminal/printable.h"

namespace {

using DOCUMENT = nlohmann::ordered_json;

DOCUMENT document_of(const JSON& json);

DOCUMENT::array_t document_of(const JSON::ARRAY& array) {
    DOCUMENT::array_t elements;
    elements.reserve(array.size());
    std::transform(array.begin(), array.end(), std::back_inserter(elements),
                   [](const JSON& element) { return document_of(element); });
    return elements;
}

DOCUMENT::object_t document_of(const JSON::OBJECT& object) {
    DOCUMENT::object_t members;
    members.reserve(object.names.size());
    for (std::size_t i = 0; i < object.names.size(); ++i) {
        // Without looking whether the name is there, which it is once.
        members.Container::emplace_back(object.names[i], document_of(object.values[i]));
    }
    return members;
}

DOCUMENT document_of(const JSON& json) {
    return std::visit(
        [](const auto& value) -> DOCUMENT {
            if constexpr (requires { *value; }) {
                return document_of(*value);
            } else {
                return value;
            }
        },
        json.value());
}

constexpr int READABLE = 2;  // blanks for each level
constexpr int ON_ONE_LINE = -1;

std::string text_of(const JSON& json, int indentation) {
    return printable_json(document_of(json).dump(indentation, ' ', false, DOCUMENT::error_handler_t::replace));
}

}  // namespace

JSON::JSON(std::initializer_list<MEMBER> members) : m_value(OBJECT()) {
    OBJECT& object = std::get<SHARED<OBJECT>>(m_value).own();
    object.names.reserve(members.size());
    object.values.reserve(members.size());
    for (const MEMBER& member : members) {
        object.names.push_back(std::move(member.name));
        object.values.push_back(std::move(member.value));
    }
}

void JSON::push_back(JSON value) {
    std::get<SHARED<ARRAY>>(m_value).own().push_back(std::move(value));
}

JSON& JSON::operator[](std::string_view name) {
    if (std::holds_alternative<std::nullptr_t>(m_value)) {
        m_value = OBJECT();
    }
    OBJECT& object = std::get<SHARED<OBJECT>>(m_value).own();
    const auto found = std::find(object.names.begin(), object.names.end(), name);
    if (found != object.names.end()) {
        return object.values[static_cast<std::size_t>(found - object.names.begin())];
    }
    object.names.emplace_back(name);
    return object.values.emplace_back();
}

void JSON::append(JSON object) {  // a copy, so that it may also be a part of this one
    const OBJECT& members = object.members();
    for (std::size_t i = 0; i < members.names.size(); ++i) {
        (*this)[members.names[i]] = members.values[i];
    }
}

std::string json_text(const JSON& value) {
    return text_of(value, ON_ONE_LINE);
}

std::string readable_json_text(const JSON& value) {
    return text_of(value, READABLE);
}

void print_json(const JSON& document) {
    fmt::print("{}\n", readable_json_text(document));
}

void print_json_line(const JSON& document) {
    fmt::print("{}\n", json_text(document));
}

void print_json_answer(const JSON& answer, bool batch) {
    batch ? print_json_line(answer) : print_json(answer);
}
