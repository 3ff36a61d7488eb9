// Which flash answered an identification read, how sure is that, and how long may erasing it take?

#include <inttypes.h>
#include <stdio.h>

#include "pgmdev_c.h"

// Says what went wrong, and frees the error.
static int failed(pgmdev_status status, pgmdev_error* error) {
    fprintf(stderr, "%s: %s\n", pgmdev_status_name(status), pgmdev_error_message(error));
    pgmdev_error_free(error);
    return 3;
}

int main(void) {
    pgmdev_error* error = NULL;
    pgmdev_flash_database* flash = NULL;
    pgmdev_status status = pgmdev_flash_open(NULL, &flash, &error);  // the installed database
    if (status != PGMDEV_STATUS_OK) {
        return failed(status, error);
    }

    const uint8_t answered[] = {0xEF, 0x40, 0x17};  // to RDID
    const pgmdev_flash_response response = {.struct_size = sizeof response, .bytes = answered, .size = sizeof answered};
    pgmdev_flash_verdict verdict = {.struct_size = sizeof verdict};
    status = pgmdev_flash_identify(flash, &response, &verdict, NULL, &error);
    if (status == PGMDEV_STATUS_NOT_FOUND) {
        puts("unknown flash");
    }

    const pgmdev_records* records = pgmdev_flash_records(flash);
    const char* name = NULL;
    uint64_t seconds = 0;
    if (status == PGMDEV_STATUS_OK) {
        status = pgmdev_records_text(records, verdict.record, "device_name", &name, &error);
    }
    if (status == PGMDEV_STATUS_OK) {
        status = pgmdev_records_number(records, verdict.record, "bulk_erase_time", &seconds, &error);
    }
    if (status == PGMDEV_STATUS_OK) {
        printf("%s%s: erased within %" PRIu64 " s\n", name, verdict.sure ? "" : ", or another one", seconds);
    }
    pgmdev_flash_free(flash);
    if (error != NULL) {
        return failed(status, error);
    }
    return status == PGMDEV_STATUS_OK ? 0 : 1;
}
