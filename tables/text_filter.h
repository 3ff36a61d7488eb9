#pragma once

/// \file
/// Tells of most texts that they are not in a list, without reading any text of the list.

#include <string_view>
#include <vector>

#include "grammar_index.h"

/// A bit for the hash of each text, among so many that few other texts have one that is set. They lie closer together than
/// what the texts are looked up in.
class TEXT_FILTER {
public:
    explicit TEXT_FILTER(const std::vector<std::string_view>& texts) : m_bits(BITS_OF_A_TEXT * (texts.size() + 1)) {
        for (const std::string_view text : texts) {
            m_bits[text_bucket(text, m_bits.size())] = true;
        }
    }

    bool may_have(std::string_view text) const { return m_bits[text_bucket(text, m_bits.size())]; }

private:
    static constexpr std::size_t BITS_OF_A_TEXT = 16;

    std::vector<bool> m_bits;
};
