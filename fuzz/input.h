#pragma once

/// \file
/// What a fuzzer gives, taken apart.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline std::string text_of(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Between the files of an input that is several: a byte that no text has otherwise.
inline constexpr char SECTION_END = '\f';

/// As many sections as asked for; those that the input does not have are empty.
inline std::vector<std::string> sections_of(std::string_view text, std::size_t count) {
    std::vector<std::string> sections(count);
    for (std::string& section : sections) {
        const std::size_t end = text.find(SECTION_END);
        section = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return sections;
}

/// Small numbers and a rest, from the front.
class CHOICES {
public:
    CHOICES(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    /// 0 when nothing is left.
    std::uint8_t byte() { return m_size == 0 ? std::uint8_t{0} : (--m_size, *m_data++); }
    bool flag() { return (byte() & 1U) != 0; }
    std::string rest() const { return text_of(m_data, m_size); }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};
