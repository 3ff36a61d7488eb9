#include "pgmdev_packed_format.h"

#define MAGIC_CONDITION(c6, c7)                                                                        \
    "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && " \
    "data[index++] == 'O' && data[index++] == '_' && data[index++] == '" c6 "' && data[index++] == '" c7 "'"

#define FILE_CONDITION(name)        \
    "FIO_FILE_SYSTEM::exists(" name \
    ".fullpath().c_str()) && "      \
    "FIO_FILE_SYSTEM::status(" name ".fullpath().c_str(), &stat_info)"

const PACKED_FORMAT FLASH_FORMAT{
    .source = "pgm/pgmdev/pgmdev_flash_manager",
    .magic = "PGMIO_FM",
    .stamp = PGMDEV_FLASH_INFO_CSV_MD5,
    .dword_tags = tag_set(PGMDEV_MANAGER_DWORD),
    .string_tags = tag_set(PGMDEV_MANAGER_STRING),
    .missing_file = FILE_CONDITION("flash_file"),
    .wrong_magic = MAGIC_CONDITION("F", "M"),
    .wrong_version = "Mismatch version between flash file and reader",
    .wrong_dword_tag = "type == PGMDEV_MANAGER_DWORD",
    .wrong_string_tag = "type == PGMDEV_MANAGER_STRING",
};
