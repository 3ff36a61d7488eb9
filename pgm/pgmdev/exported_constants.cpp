#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_mgr.h"
#include "pgmdev_user_flash.h"

// The constants of the exported classes once more, which makes the library define them. On Windows, a program that takes
// the address of one imports it, and nothing else in the library makes a definition that it could export.

// NOLINTBEGIN(readability-redundant-declaration): they are definitions
constexpr DWORD PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE;
constexpr DWORD PGMDEV_DEV_INFO_MANAGER::TOTAL_DEVICE_DATABASE_MEMBER;
constexpr DWORD PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER;
constexpr QWORD PGMDEV_MGR::INVALID_NAME_HASH;
constexpr const char* PGMDEV_USER_FLASH::CONFIGURATION_KEY;
// NOLINTEND(readability-redundant-declaration)
