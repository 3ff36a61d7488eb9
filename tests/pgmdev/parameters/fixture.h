#pragma once

/// \file
/// The parameter container as the tests themselves write and read it: plainly from the description of the format, so
/// that it can stand against the library's own code.

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "support/scratch.h"
#include "support/settings.h"

namespace ini_reference {

using BLOCKS = std::array<std::optional<std::string>, 3>;

inline std::string le32(unsigned long long value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return bytes;
}

inline unsigned long long get32(const std::string& file, std::size_t at) {
    unsigned long long value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= static_cast<unsigned long long>(static_cast<unsigned char>(file.at(at + i))) << (8 * i);
    }
    return value;
}

/// A container of as many blocks as are given.
inline std::string file_of(const std::vector<std::optional<std::string>>& blocks) {
    std::string table;
    std::string data;
    for (const auto& block : blocks) {
        table += block ? le32(20 + 8 * blocks.size() + data.size()) + le32(block->size()) : std::string(8, '\0');
        data += block.value_or("");
    }
    return "PGMDEV_FLASH_INI" + le32(blocks.size()) + table + data;
}

inline std::string file(const BLOCKS& blocks) {
    return file_of({blocks.begin(), blocks.end()});
}

/// A block of a container, or nothing: every check of the description in its order, on the whole file in memory.
inline std::optional<std::string> read_block(const std::string& file, unsigned long long which) {
    const unsigned long long length = file.size();
    if (length < 17 || file.substr(0, 16) != "PGMDEV_FLASH_INI" || 16 + 4 >= length) {
        return std::nullopt;
    }
    const unsigned long long count = get32(file, 16);
    const unsigned long long table_end = 20 + 8 * count;
    if (which >= count || table_end >= length) {
        return std::nullopt;
    }
    unsigned long long expected = table_end;
    unsigned long long sum = 0;
    for (unsigned long long i = 0; i < count; ++i) {
        const unsigned long long offset = get32(file, 20 + 8 * i);
        const unsigned long long size = get32(file, 24 + 8 * i);
        if (offset == 0) {
            if (size != 0) {
                return std::nullopt;
            }
            continue;
        }
        if (size == 0 || offset != expected) {
            return std::nullopt;
        }
        expected += size;
        sum += size;
        if (expected > length) {
            return std::nullopt;
        }
    }
    if (expected != length || sum + table_end != length) {
        return std::nullopt;
    }
    const unsigned long long offset = get32(file, 20 + 8 * which);
    const unsigned long long size = get32(file, 24 + 8 * which);
    if (offset == 0 || offset < table_end || offset + size > length) {
        return std::nullopt;
    }
    return file.substr(offset, size);
}

}  // namespace ini_reference

/// A module directory with a container that a test writes and reads.
class FLASH_INI_DIRECTORY {
public:
    std::filesystem::path path() const { return m_scratch.directory() / "pgm_flash.ini"; }
    void write_file(const std::string& contents) const { m_scratch.write("pgm_flash.ini", contents); }
    /// Changes one byte of the file in place: on journaling file systems much faster than writing the file anew.
    void change_byte(std::size_t at, char value) const {
        std::fstream file(path(), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(at)).put(value);
        EXPECT_TRUE(file.flush().good());
    }
    std::string file() const { return read_file(m_scratch.directory() / "pgm_flash.ini"); }
    /// The text beside the container; "" when there is none.
    std::string info() const {
        return has("pgm_flash.ini.info") ? read_file(m_scratch.path("pgm_flash.ini.info")) : "";
    }
    bool has(const std::string& name) const { return std::filesystem::exists(m_scratch.directory() / name); }
    const SCRATCH& scratch() const { return m_scratch; }

    /// A block as the library reads it; an absent one must come with size 0.
    static std::optional<std::string> read(unsigned which) {
        DWORD size = 12345;
        const std::unique_ptr<BYTE[]> data(
            PGMDEV_FLASH_INI::read_flash_ini_data(static_cast<PGMDEV_FLASH_INI_ENUM>(which), size));
        if (data == nullptr) {
            EXPECT_EQ(size, 0U);
            return std::nullopt;
        }
        return std::string(reinterpret_cast<const char*>(data.get()), size);
    }

    /// Writes a block through the library; without one it is removed.
    static bool write(unsigned which, const std::optional<std::string>& block) {
        std::string bytes = block.value_or("");
        return PGMDEV_FLASH_INI::write_flash_ini_data(static_cast<PGMDEV_FLASH_INI_ENUM>(which),
                                                      block ? reinterpret_cast<BYTE*>(bytes.data()) : nullptr,
                                                      static_cast<DWORD>(bytes.size()));
    }

private:
    SCRATCH m_scratch;
    MODULE_DIRECTORY m_directory{m_scratch.directory().string()};
};
