#pragma once

/// \file
/// SQLite, with exceptions.

#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <string_view>

class SQLITE_DATABASE {
public:
    explicit SQLITE_DATABASE(const std::string& path) { require(sqlite3_open(path.c_str(), &m_database) == SQLITE_OK); }
    ~SQLITE_DATABASE() { sqlite3_close(m_database); }
    SQLITE_DATABASE(const SQLITE_DATABASE&) = delete;
    SQLITE_DATABASE& operator=(const SQLITE_DATABASE&) = delete;

    void execute(const char* text) { require(sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) == SQLITE_OK); }
    sqlite3* handle() { return m_database; }

    static void require(bool holds) {
        if (!holds) {
            throw std::runtime_error("SQLite");
        }
    }

private:
    sqlite3* m_database = nullptr;
};

/// A prepared statement. Texts and bytes that are bound must live until the next reset.
class SQLITE_STATEMENT {
public:
    SQLITE_STATEMENT(SQLITE_DATABASE& database, const std::string& text) {
        SQLITE_DATABASE::require(sqlite3_prepare_v2(database.handle(), text.c_str(), -1, &m_statement, nullptr) ==
                                 SQLITE_OK);
    }
    ~SQLITE_STATEMENT() { sqlite3_finalize(m_statement); }
    SQLITE_STATEMENT(const SQLITE_STATEMENT&) = delete;
    SQLITE_STATEMENT& operator=(const SQLITE_STATEMENT&) = delete;

    void bind(int place, std::string_view text) {
        SQLITE_DATABASE::require(sqlite3_bind_text(m_statement, place, text.data(), static_cast<int>(text.size()),
                                                   SQLITE_STATIC) == SQLITE_OK);
    }
    void bind(int place, sqlite3_int64 number) {
        SQLITE_DATABASE::require(sqlite3_bind_int64(m_statement, place, number) == SQLITE_OK);
    }

    /// Whether there is a row.
    bool step() {
        const int result = sqlite3_step(m_statement);
        SQLITE_DATABASE::require(result == SQLITE_ROW || result == SQLITE_DONE);
        return result == SQLITE_ROW;
    }
    void reset() { sqlite3_reset(m_statement); }

    std::string_view text(int column) {
        const void* bytes = sqlite3_column_blob(m_statement, column);
        return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
    }
    sqlite3_int64 number(int column) { return sqlite3_column_int64(m_statement, column); }

private:
    sqlite3_stmt* m_statement = nullptr;
};
