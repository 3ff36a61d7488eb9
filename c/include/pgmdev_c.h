#ifndef PGMDEV_C_H
#define PGMDEV_C_H

/// \file
/// The device data of Tessary for programs in C (C99 or later), and in every language that can call C.
///
/// Conventions of all headers pgmdev_c_*.h:
/// - Most functions return a status, PGMDEV_STATUS_OK when they have done what they are for. Not finding something is the
///   result PGMDEV_STATUS_NOT_FOUND, and no error. Any other status is one, and `error`, unless null, receives an object
///   that says what was wrong; when there is none it receives null. An object that it held before is not freed.
/// - No exception leaves a function, and no argument ends the program: null where something is needed, an index out of
///   range, a number that stands for nothing and a structure of an impossible size give PGMDEV_STATUS_INVALID_ARGUMENT.
/// - Where there is no result, what was to receive it becomes null, 0 or PGMDEV_NO_RECORD.
/// - What a function hands out as a pointer to something that is not const belongs to the caller, who frees it with the one
///   function for its kind; null may be freed. A pointer to const is borrowed: it and what it points at live as long as the
///   object that was asked, texts of an object until that is freed. Nothing that is handed in is kept, unless it says so.
/// - Texts are UTF-8 and end in a zero byte; that includes paths, on every system.
/// - A structure begins with its own size, which the caller sets:
///   `pgmdev_member member = {.struct_size = sizeof member};`. So a program and a library of different ages fit: what one of
///   them does not know is 0. A structure that a program hands in and that is larger than the library's must be 0 in what
///   the library does not know. No size may be above 4096, which no structure will have: one above it was never set.
/// - An object may be asked by several threads at once, for asking changes nothing; it is freed when no thread uses it.
///   Functions without an object may be called by any thread, where nothing else is said.
///
/// docs/c-interface.md is the guide, with an example.

#include "pgmdev_c_base.h"
#include "pgmdev_c_boot_flash.h"
#include "pgmdev_c_flash.h"
#include "pgmdev_c_names.h"
#include "pgmdev_c_parameters.h"
#include "pgmdev_c_profiles.h"
#include "pgmdev_c_records.h"
#include "pgmdev_c_tables.h"

#endif
