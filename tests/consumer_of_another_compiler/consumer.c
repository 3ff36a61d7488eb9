// A program that a compiler of Microsoft's kind builds, without headers of its own: it asks which flash answered, and says
// its name.

#include "pgmdev_c.h"

// Of the system's C library.
__declspec(dllimport) int puts(const char* text);
__declspec(dllimport) void exit(int code);

// Where the program begins.
void start(void) {
    static const uint8_t ANSWERED[] = {0xEF, 0x40, 0x17};
    static const pgmdev_flash_response RESPONSE = {
        .struct_size = sizeof RESPONSE, .bytes = ANSWERED, .size = sizeof ANSWERED};
    pgmdev_error* error = NULL;
    pgmdev_flash_database* flash = NULL;
    pgmdev_flash_verdict verdict = {.struct_size = sizeof verdict};
    const char* name = NULL;
    pgmdev_status status = pgmdev_flash_open(NULL, &flash, &error);
    if (status == PGMDEV_STATUS_OK) {
        status = pgmdev_flash_identify(flash, &RESPONSE, &verdict, NULL, &error);
    }
    if (status == PGMDEV_STATUS_OK) {
        status = pgmdev_records_text(pgmdev_flash_records(flash), verdict.record, "device_name", &name, &error);
    }
    puts(status == PGMDEV_STATUS_OK ? name : pgmdev_error_message(error));
    pgmdev_error_free(error);
    pgmdev_flash_free(flash);
    exit((int)status);
}
