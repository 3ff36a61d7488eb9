#ifndef PGMDEV_C_BASE_H
#define PGMDEV_C_BASE_H

/// \file
/// What all other headers need: statuses, errors, strings; and the library as a whole: its version, who hears of its
/// messages, and where it looks for files. pgmdev_c.h has the conventions.

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if !defined(_WIN32)
#define PGMDEV_C_EXPORT __attribute__((visibility("default")))
#elif defined(PGMDEV_C_BUILD)
#define PGMDEV_C_EXPORT __declspec(dllexport)
#else
#define PGMDEV_C_EXPORT __declspec(dllimport)
#endif

#if defined(__cplusplus)
extern "C" {
#endif

/// The interface that these headers describe. It grows by one when something is added to them; nothing is ever taken away
/// or changed.
#define PGMDEV_C_INTERFACE 2

/// The interface that the library has. One that is not less than PGMDEV_C_INTERFACE has all that these headers have.
PGMDEV_C_EXPORT uint32_t pgmdev_c_interface(void);

/// How a function ended.
typedef uint32_t pgmdev_status;
enum {
    PGMDEV_STATUS_OK = 0,
    PGMDEV_STATUS_NOT_FOUND = 1,         ///< there is no such thing: a result
    PGMDEV_STATUS_INVALID_ARGUMENT = 2,  ///< the function cannot be called like this
    PGMDEV_STATUS_NO_MEMORY = 3,
    PGMDEV_STATUS_REPORTED = 4,  ///< an internal error was reported: a file is missing or damaged, a table is refused
    PGMDEV_STATUS_REFUSED = 5,   ///< what a person has written is refused; the message says why
    PGMDEV_STATUS_NOT_WRITTEN = 6,  ///< a file could not be written; it is as it was
    PGMDEV_STATUS_BUSY = 7,         ///< another program or thread has it
    PGMDEV_STATUS_FAILED = 8        ///< anything else; the message says what
};

/// "OK", "NOT_FOUND" ...; "UNKNOWN" for a number that is no status.
PGMDEV_C_EXPORT const char* pgmdev_status_name(pgmdev_status status);

/// What was wrong. Memory that has run out is an error that takes none: freeing it does nothing.
typedef struct pgmdev_error pgmdev_error;

/// Of a null pointer, PGMDEV_STATUS_OK, "" and 0. Condition, module, file and line are those of an internal error
/// (PGMDEV_STATUS_REPORTED), otherwise "" and 0; the message is a sentence for people, or the condition.
PGMDEV_C_EXPORT pgmdev_status pgmdev_error_status(const pgmdev_error* error);
PGMDEV_C_EXPORT const char* pgmdev_error_message(const pgmdev_error* error);
PGMDEV_C_EXPORT const char* pgmdev_error_condition(const pgmdev_error* error);
PGMDEV_C_EXPORT const char* pgmdev_error_module(const pgmdev_error* error);
PGMDEV_C_EXPORT const char* pgmdev_error_file(const pgmdev_error* error);
PGMDEV_C_EXPORT int32_t pgmdev_error_line(const pgmdev_error* error);
PGMDEV_C_EXPORT void pgmdev_error_free(pgmdev_error* error);

/// A text or bytes that a function has made.
typedef struct pgmdev_string pgmdev_string;

/// Its bytes, behind which there is a zero byte; of a null pointer "" and 0.
PGMDEV_C_EXPORT const char* pgmdev_string_data(const pgmdev_string* string);
PGMDEV_C_EXPORT size_t pgmdev_string_size(const pgmdev_string* string);
PGMDEV_C_EXPORT void pgmdev_string_free(pgmdev_string* string);

/// An internal error, as it is reported: a condition that did not hold, and where it stands. Here the library sets
/// `struct_size`: what lies behind it is not there.
typedef struct pgmdev_report {
    size_t struct_size;
    const char* condition;
    const char* module;
    const char* file;
    int32_t line;
} pgmdev_report;

/// Receives every internal error, in the thread whose call has come upon it. It must return; the operation then ends with
/// PGMDEV_STATUS_REPORTED, or goes on where the report is only a note. The texts live until it returns.
typedef void (*pgmdev_report_handler)(const pgmdev_report* report, void* user);

/// Receives every message of the debug channel: the module, the depth of detail (1 is the coarsest), and the text.
typedef void (*pgmdev_debug_handler)(const char* logger, int32_t level, const char* text, void* user);

/// Has reports or debug messages handed to `handler`, with `user`, instead of being written to standard error; null
/// returns to that. They are for the whole process, programs in C++ included, and are set while no other thread uses the
/// library.
PGMDEV_C_EXPORT pgmdev_status pgmdev_set_report_handler(pgmdev_report_handler handler, void* user,
                                                        pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_set_debug_handler(pgmdev_debug_handler handler, void* user, pgmdev_error** error);

/// A configuration value. One set here is for this process and wins over environment and files, even when it is "";
/// null forgets it. A key without a value, or with an empty one, is not found.
PGMDEV_C_EXPORT pgmdev_status pgmdev_set_configuration(const char* key, const char* value, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_configuration(const char* key, pgmdev_string** value, pgmdev_error** error);

/// Where files are looked for.
typedef uint32_t pgmdev_directory;
enum {
    PGMDEV_DIRECTORY_INSTALLATION = 0,  ///< the tool's own data
    PGMDEV_DIRECTORY_DATABASES = 1,     ///< "programmer" below it has the packed databases
    PGMDEV_DIRECTORY_MODULE = 2         ///< has the parameter container
};

/// A directory set here is for this process; null returns to the default. Set it while no other thread uses the library.
PGMDEV_C_EXPORT pgmdev_status pgmdev_set_directory(pgmdev_directory directory, const char* path, pgmdev_error** error);
PGMDEV_C_EXPORT pgmdev_status pgmdev_directory_path(pgmdev_directory directory, pgmdev_string** path,
                                                    pgmdev_error** error);

#if defined(__cplusplus)
}
#endif

#endif
