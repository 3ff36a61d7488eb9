#include <windows.h>

#include "wide_text.h"

std::wstring wide_from_utf8(std::string_view text) {
    const auto convert = [text](wchar_t* to, int room) {
        return MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), to, room);
    };
    std::wstring wide(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string utf8_from_wide(std::wstring_view text) {
    const auto convert = [text](char* to, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), to, room, nullptr, nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}
