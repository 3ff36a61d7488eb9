#include "packed/format.h"

#include "pgmdev_dev_info.h"
#include "pgmdev_sfl_flash_info.h"
#include "report.h"

#define MAGIC_CONDITION(c6, c7)                                                                        \
    "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && " \
    "data[index++] == 'O' && data[index++] == '_' && data[index++] == '" c6 "' && data[index++] == '" c7 "'"

#define FILE_CONDITION(name)        \
    "FIO_FILE_SYSTEM::exists(" name \
    ".fullpath().c_str()) && "      \
    "FIO_FILE_SYSTEM::status(" name ".fullpath().c_str(), &stat_info)"

static_assert(PGMDEV_FLASH_INFO_CSV_MD5.size() == PACKED_STAMP_SIZE);
static_assert(PGMDEV_DEV_INFO_CSV_MD5.size() == PACKED_STAMP_SIZE);

const PACKED_FORMAT DEV_INFO_FORMAT{
    .file = DEV_INFO_MANAGER_FILE,
    .magic = "PGMIO_DM",
    .stamp = PGMDEV_DEV_INFO_CSV_MD5,
    .members = PGMDEV_DEVICE_INFO_MEMBERS.size(),
    .dword_tags = tag_set(PGMDEV_MANAGER_DEVID_ENUM) | tag_set(PGMDEV_MANAGER_DWORD) | tag_set(PGMDEV_MANAGER_ENUM),
    .string_tags = tag_set(PGMDEV_MANAGER_DEVID_STR) | tag_set(PGMDEV_MANAGER_STRING),
    .missing_file = FILE_CONDITION("device_file"),
    .wrong_magic = MAGIC_CONDITION("D", "M"),
    .wrong_version = "Mismatch version between device file and reader",
    .wrong_counts = "m_device_count > 0 && m_type_count > 0",
    .wrong_dword_tag =
        "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || type == PGMDEV_MANAGER_ENUM",
    .wrong_string_tag = "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING",
};

const PACKED_FORMAT FLASH_FORMAT{
    .file = FLASH_MANAGER_FILE,
    .magic = "PGMIO_FM",
    .stamp = PGMDEV_FLASH_INFO_CSV_MD5,
    .members = PGMDEV_SFL_FLASH_MEMBERS.size(),
    .dword_tags = tag_set(PGMDEV_MANAGER_DWORD),
    .string_tags = tag_set(PGMDEV_MANAGER_STRING),
    .missing_file = FILE_CONDITION("flash_file"),
    .wrong_magic = MAGIC_CONDITION("F", "M"),
    .wrong_version = "Mismatch version between flash file and reader",
    .wrong_counts = "m_flash_count > 0 && m_type_count > 0",
    .wrong_dword_tag = "type == PGMDEV_MANAGER_DWORD",
    .wrong_string_tag = "type == PGMDEV_MANAGER_STRING",
};
