#pragma once

#include <string>
#include <vector>

#include "host_types.h"

struct PGM_COMMON {
    /// Decimal, hexadecimal behind "0x", and decimal before a "k" that stands for 1024.
    static DWORD convert_string_to_dword(std::string text, bool no_empty, bool* ok, DWORD* value, bool allow_hex);
    static DWORD msb_calculate_crc32(const BYTE* data, QWORD first_bit, QWORD bit_count, DWORD initial,
                                     DWORD polynomial, bool msb_first);
    static BYTE* get_block_sha(const void* data, QWORD length, DWORD digest_size);
    static bool compare_string(const std::string& left, const std::string& right, bool ignore_case);
    static bool send_auto_email_file(const std::string& title, const std::string& text, std::vector<int> recipients);
};
