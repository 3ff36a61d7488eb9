#pragma once

/// \file
/// A text line by line. Unlike a stream, which takes a failing allocation for its end, this lets every exception pass.

#include <algorithm>
#include <string_view>

/// What programs of Windows put before a text in UTF-8; it is no part of it.
inline constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

inline std::string_view without_byte_order_mark(std::string_view text) {
    return text.substr(text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0);
}

/// Whether a text begins as one in UTF-16 does.
inline bool is_utf_16(std::string_view text) {
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

/// Calls `use` for each line, as std::string_view without its line feed; what stands behind the last one counts as a
/// line unless it is empty.
template <class USE>
void for_each_line(std::string_view text, USE use) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        use(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}
