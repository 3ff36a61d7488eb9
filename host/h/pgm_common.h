#pragma once

/// \file
/// The programmer's common library.

#include <string>
#include <vector>

#include "host_export.h"
#include "host_types.h"

class HOST_EXPORT PGM_COMMON {
public:
    /// The number that `text` spells: decimal digits, or hexadecimal digits after "0x" or "0X" when `allow_hex`, up to
    /// 0xFFFFFFFF. No sign, no blanks, nothing behind the number. An empty text is 0, unless `no_empty` makes it
    /// invalid.
    ///
    /// An invalid text gives 0; `ok`, when given, says which it was, and without `ok` the internal error
    /// "Invalid string to integer conversion" is reported. `value`, when given, receives the result too.
    static DWORD convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, DWORD* value,
                                         bool allow_hex);

    /// Runs bits of `data` through a 32-bit CRC register that is shifted towards its most significant bit, and returns
    /// what the register holds then, neither reflected nor complemented.
    ///
    /// `first_bit` and `bit_count` choose the bits; `data` covers all of them. The bits of a byte are numbered and
    /// taken from the most significant one on when `msb_first`, otherwise from the least significant one. `initial` is
    /// the register's preset, `polynomial` its polynomial without the leading bit. With 0xFFFFFFFF and 0x04C11DB7,
    /// `msb_first`, the complement of the result is the CRC-32/BZIP2.
    static DWORD msb_calculate_crc32(const BYTE* data, QWORD first_bit, QWORD bit_count, DWORD initial,
                                     DWORD polynomial, bool msb_first);

    /// The digest of `length` bytes at `data`: SHA-256 for a `digest_size` of 32, the only size there is; another one
    /// is reported with "digest_size == 32". The result is allocated with new BYTE[]; the caller frees it with
    /// delete[].
    static BYTE* get_block_sha(const void* data, QWORD length, DWORD digest_size);

    /// Whether two texts are equal, byte by byte; with `ignore_case` as if ASCII letters had no case.
    static bool compare_string(const std::string& left, const std::string& right, bool ignore_case);

    /// Sends a message to the people behind recipient codes; false when that failed.
    ///
    /// The reference host has no network. It writes the message as a file into an outbox, from which the site may send
    /// it: get_outbox_path, created when it does not exist. The file is text: "To: " and the codes, "Subject: " and the
    /// title, an empty line, the message. Its name depends on what it says, so that a message that is repeated replaces
    /// itself.
    static bool send_auto_email_file(const std::string& title, const std::string& text,
                                     const std::vector<int>& recipients);

    /// The outbox: the directory in the configuration value "TESSARY_OUTBOX_DIR", otherwise "outbox" in the installation
    /// directory or, where that may not be written, in a state directory (gen.h).
    static std::string get_outbox_path();
};
