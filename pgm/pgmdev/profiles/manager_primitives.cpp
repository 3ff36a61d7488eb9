#include "packed/file.h"
#include "pgm_common.h"
#include "pgmdev_dev_info_manager.h"
#include "profiles/records.h"
#include "report.h"

// The primitives of the packed encoding as this class offers them to deriving classes: buffers come as bare pointers.

namespace {

PACKED_READER reading(const BYTE* data, DWORD& index) {
    return {data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT};
}

PACKED_WRITER writing(BYTE** data, DWORD& index) {
    return {*data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT};
}

}  // namespace

DWORD PGMDEV_DEV_INFO_MANAGER::get_dword(const BYTE* data, DWORD& index) {
    return reading(data, index).untagged_dword();
}

void PGMDEV_DEV_INFO_MANAGER::get_bool_data(const BYTE* data, DWORD& index, bool* value) {
    *value = reading(data, index).get_bool();
}

void PGMDEV_DEV_INFO_MANAGER::get_byte_data(const BYTE* data, DWORD& index, BYTE* value) {
    *value = reading(data, index).get_byte();
}

void PGMDEV_DEV_INFO_MANAGER::get_word_data(const BYTE* data, DWORD& index, WORD* value) {
    *value = reading(data, index).get_word();
}

void PGMDEV_DEV_INFO_MANAGER::get_dword_data(const BYTE* data, DWORD& index, DWORD* value) {
    *value = reading(data, index).get_dword();
}

void PGMDEV_DEV_INFO_MANAGER::get_string_data(const BYTE* data, DWORD& index, bool allow_empty, std::string* value) {
    reading(data, index).get_string(allow_empty, *value);
}

void PGMDEV_DEV_INFO_MANAGER::confirm_data_type_end(const BYTE* data, DWORD& index) {
    reading(data, index).confirm_record_end();
}

void PGMDEV_DEV_INFO_MANAGER::confirm_database_end(const BYTE* data, DWORD& index) {
    reading(data, index).confirm_database_end();
}

void PGMDEV_DEV_INFO_MANAGER::dump_dword_database(BYTE** data, DWORD& index, DWORD value) {
    writing(data, index).put_untagged_dword(value);
}

void PGMDEV_DEV_INFO_MANAGER::dump_bool_to_database(BYTE** data, DWORD& index, std::string text) {
    bool value = false;
    const char* condition = take_bool(RECORD_SCHEMA<PGMDEV_DEVICE_INFO>::SYNTAX, text, value);
    PGMDEV_REQUIRE(condition == nullptr, condition, DEV_INFO_MANAGER_FILE);
    writing(data, index).put_bool(value);
}

DWORD PGMDEV_DEV_INFO_MANAGER::get_dword_from_string(std::string text) {
    return PGM_COMMON::convert_string_to_dword(text, false, nullptr, nullptr, true);
}

void PGMDEV_DEV_INFO_MANAGER::dump_value_to_database(BYTE** data, DWORD& index, std::string text, DWORD count) {
    PGMDEV_REQUIRE(count == 1 || count == 2 || count == 4, "count == 1 || count == 2 || count == 4",
                   DEV_INFO_MANAGER_FILE);
    DWORD value = 0;
    const char* condition = take_number_or_report(RECORD_SCHEMA<PGMDEV_DEVICE_INFO>::SYNTAX, text, value);
    PGMDEV_REQUIRE(condition == nullptr, condition, DEV_INFO_MANAGER_FILE);
    writing(data, index).put_number(value, count);
}

void PGMDEV_DEV_INFO_MANAGER::dump_string_to_database(BYTE** data, DWORD& index, bool allow_empty, std::string text,
                                                      PGMDEV_MANAGER_TYPE type) {
    PGMDEV_REQUIRE(!text.empty() || allow_empty, "string.size() > 0 || allow_empty", DEV_INFO_MANAGER_FILE);
    PGMDEV_REQUIRE(type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING, DEV_INFO_FORMAT.wrong_string_tag,
                   DEV_INFO_MANAGER_FILE);
    writing(data, index).put_string(type, text);
}

void PGMDEV_DEV_INFO_MANAGER::dump_enum_to_database(BYTE** data, DWORD& index, std::string value,
                                                    std::string type_name) {
    const CELL_NAMES* names = find_cell_names(type_name);
    PGMDEV_REQUIRE(names != nullptr, "type_name.empty()", DEV_INFO_MANAGER_FILE);
    DWORD number = 0;
    PGMDEV_REQUIRE(names->find(value, number), "found", DEV_INFO_MANAGER_FILE);
    writing(data, index).put_enum(number);
}

WORD PGMDEV_DEV_INFO_MANAGER::calculate_crc16(const unsigned char* data, unsigned long size) {
    return packed_checksum(data, size);
}

BYTE* PGMDEV_DEV_INFO_MANAGER::compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count) {
    return packed_compress(data, offset, count, out_count, DEV_INFO_FORMAT).release();
}

BYTE* PGMDEV_DEV_INFO_MANAGER::decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count) {
    return packed_decompress(data, decompressed_count, original_count, DEV_INFO_FORMAT).release();
}
