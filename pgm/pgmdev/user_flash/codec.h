#pragma once

/// \file
/// The printable form of a user's flash description, and the password that binds a text to the build that signed it.
///
/// A description travels as a zlib stream in characters of 6 bits each, least significant bit first: bit k of character
/// i is bit 6i + k of the stream's bytes.

#include <string>
#include <string_view>

/// The character of each 6-bit value.
inline constexpr std::string_view USER_FLASH_SYMBOLS =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-";
static_assert(USER_FLASH_SYMBOLS.size() == 64);

/// Letters of a password.
inline constexpr std::size_t USER_FLASH_PASSWORD_SIZE = 16;

/// What coding gives: a text, or the line for the user that says why there is none.
struct USER_FLASH_CODING {
    std::string text;
    const char* failure = nullptr;
    bool lacks_memory = false;  ///< the failure is only that zlib has had none
};

/// The printable form. It fails when the compressed text is longer than twice the text, as it is for the shortest ones.
USER_FLASH_CODING encode_user_flash(std::string_view text);

/// The text up to its first zero byte. It fails for characters of no value, and for what does not decompress to at most
/// 20 times its packed size.
USER_FLASH_CODING decode_user_flash(std::string_view encoded);

/// The password of a text in this build. An empty text is reported.
std::string user_flash_password(std::string_view text);

/// Whether `password` is the password of `text` in this build.
bool is_user_flash_password(std::string_view text, std::string_view password);
