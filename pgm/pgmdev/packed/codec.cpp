#include "packed/codec.h"

#include <algorithm>

PACKED_BODY_HEAD PACKED_READER::body_head() {
    PACKED_BODY_HEAD head;
    head.version = untagged_dword();
    PGMDEV_REQUIRE(head.version == PACKED_BODY_VERSION, m_format.wrong_version, m_format.file);
    head.record_count = untagged_dword();
    head.member_count = untagged_dword();
    PGMDEV_REQUIRE(head.record_count > 0 && head.member_count > 0, m_format.wrong_counts, m_format.file);
    return head;
}

void PACKED_READER::get_untagged_dwords(std::span<DWORD> values) {
    require_room(values.size_bytes());
    const BYTE* bytes = m_data + m_index;
    for (DWORD& value : values) {
        value = little_endian_at<DWORD>(bytes);
        bytes += sizeof(DWORD);
    }
    m_index += static_cast<DWORD>(values.size_bytes());
}

void PACKED_READER::confirm_tag(PGMDEV_MANAGER_TYPE tag, const char* condition) {
    PGMDEV_REQUIRE(next() == tag, condition, m_format.file);
}

void PACKED_READER::confirm_marker(std::string_view marker) {
    for (const char expected : marker) {
        if (next() != static_cast<BYTE>(expected)) {
            const std::string condition = std::string("data[index++] == '") + expected + "'";
            pgmdev_report(condition.c_str(), m_format.file, PGMDEV_LINE);
        }
    }
}

void PACKED_WRITER::require_room(QWORD count) const {
    PGMDEV_REQUIRE(m_index + count <= m_size, "index < data_size", m_format.file);
}

void PACKED_WRITER::put(DWORD value, DWORD count) {
    require_room(count);
    for (DWORD i = 0; i < count; ++i) {
        m_data[m_index++] = static_cast<BYTE>(value >> 8 * i);
    }
}

void PACKED_WRITER::put_text(std::string_view text) {
    require_room(text.size());
    std::copy(text.begin(), text.end(), m_data + m_index);
    m_index += static_cast<DWORD>(text.size());
}

void PACKED_WRITER::put_untagged_dword(DWORD value) {
    put(value, 4);
}

void PACKED_WRITER::put_tag(PGMDEV_MANAGER_TYPE tag) {
    put(tag, 1);
}

void PACKED_WRITER::put_heads(DWORD body_size, DWORD record_count, DWORD member_count) {
    put_text(m_format.magic);
    put_text(m_format.stamp);
    for (const DWORD number : {body_size, PACKED_BODY_VERSION, record_count, member_count}) {
        put_untagged_dword(number);
    }
}

void PACKED_WRITER::put_bool(bool value) {
    put(PGMDEV_MANAGER_BOOL, 1);
    put(value ? 1 : 0, 1);
}

void PACKED_WRITER::put_number(DWORD value, DWORD count) {
    PGMDEV_REQUIRE(count == 1 || count == 2 || count == 4, "count == 1 || count == 2 || count == 4", m_format.file);
    put(count == 1 ? PGMDEV_MANAGER_BYTE : count == 2 ? PGMDEV_MANAGER_WORD : PGMDEV_MANAGER_DWORD, 1);
    put(value, count);
}

void PACKED_WRITER::put_enum(DWORD value) {
    put(PGMDEV_MANAGER_ENUM, 1);
    put(value, 4);
}

void PACKED_WRITER::put_string(PGMDEV_MANAGER_TYPE tag, std::string_view text) {
    put(tag, 1);
    put(static_cast<BYTE>(text.size()), 1);
    put_text(text);
}
