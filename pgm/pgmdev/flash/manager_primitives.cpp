#include "flash/records.h"
#include "packed/codec.h"
#include "packed/file.h"
#include "pgmdev_flash_manager.h"
#include "report.h"

// The primitives of the packed encoding as this class offers them to deriving classes: buffers come as bare pointers.

namespace {

PACKED_READER reading(const BYTE* data, DWORD& index) {
    return {data, PACKED_TRUSTED_SIZE, index, FLASH_FORMAT};
}

PACKED_WRITER writing(BYTE** data, DWORD& index) {
    return {*data, PACKED_TRUSTED_SIZE, index, FLASH_FORMAT};
}

}  // namespace

DWORD PGMDEV_FLASH_MANAGER::get_dword(const BYTE* data, DWORD& index) {
    return reading(data, index).untagged_dword();
}

void PGMDEV_FLASH_MANAGER::get_bool_data(const BYTE* data, DWORD& index, bool* value) {
    *value = reading(data, index).get_bool();
}

void PGMDEV_FLASH_MANAGER::get_byte_data(const BYTE* data, DWORD& index, BYTE* value) {
    *value = reading(data, index).get_byte();
}

void PGMDEV_FLASH_MANAGER::get_word_data(const BYTE* data, DWORD& index, WORD* value) {
    *value = reading(data, index).get_word();
}

void PGMDEV_FLASH_MANAGER::get_dword_data(const BYTE* data, DWORD& index, DWORD* value) {
    *value = reading(data, index).get_dword();
}

void PGMDEV_FLASH_MANAGER::get_string_data(const BYTE* data, DWORD& index, std::string* value) {
    reading(data, index).get_string(true, *value);
}

void PGMDEV_FLASH_MANAGER::confirm_data_type_end(const BYTE* data, DWORD& index) {
    reading(data, index).confirm_record_end();
}

void PGMDEV_FLASH_MANAGER::confirm_database_end(const BYTE* data, DWORD& index) {
    reading(data, index).confirm_database_end();
}

void PGMDEV_FLASH_MANAGER::dump_dword_database(BYTE** data, DWORD& index, DWORD value) {
    writing(data, index).put_untagged_dword(value);
}

void PGMDEV_FLASH_MANAGER::dump_bool_to_database(BYTE** data, DWORD& index, std::string text) {
    bool value = false;
    const char* condition = take_bool(RECORD_SCHEMA<PGMDEV_SFL_FLASH_INFO>::SYNTAX, text, value);
    PGMDEV_REQUIRE(condition == nullptr, condition, FLASH_MANAGER_FILE);
    writing(data, index).put_bool(value);
}

void PGMDEV_FLASH_MANAGER::dump_value_to_database(BYTE** data, DWORD& index, std::string text, DWORD count) {
    PGMDEV_REQUIRE(!text.empty(), "string.size() > 0", FLASH_MANAGER_FILE);
    PGMDEV_REQUIRE(count == 1 || count == 2 || count == 4, "count == 1 || count == 2 || count == 4",
                   FLASH_MANAGER_FILE);
    DWORD value = 0;
    const char* condition = take_number_or_report(RECORD_SCHEMA<PGMDEV_SFL_FLASH_INFO>::SYNTAX, text, value);
    PGMDEV_REQUIRE(condition == nullptr, condition, FLASH_MANAGER_FILE);
    writing(data, index).put_number(value, count);
}

void PGMDEV_FLASH_MANAGER::dump_string_to_database(BYTE** data, DWORD& index, std::string text) {
    PGMDEV_REQUIRE(!text.empty(), "string.size() > 0", FLASH_MANAGER_FILE);
    writing(data, index).put_string(PGMDEV_MANAGER_STRING, text);
}

WORD PGMDEV_FLASH_MANAGER::calculate_crc16(const unsigned char* data, unsigned long size) {
    return packed_checksum(data, size);
}

BYTE* PGMDEV_FLASH_MANAGER::compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count) {
    return packed_compress(data, offset, count, out_count, FLASH_FORMAT).release();
}

BYTE* PGMDEV_FLASH_MANAGER::decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count) {
    return packed_decompress(data, decompressed_count, original_count, FLASH_FORMAT).release();
}
