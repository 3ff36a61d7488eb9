#pragma once

/// \file
/// A validator for the words of JSON Schema (draft 2020-12) that the schemas of the command use. A word that it does not
/// know is a fault of the schema. What a schema says nothing about may be anything.

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

#include "json.h"

class JSON_SCHEMA {
public:
    using JSON = JSON_VALUE;

    explicit JSON_SCHEMA(JSON schema) : m_schema(std::move(schema)) {}

    /// What is wrong with a document; "" when it fits.
    std::string faults_of(const JSON& document) const { return faults(m_schema, document, "$"); }

private:
    std::string faults(const JSON& schema, const JSON& value, const std::string& place) const {
        if (!schema.is_object()) {
            return fault(place, "the schema is no object");
        }
        std::string found;
        for (const auto& [word, argument] : schema.items()) {
            if (word == "type") {
                found += has_type(argument, value) ? "" : fault(place, "is not of type " + argument.dump());
            } else if (word == "required") {
                found += missing_members(argument, value, place);
            } else if (word == "properties") {
                found += faults_of_members(argument, value, place);
            } else if (word == "additionalProperties") {
                found += argument == false ? other_members(schema, value, place)
                                           : fault(place, "additionalProperties is not false");
            } else if (word == "items") {
                found += faults_of_elements(argument, value, place);
            } else if (word == "enum") {
                const bool listed = std::find(argument.begin(), argument.end(), value) != argument.end();
                found += listed ? "" : fault(place, "is none of " + argument.dump());
            } else if (word == "anyOf") {
                found += faults_of_choice(argument, value, place);
            } else if (word == "$ref") {
                found += faults(referred(argument), value, place);
            } else if (word != "$schema" && word != "$defs" && word != "title" && word != "description") {
                found += fault(place, "the schema has the unknown word " + word);
            }
        }
        return found;
    }

    static std::string fault(const std::string& place, const std::string& what) { return place + ": " + what + "\n"; }

    static bool has_type(const JSON& type, const JSON& value) {
        const auto name = type.get<std::string>();
        return (name == "object" && value.is_object()) || (name == "array" && value.is_array()) ||
               (name == "string" && value.is_string()) || (name == "integer" && value.is_number_integer()) ||
               (name == "boolean" && value.is_boolean()) || (name == "null" && value.is_null());
    }

    static std::string missing_members(const JSON& names, const JSON& value, const std::string& place) {
        std::string found;
        for (const JSON& name : names) {
            if (value.is_object() && !value.contains(name.get<std::string>())) {
                found += fault(place, "has no member " + name.dump());
            }
        }
        return found;
    }

    std::string faults_of_members(const JSON& properties, const JSON& value, const std::string& place) const {
        std::string found;
        if (value.is_object()) {
            for (const auto& [name, member] : value.items()) {
                if (properties.contains(name)) {
                    found += faults(properties.at(name), member, (place + ".").append(name));
                }
            }
        }
        return found;
    }

    /// Members that the schema does not describe.
    static std::string other_members(const JSON& schema, const JSON& value, const std::string& place) {
        std::string found;
        if (value.is_object()) {
            for (const auto& [name, member] : value.items()) {
                found += schema.at("properties").contains(name) ? "" : fault(place, "has the member " + name);
            }
        }
        return found;
    }

    std::string faults_of_elements(const JSON& schema, const JSON& value, const std::string& place) const {
        std::string found;
        if (value.is_array()) {
            for (std::size_t i = 0; i < value.size(); ++i) {
                found += faults(schema, value[i], place + "[" + std::to_string(i) + "]");
            }
        }
        return found;
    }

    std::string faults_of_choice(const JSON& schemas, const JSON& value, const std::string& place) const {
        std::string all = fault(place, "fits none of:");
        for (const JSON& schema : schemas) {
            const std::string found = faults(schema, value, place);
            if (found.empty()) {
                return "";
            }
            all += found + "--\n";
        }
        return all;
    }

    /// What a reference within the document leads to: "#/name/name".
    const JSON& referred(const JSON& reference) const {
        const JSON* place = &m_schema;
        std::istringstream names(reference.get<std::string>());
        std::string name;
        for (std::getline(names, name, '/'); std::getline(names, name, '/');) {
            place = &place->at(name);
        }
        return *place;
    }

    JSON m_schema;
};
