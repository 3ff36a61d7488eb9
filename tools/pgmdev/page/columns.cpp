#include "page/columns.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace {

constexpr std::string_view DIGITS_64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr std::string_view DIGITS_36 = "0123456789abcdefghijklmnopqrstuvwxyz";

/// A column with the different values once, and for each row the place of its own.
struct VALUE_PLACES {
    std::vector<JSON> values;
    std::vector<std::size_t> places;
};

VALUE_PLACES value_places(const std::vector<JSON>& column) {
    VALUE_PLACES result;
    std::map<std::string, std::size_t> known;
    for (const JSON& value : column) {
        const auto [found, is_new] = known.emplace(json_text(value), result.values.size());
        if (is_new) {
            result.values.push_back(value);
        }
        result.places.push_back(found->second);
    }
    return result;
}

bool is_null(const JSON& value) {
    return std::holds_alternative<std::nullptr_t>(value.value());
}

/// The shortest of several ways, of which the first is one; nulls are none.
JSON shortest_way(const std::vector<JSON>& ways) {
    const JSON* best = &ways.front();
    std::size_t length = json_text(*best).size();
    for (const JSON& way : ways) {
        const std::size_t other = json_text(way).size();
        if (!is_null(way) && other < length) {
            best = &way;
            length = other;
        }
    }
    return *best;
}

/// Null: not all of them are texts without line feeds.
JSON in_front(const std::vector<JSON>& column) {
    std::string front;
    std::string_view before;
    for (const JSON& value : column) {
        const auto* text = std::get_if<std::string>(&value.value());
        if (text == nullptr || text->find('\n') != std::string::npos) {
            return {};
        }
        const std::size_t most = std::min({text->size(), before.size(), DIGITS_36.size() - 1});
        std::size_t common = 0;
        // Scripts count other units than bytes, but of ASCII they count as many.
        const auto is_common = [&](std::size_t at) {
            return (*text)[at] == before[at] && static_cast<unsigned char>((*text)[at]) < 0x80;
        };
        while (common < most && is_common(common)) {
            ++common;
        }
        front += '\n';
        front += DIGITS_36[common];
        front += text->substr(common);
        before = *text;
    }
    return {{"front", front}};
}

/// Values that are all different.
JSON different_values(const std::vector<JSON>& values) {
    return shortest_way({JSON{{"plain", values}}, in_front(values)});
}

JSON in_digits(const VALUE_PLACES& column) {
    std::size_t width = 1;
    for (std::size_t reach = DIGITS_64.size(); reach < column.values.size(); reach *= DIGITS_64.size()) {
        ++width;
    }
    std::string digits;
    for (const std::size_t place : column.places) {
        std::string number(width, DIGITS_64.front());
        std::size_t rest = place;
        for (std::size_t i = width; i-- > 0; rest /= DIGITS_64.size()) {
            number[i] = DIGITS_64[rest % DIGITS_64.size()];
        }
        digits += number;
    }
    return {{"values", different_values(column.values)}, {"width", width}, {"digits", digits}};
}

JSON in_runs(const VALUE_PLACES& column) {
    std::vector<std::size_t> runs;
    for (std::size_t row = 0; row < column.places.size();) {
        std::size_t end = row;
        while (end < column.places.size() && column.places[end] == column.places[row]) {
            ++end;
        }
        runs.insert(runs.end(), {column.places[row], end - row});
        row = end;
    }
    return {{"values", different_values(column.values)}, {"runs", runs}};
}

/// Null: not all of them are numbers, or nulls.
JSON in_steps(const std::vector<JSON>& column) {
    std::vector<JSON> steps;
    QWORD before = 0;
    for (const JSON& value : column) {
        const auto* number = std::get_if<QWORD>(&value.value());
        if (number != nullptr) {
            steps.emplace_back(*number >= before ? (*number - before) * 2 : (before - *number) * 2 - 1);
            before = *number;
        } else if (is_null(value)) {
            steps.emplace_back();
        } else {
            return {};
        }
    }
    const VALUE_PLACES places = value_places(steps);
    return {{"steps", shortest_way({JSON{{"plain", steps}}, in_digits(places), in_runs(places)})}};
}

/// The shortest way to write a column.
JSON shortest(const std::vector<JSON>& column) {
    const VALUE_PLACES places = value_places(column);
    return shortest_way(
        {JSON{{"plain", column}}, in_front(column), in_steps(column), in_digits(places), in_runs(places)});
}

}  // namespace

JSON in_columns(const std::vector<JSON>& rows) {
    JSON columns = JSON::array();
    const std::vector<std::string> names = rows.empty() ? std::vector<std::string>() : rows.front().members().names;
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::vector<JSON> values;
        values.reserve(rows.size());
        for (const JSON& row : rows) {
            values.push_back(row.members().values.at(i));
        }
        JSON column{{"name", names[i]}};
        column.append(shortest(values));
        columns.push_back(column);
    }
    return {{"rows", rows.size()}, {"columns", columns}};
}
