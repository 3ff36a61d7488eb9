// Texts, numbers, digests and compression.

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "gen.h"
#include "msg.h"
#include "own_host.h"
#include "pgm_common.h"
#include "qtl.h"
#include "stl.h"
#include "zlib_wrapper.h"

namespace {

/// The letters of ASCII and of Latin-1.
char folded(char c) {
    const auto code = static_cast<unsigned char>(c);
    const bool is_capital = (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
    return static_cast<char>(is_capital ? code + 0x20 : code);
}

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return folded(c); });
    return text;
}

bool parse(std::string text, bool allow_hex, DWORD& value) {
    int base = 10;
    DWORD unit = 1;
    if (allow_hex && text.compare(0, 2, "0x") == 0) {
        base = 16;
        text.erase(0, 2);
    } else if (!text.empty() && text.back() == 'k') {
        unit = 1024;
        text.pop_back();
    }
    const char* const digits = base == 16 ? "0123456789abcdefABCDEF" : "0123456789";
    if (text.empty() || text.find_first_not_of(digits) != std::string::npos) {
        return false;
    }
    value = static_cast<DWORD>(std::strtoull(text.c_str(), nullptr, base)) * unit;
    return true;
}

}  // namespace

int gen_stricmp(const std::string& left, const std::string& right) {
    return folded(left).compare(folded(right));
}

std::string gen_remove_leading_and_trailing_white_spaces(std::string text) {
    const char* const white_space = " \t\n\v\f\r";
    text.erase(0, text.find_first_not_of(white_space));
    text.erase(text.find_last_not_of(white_space) + 1);
    return text;
}

QWORD gen_local_strtoQWORD(const std::string& text, int base) {
    return std::strtoull(text.c_str(), nullptr, base);
}

std::string gen_ascii_toupper(std::string text) {
    stl_toupper(text);
    return text;
}

std::string gen_itoa(int value) {
    return std::to_string(value);
}

void stl_toupper(std::string& text) {
    for (char& c : text) {
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    }
}

void stl_tolower(std::string& text) {
    for (char& c : text) {
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    }
}

QTL_TOKENIZER::QTL_TOKENIZER(std::string separators, bool keep_empty, std::string /*quotes*/, std::string /*escapes*/,
                             std::string /*comments*/, bool /*fold_case*/)
    : m_separators(separators), m_keep_empty(keep_empty) {}

std::vector<std::string> QTL_TOKENIZER::tokenize(std::string line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (m_separators.find(c) == std::string::npos) {
            cells.back() += c;
        } else {
            cells.emplace_back();
        }
    }
    if (!m_keep_empty) {
        cells.erase(std::remove(cells.begin(), cells.end(), std::string()), cells.end());
    }
    return cells;
}

DWORD PGM_COMMON::convert_string_to_dword(std::string text, bool no_empty, bool* ok, DWORD* value, bool allow_hex) {
    DWORD number = 0;
    const bool good = text.empty() ? !no_empty : parse(text, allow_hex, number);
    if (ok != nullptr) {
        *ok = good;
    } else if (!good) {
        MSG_INTERNAL_ERROR::report("no number", "OWN_COMMON", "own_host/texts", __LINE__);
    }
    if (value != nullptr) {
        *value = number;
    }
    return number;
}

DWORD PGM_COMMON::msb_calculate_crc32(const BYTE* data, QWORD first_bit, QWORD bit_count, DWORD initial,
                                      DWORD polynomial, bool msb_first) {
    for (QWORD bit = first_bit; bit < first_bit + bit_count; ++bit) {
        const auto place = static_cast<int>(bit % 8);
        const DWORD next = data[bit / 8] >> (msb_first ? 7 - place : place) & 1U;
        initial = initial << 1 ^ ((initial >> 31 ^ next) != 0 ? polynomial : 0);
    }
    return initial;
}

/// Some digest: it is for whoever reads what other tools have stored to have theirs.
BYTE* PGM_COMMON::get_block_sha(const void* data, QWORD length, DWORD digest_size) {
    auto* const digest = new BYTE[digest_size]();
    QWORD state = 0xCBF29CE484222325;
    for (QWORD i = 0; i < length + digest_size; ++i) {
        state = (state ^ (i < length ? static_cast<const BYTE*>(data)[i] : 0)) * 0x100000001B3;
        digest[i % digest_size] = static_cast<BYTE>(state >> 32);
    }
    return digest;
}

bool PGM_COMMON::compare_string(const std::string& left, const std::string& right, bool ignore_case) {
    return ignore_case ? gen_stricmp(left, right) == 0 : left == right;
}

bool PGM_COMMON::send_auto_email_file(const std::string& title, const std::string& text, std::vector<int> recipients) {
    own_host().mails.push_back(std::to_string(recipients.size()) + ", " + title + ": " +
                               text.substr(0, text.find('\n')));
    return true;
}

int zlib_compress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    uLongf length = *destination_length;
    const int result = compress2(destination, &length, source, source_length, Z_BEST_SPEED);
    *destination_length = static_cast<DWORD>(length);
    return result;
}

int zlib_uncompress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    uLongf length = *destination_length;
    const int result = uncompress(destination, &length, source, source_length);
    *destination_length = static_cast<DWORD>(length);
    return result;
}
