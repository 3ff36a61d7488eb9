#include "terminal/schema.h"

#include <algorithm>
#include <utility>

#include "terminal/failure.h"

JSON text_schema() {
    return {{"type", "string"}};
}

JSON flag_schema() {
    return {{"type", "boolean"}};
}

JSON number_schema() {
    return {{"type", "integer"}};
}

JSON choice_schema(const std::vector<std::string>& texts) {
    return {{"type", "string"}, {"enum", texts}};
}

JSON any_of(std::vector<JSON> schemas) {
    return {{"anyOf", std::move(schemas)}};
}

JSON or_null(JSON schema) {
    return any_of({std::move(schema), {{"type", "null"}}});
}

JSON array_schema(JSON items) {
    return {{"type", "array"}, {"items", std::move(items)}};
}

JSON failure_schema() {
    const JSON fault = object_schema({{"place", or_null(text_schema())},
                                      {"field", or_null(text_schema())},
                                      {"given", or_null(text_schema())},
                                      {"accepted", text_schema()},
                                      {"advice", or_null(text_schema())}});
    return object_schema({{"code", choice_schema(code_names())},
                          {"message", text_schema()},
                          {"path", text_schema(), false},
                          {"tried", array_schema(text_schema()), false},
                          {"advice", text_schema(), false},
                          {"condition", text_schema(), false},
                          {"module", text_schema(), false},
                          {"source", text_schema(), false},
                          {"line", number_schema(), false},
                          {"faults", array_schema(fault), false}});
}

JSON failure_reference() {
    return {{"$ref", "#/$defs/failure"}};
}

JSON object_schema(std::vector<SCHEMA_MEMBER> members) {
    JSON properties = JSON::object();
    JSON required = JSON::array();
    for (SCHEMA_MEMBER& member : members) {
        properties[member.name] = std::move(member.schema);
        if (member.required) {
            required.push_back(member.name);
        }
    }
    return {{"type", "object"},
            {"properties", std::move(properties)},
            {"required", std::move(required)},
            {"additionalProperties", false}};
}

JSON question_schema(const std::vector<SCHEMA_MEMBER>& content, const std::vector<std::string>& known_anyway,
                     const std::vector<SCHEMA_MEMBER>& only_missing) {
    const auto exactly = [](bool value) {
        JSON values = JSON::array();
        values.push_back(value);
        return JSON{{"type", "boolean"}, {"enum", values}};
    };
    std::vector<SCHEMA_MEMBER> found{{"query", text_schema()}, {"found", exactly(true)}};
    std::vector<SCHEMA_MEMBER> missing{{"query", text_schema()}, {"found", exactly(false)}};
    std::vector<SCHEMA_MEMBER> refused = missing;
    for (const SCHEMA_MEMBER& member : content) {
        const bool known = std::find(known_anyway.begin(), known_anyway.end(), member.name) != known_anyway.end();
        found.push_back(member);
        missing.push_back({member.name, or_null(member.schema), known});
    }
    missing.insert(missing.end(), only_missing.begin(), only_missing.end());
    missing.push_back({"candidates", array_schema(text_schema())});
    refused.push_back({"error", failure_reference()});
    return any_of(
        {object_schema(std::move(found)), object_schema(std::move(missing)), object_schema(std::move(refused))});
}

JSON list_schema(const JSON& row) {
    JSON items = row;
    items["required"] = JSON::array();
    return array_schema(std::move(items));
}

JSON with_members(JSON object_schema, const std::vector<SCHEMA_MEMBER>& members) {
    for (const SCHEMA_MEMBER& member : members) {
        object_schema["properties"][member.name] = member.schema;
    }
    return object_schema;
}

std::vector<std::string> member_names(const JSON& object_schema) {
    const auto& schema = object_schema.members();
    for (std::size_t i = 0; i < schema.names.size(); ++i) {
        if (schema.names[i] == "properties") {
            return schema.values[i].members().names;
        }
    }
    return {};
}
