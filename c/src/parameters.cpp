#include "pgmdev_c_parameters.h"

#include <algorithm>
#include <memory>

#include "block_values.h"
#include "structures.h"

struct pgmdev_parameter_lock {
    PGMDEV_FLASH_INI_LOCK lock;
};

namespace {

PGMDEV_FLASH_INI_ENUM block_at(pgmdev_parameter_block block) {
    require_argument(block < PGMDEV_FLASH_INI_MAX, "there is no block of that number");
    return static_cast<PGMDEV_FLASH_INI_ENUM>(block);
}

void write_block(PGMDEV_FLASH_INI_ENUM which, BYTE* bytes, DWORD size) {
    if (!PGMDEV_FLASH_INI::write_flash_ini_data(which, bytes, size)) {
        throw FAILURE(PGMDEV_STATUS_NOT_WRITTEN, "the parameter container could not be written");
    }
}

/// A count and as many pairs, as the library takes them; nothing for a null pointer.
std::vector<DWORD> pairs_of(const uint32_t* numbers, std::size_t count) {
    std::vector<DWORD> pairs;
    if (numbers != nullptr) {
        require_argument(count <= INVALID_DWORD / 2, "there are too many pairs");
        pairs.push_back(static_cast<DWORD>(count));
        pairs.insert(pairs.end(), numbers, numbers + 2 * count);
    }
    return pairs;
}

const DWORD* or_null(const std::vector<DWORD>& pairs) {
    return pairs.empty() ? nullptr : pairs.data();
}

}  // namespace

pgmdev_status pgmdev_parameter_blocks(pgmdev_records** blocks, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(blocks);
        pgmdev_records found(
            {number_member("number"), text_member("name"), flag_member("present"), number_member("size", 32, "bytes")});
        for (std::size_t i = 0; i < PGMDEV_FLASH_INI_NAMES.size(); ++i) {
            DWORD size = 0;
            const std::unique_ptr<BYTE[]> bytes(
                PGMDEV_FLASH_INI::read_flash_ini_data(static_cast<PGMDEV_FLASH_INI_ENUM>(i), size));
            found.add({number_value(i), text_value(std::string(PGMDEV_FLASH_INI_NAMES.at(i))),
                       flag_value(bytes != nullptr), bytes != nullptr ? number_value(size) : DATUM()});
        }
        *blocks = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_parameters_read(pgmdev_parameter_block block, pgmdev_string** bytes, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(bytes);
        DWORD size = 0;
        const std::unique_ptr<BYTE[]> read(PGMDEV_FLASH_INI::read_flash_ini_data(block_at(block), size));
        return give_text(bytes, read != nullptr ? std::string(read.get(), read.get() + size) : "");
    });
}

pgmdev_status pgmdev_parameters_write(pgmdev_parameter_block block, const uint8_t* bytes, size_t size,
                                      pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        require_argument(bytes != nullptr && size != 0, "a block has one byte at least");
        require_argument(size < INVALID_DWORD, "a block cannot be that long");
        std::vector<BYTE> copy(bytes, bytes + size);
        write_block(block_at(block), copy.data(), static_cast<DWORD>(size));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_parameters_remove(pgmdev_parameter_block block, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        write_block(block_at(block), nullptr, 0);
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_parameter_lock_take(pgmdev_parameter_lock** lock, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(lock);
        auto taken = std::make_unique<pgmdev_parameter_lock>();
        if (!taken->lock.is_held()) {
            throw FAILURE(PGMDEV_STATUS_BUSY, "another writer has the parameter container");
        }
        *lock = taken.release();
        return PGMDEV_STATUS_OK;
    });
}

void pgmdev_parameter_lock_free(pgmdev_parameter_lock* lock) {
    delete lock;
}

pgmdev_status pgmdev_parameters_decode(const uint8_t* bytes, size_t size, size_t* position,
                                       const pgmdev_parameter_type* types, size_t count, pgmdev_records** values,
                                       pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(values);
        require_argument(bytes != nullptr || size == 0, "the bytes are a null pointer");
        require_argument(types != nullptr || count == 0, "the types are a null pointer");
        require_argument(size < INVALID_DWORD && opened(position) <= size, "the position is not in the block");
        pgmdev_records found({member_of_kind("value", PGMDEV_KIND_NONE)});
        auto place = static_cast<DWORD>(*position);
        bool whole = true;
        for (std::size_t i = 0; i < count && whole; ++i) {
            PGMDEV_PARAM_VALUE value(parameter_type(types[i]));
            whole = pgmdev_read_param(bytes, static_cast<DWORD>(size), place, value);
            if (whole) {
                found.add({datum_of(value)});
            }
        }
        *values = new pgmdev_records(std::move(found));
        *position = std::min<std::size_t>(place, size);
        return whole ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND;
    });
}

pgmdev_status pgmdev_parameters_encode(const pgmdev_parameter_type* types, const pgmdev_value* values, size_t count,
                                       pgmdev_string** bytes, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(bytes);
        require_argument((types != nullptr && values != nullptr) || count == 0, "types or values are a null pointer");
        std::vector<BYTE> block;
        for (std::size_t i = 0; i < count; ++i) {
            PGMDEV_PARAM_VALUE value = parameter_from(parameter_type(types[i]), values[i]);
            pgmdev_append_param(block, value.type(), value.object());
        }
        *bytes = new pgmdev_string{text_of(block)};
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_parameter_text(pgmdev_parameter_type type, const pgmdev_value* value, bool hexadecimal,
                                    pgmdev_string** text, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(text);
        PGMDEV_PARAM_VALUE known = parameter_from(parameter_type(type), opened(value));
        *text = new pgmdev_string{PGMDEV_FLASH_INI::print_flash_ini_data(known.type(), hexadecimal, known.object())};
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_parameter_number(pgmdev_parameter_type type, const char* text, const pgmdev_number_rules* rules,
                                      uint64_t* number, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(number);
        const PGMDEV_PARAM_TYPE known = parameter_type(type);
        require_argument(known != PGMDEV_PARAM_STRING && known != PGMDEV_PARAM_BOOL, "the type is not that of numbers");
        const pgmdev_number_rules given = rules != nullptr ? handed_in(rules) : pgmdev_number_rules{};
        const std::vector<DWORD> ranges = pairs_of(given.ranges, given.range_count);
        const std::vector<DWORD> hits = pairs_of(given.invalid_hits, given.invalid_hit_count);
        QWORD value = 0;
        std::string fault;
        if (!PGMDEV_FLASH_INI::convert_string_to_qword(known, value, given.hexadecimal, required_text(text),
                                                       given.power_of_two, or_null(ranges), or_null(hits),
                                                       given.exponent, std::max<DWORD>(given.multiple, 1), fault)) {
            throw FAILURE(PGMDEV_STATUS_REFUSED, fault);
        }
        *number = value;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_number_hexadecimal(uint64_t number, uint32_t digits, bool prefix, pgmdev_string** text,
                                        pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(text);
        require_argument(digits >= 1 && digits <= 16, "a number has 1 to 16 hexadecimal digits");
        return give_text(text, PGMDEV_FLASH_INI::convert_qword_to_hex_string(number, digits, prefix));
    });
}
