#pragma once

/// \file
/// What a record compares of a response.

#include <algorithm>
#include <array>
#include <span>
#include <tuple>

#include "pgmdev_sfl_flash_info.h"

/// The bytes of a response that count: records name them by positions of one byte.
inline constexpr std::size_t FLASH_RESPONSE_SIZE = 256;

/// A response as it is mapped to a record: zeros stand for the bytes that were not read.
inline std::array<BYTE, FLASH_RESPONSE_SIZE> padded_response(std::span<const BYTE> response) {
    std::array<BYTE, FLASH_RESPONSE_SIZE> padded{};
    std::copy_n(response.begin(), std::min(response.size(), padded.size()), padded.begin());
    return padded;
}

struct FLASH_COMPARISON {
    BYTE position = 0;
    BYTE value = 0;

    bool operator==(const FLASH_COMPARISON&) const = default;
    bool operator<(const FLASH_COMPARISON& other) const {
        return std::tie(position, value) < std::tie(other.position, other.value);
    }
};

/// At most three of them, without memory of their own: every record of a table is asked for them.
class FLASH_COMPARISONS {
public:
    explicit FLASH_COMPARISONS(const PGMDEV_SFL_FLASH_INFO& record) {
        add(record.memory_id_index, record.memory_id);
        if (!record.silicon_id) {
            if (record.memory_type_index != PGMDEV_SFL_FLASH_INFO::NONE) {
                add(record.memory_type_index, record.memory_type);
            }
            add(record.mfc_id_index, record.mfc_id);
        }
    }

    const FLASH_COMPARISON* begin() const { return m_all.data(); }
    const FLASH_COMPARISON* end() const { return m_all.data() + m_count; }

    /// Whether no byte of the response contradicts; bytes that it has not may be anything.
    bool admit(std::span<const BYTE> response) const {
        return std::all_of(begin(), end(), [response](const FLASH_COMPARISON& each) {
            return each.position >= response.size() || response[each.position] == each.value;
        });
    }

    /// Whether all that is compared is there and agrees.
    bool are_met_by(std::span<const BYTE> response) const {
        return std::all_of(begin(), end(), [response](const FLASH_COMPARISON& each) {
            return each.position < response.size() && response[each.position] == each.value;
        });
    }

    bool compare_at(DWORD position) const {
        return std::any_of(begin(), end(), [position](const auto& each) { return each.position == position; });
    }

private:
    void add(BYTE position, BYTE value) { m_all[m_count++] = {position, value}; }

    std::array<FLASH_COMPARISON, 3> m_all{};
    std::size_t m_count = 0;
};
