#include "terminal/json.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "terminal/printable.h"

// Texts may be as long as anywhere.
#define RAPIDJSON_NO_SIZETYPEDEFINE
namespace rapidjson {
using SizeType = std::size_t;
}

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace {

/// Memory for the library, which does not look whether it gets any: where there is none, this throws.
struct MEMORY {
    static void* Malloc(std::size_t size) { return size == 0 ? nullptr : ::operator new(size); }
    static void* Realloc(void* block, std::size_t old_size, std::size_t new_size) {
        void* const larger = Malloc(new_size);
        if (block != nullptr && larger != nullptr) {
            std::memcpy(larger, block, std::min(old_size, new_size));
        }
        Free(block);
        return larger;
    }
    static void Free(void* block) { ::operator delete(block); }
};

using BUFFER = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, MEMORY>;
using ONE_LINE_WRITER = rapidjson::Writer<BUFFER, rapidjson::UTF8<>, rapidjson::UTF8<>, MEMORY>;
using READABLE_WRITER = rapidjson::PrettyWriter<BUFFER, rapidjson::UTF8<>, rapidjson::UTF8<>, MEMORY>;

/// Writes a value of any kind.
template <class WRITER>
struct WRITING {
    WRITER& writer;

    void operator()(const JSON& json) const { std::visit(*this, json.value()); }
    void operator()(std::nullptr_t) const { writer.Null(); }
    void operator()(bool value) const { writer.Bool(value); }
    void operator()(QWORD number) const { writer.Uint64(number); }
    void operator()(const std::string& text) const { writer.String(text.data(), text.size()); }
    void operator()(const SHARED<JSON::ARRAY>& array) const {
        writer.StartArray();
        std::for_each((*array).begin(), (*array).end(), *this);
        writer.EndArray();
    }
    void operator()(const SHARED<JSON::OBJECT>& object) const {
        const auto& [names, values] = *object;
        writer.StartObject();
        for (std::size_t i = 0; i < names.size(); ++i) {
            writer.Key(names[i].data(), names[i].size());
            (*this)(values[i]);
        }
        writer.EndObject();
    }
};

template <class WRITER>
std::string text_by(const JSON& json) {
    BUFFER buffer;
    WRITER writer(buffer);
    if constexpr (std::is_same_v<WRITER, READABLE_WRITER>) {
        writer.SetIndent(' ', 2);
    }
    WRITING<WRITER>{writer}(json);
    return printable_json({buffer.GetString(), buffer.GetSize()});
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
    return text_by<ONE_LINE_WRITER>(value);
}

std::string readable_json_text(const JSON& value) {
    return text_by<READABLE_WRITER>(value);
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
