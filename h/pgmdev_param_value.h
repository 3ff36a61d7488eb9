#pragma once

/// \file
/// A value in a block of the parameter container, whatever its type, for those who learn the types while they run: what
/// PGMDEV_FLASH_INI takes is a pointer to an object of the right one.

#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "pgmdev_types.h"

class PGMDEV_PARAM_VALUE {
public:
    /// In the order of PGMDEV_PARAM_TYPE.
    using OBJECT = std::variant<std::string, bool, BYTE, WORD, DWORD, QWORD>;

    /// "", false or 0. Of an unknown type it is a QWORD; operations that are given it then say what they say of such types.
    explicit PGMDEV_PARAM_VALUE(PGMDEV_PARAM_TYPE type) : m_type(type), m_object(empty_object(type)) {}

    PGMDEV_PARAM_TYPE type() const noexcept { return m_type; }

    /// The object that the type names, for PGMDEV_FLASH_INI to read and to write. It lives as long as the value, and moves
    /// with it.
    void* object() {
        return std::visit([](auto& object) -> void* { return &object; }, m_object);
    }

    const OBJECT& get() const noexcept { return m_object; }

    /// Of a value of another type std::bad_variant_access is thrown.
    void set_text(std::string text) { std::get<std::string>(m_object) = std::move(text); }

    /// A BOOL becomes true unless the number is 0; of one that is too large the low bits are taken. Of a STRING
    /// std::bad_variant_access is thrown.
    void set_number(QWORD number) {
        std::visit(
            [number]<class VALUE>(VALUE& object) {
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    throw std::bad_variant_access();
                } else {
                    object = static_cast<VALUE>(number);
                }
            },
            m_object);
    }

private:
    static OBJECT empty_object(PGMDEV_PARAM_TYPE type) {
        switch (type) {
            case PGMDEV_PARAM_STRING:
                return std::string();
            case PGMDEV_PARAM_BOOL:
                return false;
            case PGMDEV_PARAM_BYTE:
                return BYTE{0};
            case PGMDEV_PARAM_WORD:
                return WORD{0};
            case PGMDEV_PARAM_DWORD:
                return DWORD{0};
            default:
                return QWORD{0};
        }
    }

    PGMDEV_PARAM_TYPE m_type;
    OBJECT m_object;
};

/// Appends a value to the bytes of a block. `object` is one of the type; it is only read.
inline void pgmdev_append_param(std::vector<BYTE>& block, PGMDEV_PARAM_TYPE type, void* object) {
    auto position = static_cast<DWORD>(block.size());
    DWORD size = position;
    PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, type, object);
    block.resize(size);
    PGMDEV_FLASH_INI::fillup_flash_ini_data(block.data(), position, type, object);
}

/// Reads the value at `position` of a block and moves `position` past it. False, with `position` as it was, when the block
/// does not hold it whole, or its type is unknown. Of a QWORD the last 4 bytes may lie behind the end of the block, and
/// `position` then does.
inline bool pgmdev_read_param(const BYTE* block, DWORD block_size, DWORD& position, PGMDEV_PARAM_VALUE& value) {
    const PGMDEV_PARAM_TYPE type = value.type();
    void* object = value.object();
    DWORD next = position;
    if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block, next, block_size, 1, &type, &object)) {
        return false;
    }
    position = next;
    return true;
}
