#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_mgr.h"
#include "pgmdev_user_flash.h"

// The constants of the exported classes once more, which makes the library define them. Where a library must say what
// it exports, programs that take the address of a constant look for it there, and it is there for no other reason.

constexpr DWORD PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE;
constexpr DWORD PGMDEV_DEV_INFO_MANAGER::TOTAL_DEVICE_DATABASE_MEMBER;
constexpr DWORD PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER;
constexpr QWORD PGMDEV_MGR::INVALID_NAME_HASH;
constexpr const char* PGMDEV_USER_FLASH::CONFIGURATION_KEY;
