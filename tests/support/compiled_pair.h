#pragma once

/// \file
/// A database and its `.info` while a compile replaces them: the latter agrees with the former at every moment.

#include <stdexcept>
#include <string>

struct COMPILED_PAIR {
    std::string database;
    std::string info;

    /// What follows a key in the `.info`.
    std::string value(const std::string& key) const {
        const std::size_t line = info.find(key + " = ");
        if (line == std::string::npos) {
            throw std::runtime_error("no " + key);
        }
        const std::size_t begin = line + key.size() + 3;
        return info.substr(begin, info.find('\n', begin) - begin);
    }

    /// Whether this may stand there while `before` becomes `after`: the `.info` is of the database, or of the new one and
    /// says that it replaces the old one.
    bool is_between(const COMPILED_PAIR& before, const COMPILED_PAIR& after) const {
        const std::string replacing = after.info + "replaces_sha256 = " + before.value("database_sha256") + "\n";
        return (database == before.database && (info == before.info || info == replacing)) ||
               (database == after.database && (info == after.info || info == replacing));
    }
};
