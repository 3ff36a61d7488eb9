#pragma once

/// \file
/// Reading and writing the values of a packed body.
///
/// Both work on a buffer of known size at a running index that belongs to the caller and moves past what was read or
/// written. Leaving the buffer is reported with "index < data_size"; nothing outside it is touched.

#include <span>
#include <string>
#include <type_traits>

#include "packed/format.h"
#include "pgmdev_types.h"
#include "report.h"

/// The size of a buffer that comes as a bare pointer: its owner vouches for it.
inline constexpr QWORD PACKED_TRUSTED_SIZE = ~QWORD{0};

/// What precedes the records in a body.
struct PACKED_BODY_HEAD {
    DWORD version = 0;
    DWORD record_count = 0;
    DWORD member_count = 0;
};

class PACKED_READER {
public:
    PACKED_READER(const BYTE* data, QWORD size, DWORD& index, const PACKED_FORMAT& format)
        : m_data(data), m_size(size), m_index(index), m_format(format) {}

    /// Four bytes without a tag.
    DWORD untagged_dword();

    /// As many of them as there are places.
    void get_untagged_dwords(std::span<DWORD> values);

    /// The head of a body; another version, or no record or member, is reported.
    PACKED_BODY_HEAD body_head();

    /// A tag that opens an index table; another one is reported as `condition`.
    void confirm_tag(PGMDEV_MANAGER_TYPE tag, const char* condition);

    // A tag, then a value. Another tag is reported.
    bool get_bool();
    BYTE get_byte();
    WORD get_word();
    DWORD get_dword();
    void get_string(bool allow_empty, std::string& text);  ///< behind a good tag, a text that is refused leaves none

    // Values beside each other, for whoever looks at the tags of all of them before taking one.
    const BYTE* ahead(QWORD count) const { return is_readable(count) ? m_data + m_index : nullptr; }  ///< null: too few
    void skip(QWORD count) { m_index += static_cast<DWORD>(count); }  ///< no more than there are ahead
    template <class VALUE>
    bool is_good(const BYTE* bytes) const;  ///< whether the function of that type takes this tag and value
    template <class VALUE>
    static VALUE value_behind(const BYTE* tag);

    void confirm_record_end();    ///< "END1"
    void confirm_database_end();  ///< "END2"

private:
    void require_room(QWORD count) const {
        PGMDEV_REQUIRE(m_index + count <= m_size, "index < data_size", m_format.file);
    }
    /// Whether so many bytes at the index may be read, even those behind a value. Never behind a bare pointer: what it
    /// leads to may end with the value.
    bool is_readable(QWORD count) const { return m_size != PACKED_TRUSTED_SIZE && count <= m_size - m_index; }
    BYTE next() {
        require_room(1);
        return m_data[m_index++];
    }
    template <class NUMBER>
    static NUMBER little_endian_at(const BYTE* bytes);
    template <class NUMBER>
    NUMBER little_endian();
    void confirm_marker(std::string_view marker);

    static constexpr DWORD SHORT_TEXT = 15;  ///< characters that every std::string holds in itself

    const BYTE* m_data;
    QWORD m_size;
    DWORD& m_index;
    const PACKED_FORMAT& m_format;
};

// In the header, since a record is read in a row of them without a call.

template <class NUMBER>
NUMBER PACKED_READER::little_endian_at(const BYTE* bytes) {
    DWORD value = 0;
    for (DWORD i = 0; i < sizeof(NUMBER); ++i) {
        value |= DWORD{bytes[i]} << 8 * i;
    }
    return static_cast<NUMBER>(value);
}

template <class NUMBER>
NUMBER PACKED_READER::little_endian() {
    require_room(sizeof(NUMBER));
    const auto value = little_endian_at<NUMBER>(m_data + m_index);
    m_index += static_cast<DWORD>(sizeof(NUMBER));
    return value;
}

