#include "terminal/json.h"

#include <fmt/core.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "terminal/printable.h"

namespace {

constexpr std::size_t LEVEL_WIDTH = 2;  // blanks

enum class LAYOUT { ON_ONE_LINE, READABLE };

bool needs_no_escape(char character) {
    return character >= ' ' && character <= '~' && character != '"' && character != '\\';
}

std::string quoted(const std::string& text) {
    using DOCUMENT = nlohmann::json;
    if (std::all_of(text.begin(), text.end(), needs_no_escape)) {
        return '"' + text + '"';
    }
    return printable_json(DOCUMENT(text).dump(-1, ' ', false, DOCUMENT::error_handler_t::replace));
}

class WRITER {
public:
    explicit WRITER(LAYOUT layout) : m_layout(layout) {}

    void write(const JSON& json) {
        std::visit([this](const auto& value) { write_value(value); }, json.value());
    }
    const std::string& text() const { return m_text; }

private:
    void write_value(std::nullptr_t) { m_text += "null"; }
    void write_value(bool value) { m_text += value ? "true" : "false"; }
    void write_value(QWORD value) { m_text += std::to_string(value); }
    void write_value(const std::string& value) { m_text += quoted(value); }
    void write_value(const JSON::ARRAY& array) {
        write_items("[]", array.size(), [&](std::size_t i) { write(array[i]); });
    }
    void write_value(const JSON::OBJECT& object) {
        write_items("{}", object.names.size(), [&](std::size_t i) {
            m_text += quoted(object.names[i]);
            m_text += m_layout == LAYOUT::READABLE ? ": " : ":";
            write(object.values[i]);
        });
    }

    template <class WRITE>
    void write_items(std::string_view brackets, std::size_t count, WRITE write_item) {
        m_text += brackets[0];
        ++m_level;
        for (std::size_t i = 0; i < count; ++i) {
            m_text += i == 0 ? "" : ",";
            begin_line();
            write_item(i);
        }
        --m_level;
        if (count != 0) {
            begin_line();
        }
        m_text += brackets[1];
    }

    void begin_line() {
        if (m_layout == LAYOUT::READABLE) {
            m_text.append(1, '\n').append(m_level * LEVEL_WIDTH, ' ');
        }
    }

    LAYOUT m_layout;
    std::size_t m_level = 0;
    std::string m_text;
};

std::string text_of(const JSON& json, LAYOUT layout) {
    WRITER writer(layout);
    writer.write(json);
    return writer.text();
}

}  // namespace

JSON::JSON(std::initializer_list<MEMBER> members) : m_value(OBJECT()) {
    auto& object = std::get<OBJECT>(m_value);
    object.names.reserve(members.size());
    object.values.reserve(members.size());
    for (const MEMBER& member : members) {
        object.names.push_back(std::move(member.name));
        object.values.push_back(std::move(member.value));
    }
}

void JSON::push_back(JSON value) {
    std::get<ARRAY>(m_value).push_back(std::move(value));
}

JSON& JSON::operator[](std::string_view name) {
    if (std::holds_alternative<std::nullptr_t>(m_value)) {
        m_value = OBJECT();
    }
    auto& object = std::get<OBJECT>(m_value);
    const auto found = std::find(object.names.begin(), object.names.end(), name);
    if (found != object.names.end()) {
        return object.values[static_cast<std::size_t>(found - object.names.begin())];
    }
    object.names.emplace_back(name);
    return object.values.emplace_back();
}

std::string json_text(const JSON& value) {
    return text_of(value, LAYOUT::ON_ONE_LINE);
}

std::string readable_json_text(const JSON& value) {
    return text_of(value, LAYOUT::READABLE);
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
