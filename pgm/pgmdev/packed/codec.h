#pragma once

/// \file
/// Reading and writing the values of a packed body.
///
/// Both work on a buffer of known size at a running index that belongs to the caller and moves past what was read or
/// written. Leaving the buffer is reported with "index < data_size"; nothing outside it is touched.

#include <string>

#include "packed/format.h"
#include "pgmdev_types.h"

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

    void confirm_record_end();    ///< "END1"
    void confirm_database_end();  ///< "END2"

private:
    BYTE next();
    DWORD little_endian(DWORD count);
    void require_room(QWORD count) const;
    void confirm_marker(std::string_view marker);

    const BYTE* m_data;
    QWORD m_size;
    DWORD& m_index;
    const PACKED_FORMAT& m_format;
};

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
