#pragma once

/// \file
/// Texts that people give, as UTF-8: they come in that or, behind a byte-order mark, in UTF-16, as PowerShell writes what it
/// redirects.

#include <functional>
#include <optional>
#include <string>
#include <utility>

/// A text in UTF-8, byte by byte.
class UTF_8_INPUT {
public:
    static constexpr int END = -1;
    static constexpr int MALFORMED = -2;  ///< what began as UTF-16 does not go on as such

    /// Takes the text from a function that gives its next byte, or END. No more bytes are taken than `next` needs.
    explicit UTF_8_INPUT(std::function<int()> next_byte) : m_next_byte(std::move(next_byte)) {}

    /// The next byte, or END or MALFORMED, behind which there is no more. A byte-order mark of UTF-16 is no part of the
    /// text; one of UTF-8 is left to the caller.
    int next();

private:
    enum class FORM { UNKNOWN, AS_IT_IS, LOW_BYTE_FIRST, HIGH_BYTE_FIRST, MALFORMED };

    void find_form(int first);
    int next_unit();
    int next_character();

    std::function<int()> m_next_byte;
    FORM m_form = FORM::UNKNOWN;
    std::string m_ready;  ///< bytes that have been found and not been given, the next one last
};

/// The whole text in UTF-8; nothing when it begins as UTF-16 and does not go on as such.
std::optional<std::string> as_utf_8(std::string text);

/// What is wrong with a text that is MALFORMED, for people.
inline constexpr const char* MALFORMED_UTF_16 = "it begins as UTF-16, and half a character of it is missing";
