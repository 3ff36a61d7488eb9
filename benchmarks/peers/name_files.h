#pragma once

/// \file
/// What else one could keep names in: files. Each is written once by `write`, opened by the constructor, and asked by
/// `find`, which takes names that are there and are in capitals. ENDING is that of its path.

#include <cdb.h>
#include <fcntl.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "peers/lmdb.h"
#include "peers/sqlite.h"
#include "support/names.h"
#include "support/scratch.h"

/// Names in a table of SQLite.
class SQLITE_NAMES {
public:
    explicit SQLITE_NAMES(const std::string& path) : m_database(path) {}

    void fill(const NAME_PAIRS& pairs) {
        m_database.execute("CREATE TABLE names(entry TEXT PRIMARY KEY, key TEXT) WITHOUT ROWID; BEGIN");
        SQLITE_STATEMENT insert(m_database, "INSERT OR IGNORE INTO names VALUES(?, ?)");
        for (const auto& [name, key] : pairs) {
            insert.bind(1, name);
            insert.bind(2, key);
            insert.step();
            insert.reset();
        }
        m_database.execute("COMMIT; ANALYZE");
    }

    std::string find(const std::string& name) {
        if (!m_find) {
            m_find.emplace(m_database, "SELECT key FROM names WHERE entry = ?");
        }
        m_find->bind(1, name);
        SQLITE_DATABASE::require(m_find->step());
        std::string key(m_find->text(0));
        m_find->reset();
        return key;
    }

private:
    SQLITE_DATABASE m_database;
    std::optional<SQLITE_STATEMENT> m_find;
};

class SQLITE_FILE : public SQLITE_NAMES {
public:
    static constexpr const char* ENDING = ".sqlite";

    static void write(const std::string& path, const NAME_PAIRS& pairs) { SQLITE_NAMES(path).fill(pairs); }

    using SQLITE_NAMES::SQLITE_NAMES;
};

class LMDB_FILE {
public:
    static constexpr const char* ENDING = ".lmdb";

    static void write(const std::string& path, const NAME_PAIRS& pairs) {
        LMDB_ENVIRONMENT environment(path, MDB_NOSYNC);
        LMDB_TRANSACTION transaction(environment);
        for (const auto& [name, key] : pairs) {
            transaction.put(name, key);
        }
        transaction.commit();
    }

    explicit LMDB_FILE(const std::string& path)
        : m_environment(path, MDB_RDONLY | MDB_NOLOCK), m_transaction(m_environment, MDB_RDONLY) {}

    std::string find(const std::string& name) { return std::string(m_transaction.get(name)); }

private:
    LMDB_ENVIRONMENT m_environment;
    LMDB_TRANSACTION m_transaction;
};

class CDB_FILE {
public:
    static constexpr const char* ENDING = ".cdb";

    static void write(const std::string& path, const NAME_PAIRS& pairs) {
        const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        cdb_make make{};
        require(file >= 0 && cdb_make_start(&make, file) == 0);
        for (const auto& [name, key] : pairs) {
            require(cdb_make_add(&make, name.data(), static_cast<unsigned>(name.size()), key.data(),
                                 static_cast<unsigned>(key.size())) == 0);
        }
        require(cdb_make_finish(&make) == 0);
        ::close(file);
    }

    explicit CDB_FILE(const std::string& path) : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        require(m_file >= 0 && cdb_init(&m_cdb, m_file) == 0);
    }
    ~CDB_FILE() {
        cdb_free(&m_cdb);
        ::close(m_file);
    }
    CDB_FILE(const CDB_FILE&) = delete;
    CDB_FILE& operator=(const CDB_FILE&) = delete;

    std::string find(const std::string& name) {
        require(cdb_find(&m_cdb, name.data(), static_cast<unsigned>(name.size())) > 0);
        return {static_cast<const char*>(cdb_getdata(&m_cdb)), cdb_datalen(&m_cdb)};
    }

private:
    static void require(bool holds) {
        if (!holds) {
            throw std::runtime_error("cdb");
        }
    }

    int m_file;
    cdb m_cdb{};
};

/// A name and its key in each line, which are read until the name is found.
class TEXT_FILE {
public:
    static constexpr const char* ENDING = ".txt";

    static void write(const std::string& path, const NAME_PAIRS& pairs) {
        std::string text = "\n";
        for (const auto& [name, key] : pairs) {
            text.append(name).append(" ").append(key).append("\n");
        }
        write_text(path, text);
    }

    explicit TEXT_FILE(const std::string& path) : m_text(read_text(path)) {}

    std::string find(const std::string& name) {
        const std::size_t begin = m_text.find("\n" + name + " ") + name.size() + 2;
        return m_text.substr(begin, m_text.find('\n', begin) - begin);
    }

private:
    std::string m_text;
};

class JSON_FILE {
public:
    static constexpr const char* ENDING = ".json";

    static void write(const std::string& path, const NAME_PAIRS& pairs) {
        nlohmann::json document = nlohmann::json::object();
        for (const auto& [name, key] : pairs) {
            document.emplace(name, key);
        }
        write_text(path, document.dump());
    }

    explicit JSON_FILE(const std::string& path) : m_document(nlohmann::json::parse(read_text(path))) {}

    std::string find(const std::string& name) { return m_document.find(name)->get<std::string>(); }

private:
    nlohmann::json m_document;
};

/// Writes names into a new file of that kind, and gives its path.
template <class FILE>
std::string written_names(const std::string& stem, const NAME_PAIRS& pairs) {
    std::string path = new_scratch_file(stem + FILE::ENDING);
    FILE::write(path, pairs);
    return path;
}
