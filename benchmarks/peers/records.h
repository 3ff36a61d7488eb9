#pragma once

/// \file
/// What else one could keep records in: files. Each is written once by `write`; `load` reads all records of a file.
/// RECORD is a record, MEMBERS its member table.

#include <charconv>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "peers/lmdb.h"
#include "peers/sqlite.h"
#include "support/scratch.h"

/// Calls `visit(name, value)` for each member of a record.
template <const auto& MEMBERS, class RECORD, class VISIT>
void for_each_member(RECORD& record, VISIT visit) {
    for (const auto& member : MEMBERS) {
        std::visit([&](auto field) { visit(member.name, record.*field); }, member.field);
    }
}

template <class VALUE>
constexpr bool IS_TEXT = std::is_same_v<std::remove_cv_t<VALUE>, std::string>;

template <class RECORD, const auto& MEMBERS>
struct SQLITE_RECORDS {
    static constexpr const char* ENDING = ".sqlite";

    static void write(const std::string& path, const std::vector<RECORD>& records) {
        SQLITE_DATABASE database(path);
        std::string columns;
        std::string places;
        for (const auto& member : MEMBERS) {
            columns += (columns.empty() ? "m_" : ", m_") + std::string(member.name);
            places += places.empty() ? "?" : ", ?";
        }
        database.execute(("CREATE TABLE records(" + columns + "); BEGIN").c_str());
        SQLITE_STATEMENT insert(database, "INSERT INTO records VALUES(" + places + ")");
        for (const RECORD& record : records) {
            int place = 0;
            for_each_member<MEMBERS>(record, [&](std::string_view, const auto& value) {
                if constexpr (IS_TEXT<std::remove_reference_t<decltype(value)>>) {
                    insert.bind(++place, std::string_view(value));
                } else {
                    insert.bind(++place, static_cast<sqlite3_int64>(value));
                }
            });
            insert.step();
            insert.reset();
        }
        database.execute("COMMIT");
    }

    static std::vector<RECORD> load(const std::string& path) {
        SQLITE_DATABASE database(path);
        SQLITE_STATEMENT select(database, "SELECT * FROM records");
        std::vector<RECORD> records;
        while (select.step()) {
            int column = 0;
            for_each_member<MEMBERS>(records.emplace_back(), [&](std::string_view, auto& value) {
                if constexpr (IS_TEXT<std::remove_reference_t<decltype(value)>>) {
                    value = select.text(column++);
                } else {
                    value = static_cast<std::remove_reference_t<decltype(value)>>(select.number(column++));
                }
            });
        }
        return records;
    }
};

template <class RECORD, const auto& MEMBERS>
struct JSON_RECORDS {
    static constexpr const char* ENDING = ".json";

    static void write(const std::string& path, const std::vector<RECORD>& records) {
        nlohmann::json document = nlohmann::json::array();
        for (const RECORD& record : records) {
            nlohmann::json& object = document.emplace_back();
            for_each_member<MEMBERS>(
                record, [&](std::string_view name, const auto& value) { object[std::string(name)] = value; });
        }
        write_text(path, document.dump());
    }

    static std::vector<RECORD> load(const std::string& path) {
        std::vector<RECORD> records;
        for (const nlohmann::json& object : nlohmann::json::parse(read_text(path))) {
            for_each_member<MEMBERS>(records.emplace_back(),
                                     [&](std::string_view name, auto& value) { object.find(name)->get_to(value); });
        }
        return records;
    }
};

/// A record a line, a cell for each member, separated by commas.
template <class RECORD, const auto& MEMBERS>
struct TEXT_RECORDS {
    static constexpr const char* ENDING = ".csv";

    static void write(const std::string& path, const std::vector<RECORD>& records) {
        std::string text;
        for (const RECORD& record : records) {
            for_each_member<MEMBERS>(record, [&](std::string_view, const auto& value) {
                if constexpr (IS_TEXT<std::remove_reference_t<decltype(value)>>) {
                    text += value + ',';
                } else {
                    text += std::to_string(static_cast<unsigned>(value)) + ',';
                }
            });
            text += '\n';
        }
        write_text(path, text);
    }

    static std::vector<RECORD> load(const std::string& path) {
        const std::string text = read_text(path);
        std::vector<RECORD> records;
        for (std::size_t position = 0; position < text.size(); ++position) {
            for_each_member<MEMBERS>(records.emplace_back(), [&](std::string_view, auto& value) {
                const std::size_t end = text.find(',', position);
                if constexpr (IS_TEXT<std::remove_reference_t<decltype(value)>>) {
                    value.assign(text, position, end - position);
                } else {
                    unsigned number = 0;
                    std::from_chars(text.data() + position, text.data() + end, number);
                    value = static_cast<std::remove_reference_t<decltype(value)>>(number);
                }
                position = end + 1;
            });
        }
        return records;
    }
};
