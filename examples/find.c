// Which record drives a chip that people know by that name, what supports its times, and what a misspelt name may mean.

#include <stdio.h>

#include "pgmdev_c.h"

// The text of a record; "" when it has none.
static const char* text_of(const pgmdev_records* records, size_t record, const char* member) {
    const char* text = NULL;
    return pgmdev_records_text(records, record, member, &text, NULL) == PGMDEV_STATUS_OK ? text : "";
}

static void tell_record(const pgmdev_flash_database* flash, const char* name, size_t record, size_t further) {
    printf("%s: record %s", name, text_of(pgmdev_flash_records(flash), record, "device_name"));
    const pgmdev_records* names = NULL;
    if (further != PGMDEV_NO_RECORD && pgmdev_flash_further_names(flash, &names, NULL) == PGMDEV_STATUS_OK) {
        printf(" (%s)", text_of(names, further, "reason"));
    }
    pgmdev_answer* evidence = NULL;
    if (pgmdev_flash_evidence(flash, record, &evidence, NULL) == PGMDEV_STATUS_OK) {
        const pgmdev_records* groups = pgmdev_answer_list(evidence, "groups");
        size_t times = 0;
        if (pgmdev_records_find(groups, 0, "group", "times", &times, NULL) == PGMDEV_STATUS_OK) {
            printf(", times by %s", text_of(groups, times, "evidence"));
        }
    }
    pgmdev_answer_free(evidence);
    puts("");
}

static void tell_suggestions(const pgmdev_flash_database* flash, const char* name) {
    pgmdev_records* meant = NULL;
    if (pgmdev_flash_suggestions(flash, name, &meant, NULL) == PGMDEV_STATUS_OK) {
        printf("%s: unknown", name);
        for (size_t i = 0; i < pgmdev_records_count(meant); ++i) {
            printf("%s%s", i == 0 ? ", perhaps " : ", ", text_of(meant, i, "name"));
        }
        puts("");
    }
    pgmdev_records_free(meant);
}

int main(void) {
    const char* const names[] = {"w25q64jv", "W25Q64FV", "W25Q64VJ"};
    pgmdev_error* error = NULL;
    pgmdev_flash_database* flash = NULL;
    pgmdev_status status = pgmdev_flash_open(NULL, &flash, &error);
    for (size_t i = 0; error == NULL && i < sizeof names / sizeof *names; ++i) {
        size_t record = 0;
        size_t further = 0;
        status = pgmdev_flash_find_any(flash, names[i], &record, &further, &error);
        if (status == PGMDEV_STATUS_OK) {
            tell_record(flash, names[i], record, further);
        } else if (status == PGMDEV_STATUS_NOT_FOUND) {
            tell_suggestions(flash, names[i]);
        }
    }
    pgmdev_flash_free(flash);
    if (error != NULL) {
        fprintf(stderr, "%s: %s\n", pgmdev_status_name(status), pgmdev_error_message(error));
        pgmdev_error_free(error);
        return 3;
    }
    return 0;
}
