#pragma once

/// \file
/// Answers in JSON: values built up by the verbs and printed on standard output.

#include <concepts>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "pgmdev_types.h"

/// What copies have in common until one of them is changed.
template <class CONTENT>
class SHARED {
public:
    SHARED(CONTENT content) : m_content(std::make_shared<CONTENT>(std::move(content))) {}

    const CONTENT& operator*() const { return *m_content; }

    /// To be changed, in this copy only.
    CONTENT& own() {
        if (m_content.use_count() > 1) {
            m_content = std::make_shared<CONTENT>(*m_content);
        }
        return *m_content;
    }

private:
    std::shared_ptr<CONTENT> m_content;
};

/// One JSON value. The members of an object stay in the order in which they were added. Copies take no time: schemas are put
/// together from copies of copies. A reference that `[]` gives is used before the whole is copied, and a value is put into
/// itself by way of a copy.
class JSON {
public:
    struct MEMBER;
    using ARRAY = std::vector<JSON>;
    struct OBJECT {
        std::vector<std::string> names;
        std::vector<JSON> values;
    };
    using VALUE = std::variant<std::nullptr_t, bool, QWORD, std::string, SHARED<ARRAY>, SHARED<OBJECT>>;

    JSON() = default;  ///< null
    JSON(std::nullptr_t) {}
    JSON(bool value) : m_value(value) {}
    JSON(std::unsigned_integral auto value) : m_value(QWORD{value}) {}
    JSON(std::string value) : m_value(std::move(value)) {}
    JSON(std::string_view value) : m_value(std::string(value)) {}
    JSON(const char* value) : m_value(std::string(value)) {}
    template <class ELEMENT>
    JSON(const std::optional<ELEMENT>& value) : JSON(value ? JSON(*value) : JSON()) {}
    JSON(ARRAY values) : m_value(std::move(values)) {}
    template <class ELEMENT>
    JSON(const std::vector<ELEMENT>& values) : m_value(ARRAY(values.begin(), values.end())) {}
    JSON(std::initializer_list<MEMBER> members);  ///< an object, each member once

    static JSON array() { return ARRAY(); }
    static JSON object() { return std::initializer_list<MEMBER>(); }

    /// Adds a value to an array.
    void push_back(JSON value);
    /// The member of that name, which is added when there is none. Null becomes an object.
    JSON& operator[](std::string_view name);
    /// Takes the members of another object, in place of those with the same names.
    void append(JSON object);

    const VALUE& value() const { return m_value; }
    /// Of an object.
    const OBJECT& members() const { return *std::get<SHARED<OBJECT>>(m_value); }

private:
    VALUE m_value;
};

/// What is in braces is taken from there: copying values in values in values takes long.
struct JSON::MEMBER {
    mutable std::string name;
    mutable JSON value;
};

/// The value on one line, without a line feed. Bytes that are not UTF-8 become replacement characters.
std::string json_text(const JSON& value);
/// The same on many lines, indented.
std::string readable_json_text(const JSON& value);
/// One JSON document, readable, ending in a line feed.
void print_json(const JSON& document);
/// One JSON document on one line, for batches.
void print_json_line(const JSON& document);
/// An answer in JSON: a line of a batch, or a document of its own.
void print_json_answer(const JSON& answer, bool batch);