template <class VALUE>
bool PACKED_READER::is_good(const BYTE* bytes) const {
    if constexpr (std::is_same_v<VALUE, bool>) {
        return bytes[0] == PGMDEV_MANAGER_BOOL && bytes[1] <= 1;
    } else if constexpr (std::is_same_v<VALUE, BYTE>) {
        return bytes[0] == PGMDEV_MANAGER_BYTE;
    } else if constexpr (std::is_same_v<VALUE, WORD>) {
        return bytes[0] == PGMDEV_MANAGER_WORD;
    } else {
        return is_tag_in(m_format.dword_tags, bytes[0]);
    }
}

template <class VALUE>
VALUE PACKED_READER::value_behind(const BYTE* tag) {
    if constexpr (std::is_same_v<VALUE, bool>) {
        return tag[1] == 1;
    } else if constexpr (std::is_enum_v<VALUE>) {
        return static_cast<VALUE>(little_endian_at<DWORD>(tag + 1));
    } else {
        return little_endian_at<VALUE>(tag + 1);
    }
}

inline DWORD PACKED_READER::untagged_dword() {
    return little_endian<DWORD>();
}

inline bool PACKED_READER::get_bool() {
    PGMDEV_REQUIRE(next() == PGMDEV_MANAGER_BOOL, "type == PGMDEV_MANAGER_BOOL", m_format.file);
    const BYTE value = next();
    PGMDEV_REQUIRE(value == 0 || value == 1, "value == 0 || value == 1", m_format.file);
    return value == 1;
}

inline BYTE PACKED_READER::get_byte() {
    PGMDEV_REQUIRE(next() == PGMDEV_MANAGER_BYTE, "type == PGMDEV_MANAGER_BYTE", m_format.file);
    return next();
}

inline WORD PACKED_READER::get_word() {
    PGMDEV_REQUIRE(next() == PGMDEV_MANAGER_WORD, "type == PGMDEV_MANAGER_WORD", m_format.file);
    return little_endian<WORD>();
}

inline DWORD PACKED_READER::get_dword() {
    PGMDEV_REQUIRE(is_tag_in(m_format.dword_tags, next()), m_format.wrong_dword_tag, m_format.file);
    return little_endian<DWORD>();
}

inline void PACKED_READER::get_string(bool allow_empty, std::string& text) {
    PGMDEV_REQUIRE(is_tag_in(m_format.string_tags, next()), m_format.wrong_string_tag, m_format.file);
    text.clear();
    const BYTE length = next();
    PGMDEV_REQUIRE(length > 0 || allow_empty, "allow_empty", m_format.file);
    require_room(length);
    const char* characters = reinterpret_cast<const char*>(m_data + m_index);
    if (length <= SHORT_TEXT && is_readable(SHORT_TEXT)) {
        text.assign(characters, SHORT_TEXT);  // a constant length makes it several times quicker
        text.resize(length);
    } else {
        text.assign(characters, length);
    }
    m_index += length;
}

inline void PACKED_READER::confirm_record_end() {
    confirm_marker(PACKED_RECORD_END);
}

inline void PACKED_READER::confirm_database_end() {
    confirm_marker(PACKED_DATABASE_END);
}

class PACKED_WRITER {
public:
    PACKED_WRITER(BYTE* data, QWORD size, DWORD& index, const PACKED_FORMAT& format)
        : m_data(data), m_size(size), m_index(index), m_format(format) {}

    /// Characters without a tag or length: magic, stamp, markers.
    void put_text(std::string_view text);
    /// Four bytes without a tag.
    void put_untagged_dword(DWORD value);
    /// A tag that opens an index table.
    void put_tag(PGMDEV_MANAGER_TYPE tag);
    /// The head of a file, and that of its body of `body_size` bytes.
    void put_heads(DWORD body_size, DWORD record_count, DWORD member_count);

    void put_bool(bool value);
    /// The low `count` (1, 2 or 4) bytes of a number, tagged as BYTE, WORD or DWORD.
    void put_number(DWORD value, DWORD count);
    /// The value of an enumerator.
    void put_enum(DWORD value);
    /// All characters of the text behind the low byte of its length.
    void put_string(PGMDEV_MANAGER_TYPE tag, std::string_view text);

private:
    void put(DWORD value, DWORD count);
    void require_room(QWORD count) const;

    BYTE* m_data;
    QWORD m_size;
    DWORD& m_index;
    const PACKED_FORMAT& m_format;
};
