#ifndef PGMDEV_C_BOOT_FLASH_H
#define PGMDEV_C_BOOT_FLASH_H

/// \file
/// Hard processor systems (HPS), and the flash devices that they boot from.

#include "pgmdev_c_records.h"

#if defined(__cplusplus)
extern "C" {
#endif

/// The kinds of hard processor systems: "id", "name", then the figures of each.
PGMDEV_C_EXPORT pgmdev_status pgmdev_hps_kinds(pgmdev_records** kinds, pgmdev_error** error);

/// The one kind that is current for the whole process, by its "id"; none is when there is no kind of that number.
PGMDEV_C_EXPORT pgmdev_status pgmdev_hps_set_current(uint32_t id, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_hps_current(uint32_t* id, pgmdev_error** error);

typedef uint32_t pgmdev_boot_flash_type;
enum { PGMDEV_BOOT_FLASH_NAND = 0, PGMDEV_BOOT_FLASH_SPI = 1, PGMDEV_BOOT_FLASH_TYPES = 2 };

/// The flash devices of that type, the user's own first. The last member, "user", says whose one is. The lists are read once
/// in a process.
PGMDEV_C_EXPORT pgmdev_status pgmdev_boot_flash_list(pgmdev_boot_flash_type type, pgmdev_records** list,
                                                     pgmdev_error** error);

/// Replaces the user's own flash devices in the parameter container. `values` are those of the devices one after the
/// other, in the order of the members, without "user"; with a `count` of 0 there are none any more. Who makes them from
/// what was listed holds a lock (pgmdev_c_parameters.h) meanwhile, and calls pgmdev_boot_flash_reread before and after.
/// Values are stored as they are, whether a flash can have them or not.
PGMDEV_C_EXPORT pgmdev_status pgmdev_boot_flash_set_user(pgmdev_boot_flash_type type, const pgmdev_value* values,
                                                         size_t count, pgmdev_error** error);

/// Has the lists read anew when they are asked for next. No other thread, and no code in C++, uses them meanwhile; records
/// that were handed out stay.
PGMDEV_C_EXPORT pgmdev_status pgmdev_boot_flash_reread(pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
