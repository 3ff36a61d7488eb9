#pragma once

/// \file
/// What the values of a boot flash must be, besides values of their types: the generator checks the built-in rows by it,
/// the command and the Python package what users add. A field that is not listed may have any value.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr std::uint32_t NO_LIMIT = 0xFFFFFFFF;

struct FIELD_CHECK {
    enum class FAULT { NONE, OUT_OF_RANGE, NO_POWER_OF_TWO };

    std::string_view name;
    bool power_of_two = false;
    std::uint32_t lowest = 0;
    std::uint32_t highest = NO_LIMIT;  ///< NO_LIMIT: what the type holds

    /// The highest value of a field of so many bytes.
    constexpr std::uint64_t highest_of(std::size_t bytes) const {
        return highest != NO_LIMIT ? highest : ~std::uint64_t{0} >> (64 - 8 * bytes);
    }

    /// What a number in a field of so many bytes must be, and is not.
    constexpr FAULT fault_of(std::uint64_t number, std::size_t bytes) const {
        if (number < lowest || number > highest_of(bytes)) {
            return FAULT::OUT_OF_RANGE;
        }
        return power_of_two && !std::has_single_bit(number) ? FAULT::NO_POWER_OF_TWO : FAULT::NONE;
    }
};

/// The check of a field.
template <std::size_t COUNT>
constexpr FIELD_CHECK field_check(const std::array<FIELD_CHECK, COUNT>& checks, std::string_view name) {
    for (const FIELD_CHECK& check : checks) {
        if (check.name == name) {
            return check;
        }
    }
    return {.name = name};
}

inline constexpr std::array HPS_NAND_CHECKS{
    FIELD_CHECK{"device_byte_size", true, 0, NO_LIMIT},
};

inline constexpr std::array HPS_SPI_CHECKS{
    FIELD_CHECK{"silicon_id", false, 1, NO_LIMIT},
    FIELD_CHECK{"silicon_id_mask", false, 1, NO_LIMIT},
    FIELD_CHECK{"ext_id", false, 0, 0xFF},
    FIELD_CHECK{"ext_id_mask", false, 0, 0xFF},
    FIELD_CHECK{"device_bit_size", true, 0, NO_LIMIT},
    FIELD_CHECK{"device_sector_byte", true, 0, NO_LIMIT},
    FIELD_CHECK{"page_byte", true, 0, NO_LIMIT},
    FIELD_CHECK{"die_count", false, 1, 0xFF},
    FIELD_CHECK{"erase_opcode", false, 0, 0xFF},
    FIELD_CHECK{"program_opcode", false, 0, 0xFF},
    FIELD_CHECK{"read_opcode", false, 0, 0xFF},
};
