#pragma once

/// \file
/// Small correct tables for tests of the generator, which a test damages, and what the generator must say then.

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <utility>

#include "support/scratch.h"
#include "tools/generator_run.h"

/// Tables by file name, written into a directory of their own when somebody asks for it.
class SMALL_TABLES {
public:
    explicit SMALL_TABLES(std::string directory) : m_directory(std::move(directory)) {}

    void set(const std::string& file, const std::string& text) { m_files[file] = text; }
    void remove(const std::string& file) { m_files.erase(file); }

    /// Replaces a text of a file.
    void replace(const std::string& file, const std::string& from, const std::string& to) {
        std::string& text = m_files.at(file);
        const std::size_t position = text.find(from);
        ASSERT_NE(position, std::string::npos) << from;
        text.replace(position, from.size(), to);
    }

    std::string directory() const {
        for (const auto& [name, text] : m_files) {
            m_scratch.write(m_directory + "/" + name, text);
        }
        return m_scratch.path(m_directory);
    }
    std::string output(const std::string& name) const { return m_scratch.path("out/" + name); }

private:
    SCRATCH m_scratch;
    std::string m_directory;
    std::map<std::string, std::string> m_files;
};

/// A change to small tables, and everything that the generator must say about it.
struct TABLE_DAMAGE {
    const char* name;
    const char* file;
    const char* from;
    const char* to;
    std::string faults;
};

inline void PrintTo(const TABLE_DAMAGE& damage, std::ostream* output) {
    *output << damage.name;
}

inline std::string name_of_damage(const testing::TestParamInfo<TABLE_DAMAGE>& info) {
    return info.param.name;
}

/// Damages tables, which check() checks and faults() tells of, and expects the generator to say just what it must.
template <class TABLES>
void expect_told(TABLES& tables, const TABLE_DAMAGE& damage) {
    tables.replace(damage.file, damage.from, damage.to);
    EXPECT_EQ(tables.faults(), damage.faults);
    const GENERATOR_RUN checked = tables.check();
    EXPECT_EQ(checked.result, 1);
    EXPECT_EQ(checked.output, "");
}
