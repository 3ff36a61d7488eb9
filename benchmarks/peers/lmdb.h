#pragma once

/// \file
/// LMDB, with exceptions: one database of keys and values in one file.

#include <lmdb.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

class LMDB_ENVIRONMENT {
public:
    explicit LMDB_ENVIRONMENT(const std::string& path, unsigned flags = 0) {
        constexpr std::size_t ROOM = std::size_t{64} << 20U;
        constexpr mdb_mode_t MODE = 0600;
        require(mdb_env_create(&m_environment));
        require(mdb_env_set_mapsize(m_environment, ROOM));
        require(mdb_env_open(m_environment, path.c_str(), MDB_NOSUBDIR | flags, MODE));
    }
    ~LMDB_ENVIRONMENT() { mdb_env_close(m_environment); }
    LMDB_ENVIRONMENT(const LMDB_ENVIRONMENT&) = delete;
    LMDB_ENVIRONMENT& operator=(const LMDB_ENVIRONMENT&) = delete;

    MDB_env* handle() { return m_environment; }

    static void require(int result) {
        if (result != MDB_SUCCESS) {
            throw std::runtime_error(mdb_strerror(result));
        }
    }

private:
    MDB_env* m_environment = nullptr;
};

class LMDB_TRANSACTION {
public:
    explicit LMDB_TRANSACTION(LMDB_ENVIRONMENT& environment, unsigned flags = 0) {
        LMDB_ENVIRONMENT::require(mdb_txn_begin(environment.handle(), nullptr, flags, &m_transaction));
        LMDB_ENVIRONMENT::require(mdb_dbi_open(m_transaction, nullptr, 0, &m_database));
    }
    ~LMDB_TRANSACTION() {
        if (m_transaction != nullptr) {
            mdb_txn_abort(m_transaction);
        }
    }
    LMDB_TRANSACTION(const LMDB_TRANSACTION&) = delete;
    LMDB_TRANSACTION& operator=(const LMDB_TRANSACTION&) = delete;

    void put(std::string_view key, std::string_view value) {
        MDB_val key_bytes = bytes_of(key);
        MDB_val value_bytes = bytes_of(value);
        LMDB_ENVIRONMENT::require(mdb_put(m_transaction, m_database, &key_bytes, &value_bytes, 0));
    }
    std::string_view get(std::string_view key) {
        MDB_val key_bytes = bytes_of(key);
        MDB_val value{};
        LMDB_ENVIRONMENT::require(mdb_get(m_transaction, m_database, &key_bytes, &value));
        return {static_cast<const char*>(value.mv_data), value.mv_size};
    }
    void commit() {
        LMDB_ENVIRONMENT::require(mdb_txn_commit(m_transaction));
        m_transaction = nullptr;
    }

private:
    static MDB_val bytes_of(std::string_view text) { return {text.size(), const_cast<char*>(text.data())}; }

    MDB_txn* m_transaction = nullptr;
    MDB_dbi m_database = 0;
};
