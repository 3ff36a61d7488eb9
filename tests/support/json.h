#pragma once

/// \file
/// JSON as tests read and write it. What parses it is seen by json.cpp alone: its header takes longer to compile than most
/// tests.

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One value. The members of an object stay in the order in which they were written, and are equal only in that order.
class JSON_VALUE {
public:
    using MEMBER = std::pair<std::string, JSON_VALUE>;

    JSON_VALUE() = default;  ///< null
    JSON_VALUE(std::nullptr_t) {}
    JSON_VALUE(bool value) : m_kind(BOOLEAN), m_text(value ? "true" : "false") {}
    JSON_VALUE(std::integral auto value) : m_kind(NUMBER), m_text(std::to_string(value)) {}
    JSON_VALUE(std::string value) : m_kind(STRING), m_text(std::move(value)) {}
    JSON_VALUE(std::string_view value) : JSON_VALUE(std::string(value)) {}
    JSON_VALUE(const char* value) : JSON_VALUE(std::string(value)) {}
    template <class ELEMENT>
    JSON_VALUE(const std::vector<ELEMENT>& values) : m_kind(ARRAY), m_values(values.begin(), values.end()) {}
    /// An object, if all are pairs of a name and a value; else an array.
    JSON_VALUE(std::initializer_list<JSON_VALUE> values);

    static JSON_VALUE array(std::initializer_list<JSON_VALUE> values = {});
    static JSON_VALUE object();
    /// One document that is all of the text; none when it is not.
    static std::optional<JSON_VALUE> parse(const std::string& text);

    bool is_null() const { return m_kind == NOTHING; }
    bool is_boolean() const { return m_kind == BOOLEAN; }
    bool is_string() const { return m_kind == STRING; }
    bool is_array() const { return m_kind == ARRAY; }
    bool is_object() const { return m_kind == OBJECT; }
    bool is_number_integer() const;

    /// Of another kind, they throw std::logic_error.
    operator std::string() const;
    template <class VALUE>
    VALUE get() const;

    std::size_t size() const { return m_values.size(); }
    bool empty() const { return m_values.empty(); }
    auto begin() { return m_values.begin(); }
    auto begin() const { return m_values.begin(); }
    auto end() { return m_values.end(); }
    auto end() const { return m_values.end(); }
    const JSON_VALUE& front() const { return at(0); }
    const JSON_VALUE& back() const { return at(size() - 1); }

    /// What is not there throws std::out_of_range.
    const JSON_VALUE& at(std::size_t index) const { return m_values.at(index); }
    const JSON_VALUE& at(std::string_view name) const;
    const JSON_VALUE& operator[](std::size_t index) const { return at(index); }
    JSON_VALUE& operator[](std::size_t index) { return m_values.at(index); }
    const JSON_VALUE& operator[](std::string_view name) const { return at(name); }
    /// The member of that name, which is added when there is none. Null becomes an object.
    JSON_VALUE& operator[](std::string_view name);

    bool contains(std::string_view name) const { return place_of(name) < m_names.size(); }
    JSON_VALUE value(std::string_view name, const JSON_VALUE& otherwise) const;
    std::vector<MEMBER> items() const;  ///< of an object
    JSON_VALUE sorted() const;          ///< the members of all objects by their names

    void push_back(JSON_VALUE value);
    /// Adds the members of another object, or replaces those of the same name.
    void update(const JSON_VALUE& other);
    std::size_t erase(std::string_view name);  ///< how many were there

    std::string dump() const;  ///< on one line

    friend bool operator==(const JSON_VALUE& a, const JSON_VALUE& b);
    friend std::ostream& operator<<(std::ostream& stream, const JSON_VALUE& value) { return stream << value.dump(); }

private:
    enum KIND { NOTHING, BOOLEAN, NUMBER, STRING, ARRAY, OBJECT };

    friend struct JSON_CONVERSION;

    std::size_t place_of(std::string_view name) const;

    KIND m_kind = NOTHING;
    std::string m_text;  ///< a string, or a number or boolean as it is written
    std::vector<std::string> m_names;
    std::vector<JSON_VALUE> m_values;
};

template <class VALUE>
VALUE JSON_VALUE::get() const {
    if constexpr (std::same_as<VALUE, std::string>) {
        return *this;
    } else if constexpr (std::same_as<VALUE, bool>) {
        return is_boolean() ? m_text == "true" : throw std::logic_error("no boolean: " + dump());
    } else {
        VALUE number = 0;
        const char* const end = m_text.data() + m_text.size();
        const auto [stop, error] = std::from_chars(m_text.data(), end, number);
        return m_kind == NUMBER && error == std::errc() && stop == end
                   ? number
                   : throw std::logic_error("no such number: " + dump());
    }
}
