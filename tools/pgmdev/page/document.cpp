#include "page/document.h"

#include <fmt/core.h>

#include <charconv>
#include <stdexcept>

#include "files/file_bytes.h"
#include "page/assets.h"

namespace {

/// Base 64 of what hexadecimal digits say.
std::string base64_of_hex(const std::string& hex) {
    constexpr std::string_view DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t GROUP = 6;  // digits, of which four of base 64 are made
    std::string text;
    for (std::size_t at = 0; at < hex.size(); at += GROUP) {
        std::string group = hex.substr(at, GROUP);
        const std::size_t bytes = group.size() / 2;
        group.resize(GROUP, '0');
        unsigned bits = 0;
        std::from_chars(group.data(), group.data() + group.size(), bits, 16);
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= bytes ? DIGITS[bits >> (18 - 6 * i) & 0x3F] : '=';
        }
    }
    return text;
}

/// How a content security policy names a text.
std::string digest_source(std::string_view text) {
    const auto* bytes = reinterpret_cast<const BYTE*>(text.data());
    return "'sha256-" + base64_of_hex(sha256_of({bytes, text.size()})) + "'";
}

/// Within a script element nothing may look like its end.
std::string within_script(const JSON& data) {
    std::string text;
    for (const char c : json_text(data)) {
        c == '<' ? text += "\\u003c" : text += c;
    }
    return text;
}

/// Puts a text in place of its mark, which the template has once.
void fill_in(std::string& page, std::string_view mark, std::string_view text) {
    const std::size_t place = page.find(mark);
    if (place == std::string::npos) {
        throw std::logic_error("the page has no place for " + std::string(mark));
    }
    page.replace(place, mark.size(), text);
}

std::string all_scripts() {
    std::string text = "(() => {\n\"use strict\";\n";
    for (const std::string_view script : page_scripts()) {
        text += script;
    }
    return text + "})();\n";
}

}  // namespace

std::string page_document(const PAGE_DATA& data) {
    const std::string script = all_scripts();
    std::string page(page_template());
    fill_in(page, "@POLICY@",
            fmt::format("default-src 'none'; style-src {}; script-src {}; base-uri 'none'; form-action 'none'",
                        digest_source(page_style()), digest_source(script)));
    fill_in(page, "@STYLE@", page_style());
    fill_in(page, "@FLASH@", within_script(data.flash));
    fill_in(page, "@TABLES@", within_script(data.tables));
    fill_in(page, "@NAMES@", within_script(data.names));
    fill_in(page, "@SCRIPT@", script);
    if (!page.starts_with(PAGE_BEGINNING)) {
        throw std::logic_error("the page begins otherwise");
    }
    return page;
}
