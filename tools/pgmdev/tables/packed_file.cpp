#include "tables/packed_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "zlib_wrapper.h"

namespace {

constexpr QWORD DEFLATE_LARGEST_RATIO = 1032;

using OUTCOME = TABLE_CHECK::OUTCOME;

class HEAD_CHECKER {
public:
    HEAD_CHECKER(PACKED_FILE& file, const PACKED_SCHEMA& schema) : m_file(file), m_schema(schema) {}

    void run() {
        const bool whole = check("file", m_file.bytes.size() > PACKED_HEAD_LENGTH + PACKED_CHECKSUM_LENGTH,
                                 fmt::format("{} bytes", m_file.bytes.size()),
                                 fmt::format("{} bytes cannot hold a database", m_file.bytes.size()));
        if (!whole) {
            skip({"magic", "stamp", "size", "stream", "stream end", "checksum slot"}, "the file is too short");
            return;
        }
        const std::string_view text(reinterpret_cast<const char*>(m_file.bytes.data()), PACKED_HEAD_LENGTH);
        const std::string magic(text.substr(0, PACKED_MAGIC_LENGTH));
        if (!check("magic", magic == m_schema.magic, magic,
                   fmt::format(R"(found "{}", expected "{}")", magic, m_schema.magic))) {
            skip({"stamp", "size", "stream", "stream end", "checksum slot"}, "the file is of another kind");
            return;
        }
        m_file.stamp = text.substr(PACKED_MAGIC_LENGTH, PACKED_STAMP_LENGTH);
        check("stamp", m_file.stamp == m_schema.stamp, m_file.stamp,
              fmt::format("found {}, this command reads {}", m_file.stamp, m_schema.stamp));
        check_stream();
        const bool no_checksum = m_file.bytes.back() == 0 && m_file.bytes[m_file.bytes.size() - 2] == 0;
        check("checksum slot", no_checksum, "0", "the last two bytes are not 0: the file is damaged or cut");
    }

private:
    bool check(const char* name, bool passed, const std::string& good, const std::string& bad) {
        m_file.checks.push_back({name, passed ? OUTCOME::PASSED : OUTCOME::FAILED, passed ? good : bad});
        return passed;
    }

    void skip(std::initializer_list<const char*> names, const char* why) {
        for (const char* name : names) {
            m_file.checks.push_back({name, OUTCOME::SKIPPED, why});
        }
    }

    /// What the first bytes of what is stored decompress to; nothing when they are no whole stream of the stated size.
    std::vector<BYTE> inflated(std::size_t stored) const {
        std::vector<BYTE> payload(m_file.stated_size);
        auto length = m_file.stated_size;
        const bool good = zlib_uncompress(payload.data(), &length, m_file.bytes.data() + PACKED_HEAD_LENGTH,
                                          static_cast<DWORD>(stored)) == ZLIB_OK;
        return good && length == m_file.stated_size ? payload : std::vector<BYTE>();
    }

    void check_stream() {
        const std::size_t stored = m_file.bytes.size() - PACKED_HEAD_LENGTH - PACKED_CHECKSUM_LENGTH;
        m_file.stated_size = packed_dword(m_file.bytes.data() + PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH);
        const bool possible = m_file.stated_size > 0 && m_file.stated_size <= (stored + 1) * DEFLATE_LARGEST_RATIO;
        if (!check("size", possible, fmt::format("{} bytes of payload", m_file.stated_size),
                   fmt::format("{} bytes of payload cannot be in {} bytes", m_file.stated_size, stored))) {
            skip({"stream", "stream end"}, "the size is wrong");
            return;
        }
        m_file.payload = inflated(stored);
        if (!check("stream", !m_file.payload.empty(),
                   fmt::format("{} bytes, compressed to {}", m_file.stated_size, stored),
                   fmt::format("{} bytes do not decompress to the {} bytes that the head states", stored,
                               m_file.stated_size))) {
            skip({"stream end"}, "the stream is damaged");
            return;
        }
        // A stream that is whole without the last byte ends before it.
        const bool ends_before = stored > 1 && !inflated(stored - 1).empty();
        check("stream end", !ends_before, "nothing behind it", "bytes behind it, which nothing reads");
    }

    PACKED_FILE& m_file;
    const PACKED_SCHEMA& m_schema;
};

}  // namespace

DWORD packed_dword(const BYTE* bytes) {
    DWORD value = 0;
    for (DWORD i = 0; i < 4; ++i) {
        value |= DWORD{bytes[i]} << 8 * i;
    }
    return value;
}

PACKED_FILE open_packed_file(std::vector<BYTE> bytes, const PACKED_SCHEMA& schema) {
    PACKED_FILE file;
    file.bytes = std::move(bytes);
    HEAD_CHECKER(file, schema).run();
    return file;
}
