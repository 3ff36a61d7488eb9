#include "support/json.h"

#include <nlohmann/json.hpp>

struct JSON_CONVERSION {
    using PARSED = nlohmann::ordered_json;

    static JSON_VALUE value_of(const PARSED& parsed) {
        JSON_VALUE value;
        if (parsed.is_object()) {
            value = JSON_VALUE::object();
            for (const auto& [name, member] : parsed.items()) {
                value.m_names.push_back(name);
                value.m_values.push_back(value_of(member));
            }
        } else if (parsed.is_array()) {
            value = JSON_VALUE::array();
            std::transform(parsed.begin(), parsed.end(), std::back_inserter(value.m_values), value_of);
        } else if (parsed.is_string()) {
            value = parsed.get<std::string>();
        } else if (!parsed.is_null()) {
            value.m_kind = parsed.is_boolean() ? JSON_VALUE::BOOLEAN : JSON_VALUE::NUMBER;
            value.m_text = parsed.dump();
        }
        return value;
    }

    static std::string text_of(const std::string& text) {
        return PARSED(text).dump(-1, ' ', false, PARSED::error_handler_t::replace);
    }
};

JSON_VALUE::JSON_VALUE(std::initializer_list<JSON_VALUE> values) : m_kind(ARRAY), m_values(values) {
    const auto is_member = [](const JSON_VALUE& value) {
        return value.is_array() && value.size() == 2 && value.front().is_string();
    };
    if (std::all_of(begin(), end(), is_member)) {
        m_kind = OBJECT;
        for (JSON_VALUE& value : m_values) {
            m_names.push_back(value.front());
            value = JSON_VALUE(value.back());
        }
    }
}

JSON_VALUE JSON_VALUE::array(std::initializer_list<JSON_VALUE> values) {
    return std::vector<JSON_VALUE>(values);
}

JSON_VALUE JSON_VALUE::object() {
    JSON_VALUE value;
    value.m_kind = OBJECT;
    return value;
}

std::optional<JSON_VALUE> JSON_VALUE::parse(const std::string& text) {
    const auto parsed = JSON_CONVERSION::PARSED::parse(text, nullptr, false);
    return parsed.is_discarded() ? std::nullopt : std::optional(JSON_CONVERSION::value_of(parsed));
}

bool JSON_VALUE::is_number_integer() const {
    return m_kind == NUMBER && m_text.find_first_not_of("-0123456789") == std::string::npos;
}

JSON_VALUE::operator std::string() const {
    return is_string() ? m_text : throw std::logic_error("no string: " + dump());
}

std::size_t JSON_VALUE::place_of(std::string_view name) const {
    return static_cast<std::size_t>(std::find(m_names.begin(), m_names.end(), name) - m_names.begin());
}

const JSON_VALUE& JSON_VALUE::at(std::string_view name) const {
    return contains(name) ? m_values[place_of(name)]
                          : throw std::out_of_range("no member " + std::string(name) + " in " + dump());
}

JSON_VALUE& JSON_VALUE::operator[](std::string_view name) {
    m_kind = is_null() ? OBJECT : m_kind;
    if (!is_object()) {
        throw std::logic_error("no object: " + dump());
    }
    const std::size_t place = place_of(name);
    if (place == m_names.size()) {
        m_names.emplace_back(name);
        m_values.emplace_back();
    }
    return m_values[place];
}

JSON_VALUE JSON_VALUE::value(std::string_view name, const JSON_VALUE& otherwise) const {
    return contains(name) ? at(name) : otherwise;
}

std::vector<JSON_VALUE::MEMBER> JSON_VALUE::items() const {
    std::vector<MEMBER> members;
    std::transform(m_names.begin(), m_names.end(), m_values.begin(), std::back_inserter(members),
                   [](const std::string& name, const JSON_VALUE& value) { return MEMBER(name, value); });
    return members;
}

JSON_VALUE JSON_VALUE::sorted() const {
    JSON_VALUE result = *this;
    std::sort(result.m_names.begin(), result.m_names.end());
    for (std::size_t i = 0; i < size(); ++i) {
        result.m_values[i] = (is_object() ? at(result.m_names[i]) : at(i)).sorted();
    }
    return result;
}

void JSON_VALUE::push_back(JSON_VALUE value) {
    m_kind = is_null() ? ARRAY : m_kind;
    if (!is_array()) {
        throw std::logic_error("no array: " + dump());
    }
    m_values.push_back(std::move(value));
}

void JSON_VALUE::update(const JSON_VALUE& other) {
    for (const auto& [name, value] : other.items()) {
        (*this)[name] = value;
    }
}

std::size_t JSON_VALUE::erase(std::string_view name) {
    if (!contains(name)) {
        return 0;
    }
    const auto place = static_cast<std::ptrdiff_t>(place_of(name));
    m_names.erase(m_names.begin() + place);
    m_values.erase(m_values.begin() + place);
    return 1;
}

std::string JSON_VALUE::dump() const {
    if (is_array() || is_object()) {
        std::string text;
        for (std::size_t i = 0; i < size(); ++i) {
            text += (i > 0 ? "," : "") + (is_object() ? JSON_CONVERSION::text_of(m_names[i]) + ":" : "") + at(i).dump();
        }
        return is_object() ? "{" + text + "}" : "[" + text + "]";
    }
    return is_null() ? "null" : is_string() ? JSON_CONVERSION::text_of(m_text) : m_text;
}

bool operator==(const JSON_VALUE& a, const JSON_VALUE& b) {
    return a.m_kind == b.m_kind && a.m_text == b.m_text && a.m_names == b.m_names && a.m_values == b.m_values;
}
