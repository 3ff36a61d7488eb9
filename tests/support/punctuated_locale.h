#pragma once

/// \file
/// A global locale in which numbers have separators: "134,217,728".

#include <locale>
#include <string>

class PUNCTUATED_LOCALE {
public:
    PUNCTUATED_LOCALE() : m_previous(std::locale::global(std::locale(std::locale(), new THOUSANDS))) {}
    ~PUNCTUATED_LOCALE() { std::locale::global(m_previous); }
    PUNCTUATED_LOCALE(const PUNCTUATED_LOCALE&) = delete;
    PUNCTUATED_LOCALE& operator=(const PUNCTUATED_LOCALE&) = delete;

private:
    class THOUSANDS : public std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale m_previous;
};
