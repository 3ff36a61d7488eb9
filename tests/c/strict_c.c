#include "c/strict_c.h"

#include <stdio.h>
#include <string.h>

#include "pgmdev_c.h"

// The interface as a program in C99 uses it. Every check that fails is told, and counted.

static int failures;

static void check(int holds, const char* what, int line) {
    if (!holds) {
        ++failures;
        printf("line %d: %s does not hold\n", line, what);
    }
}

#define CHECK(condition) check(condition, #condition, __LINE__)

static void check_text(pgmdev_status status, pgmdev_string** string, const char* expected, int line) {
    check(status == PGMDEV_STATUS_OK && strcmp(pgmdev_string_data(*string), expected) == 0, expected, line);
    check(pgmdev_string_size(*string) == strlen(expected), "the size of a string", line);
    pgmdev_string_free(*string);
}

#define CHECK_TEXT(status, string, expected) check_text(status, string, expected, __LINE__)

static void ask_flash(void) {
    pgmdev_flash_database* flash = NULL;
    CHECK(pgmdev_flash_open(NULL, &flash, NULL) == PGMDEV_STATUS_OK);
    const pgmdev_records* records = pgmdev_flash_records(flash);

    size_t record = 0;
    CHECK(pgmdev_flash_find(flash, "w25q64jv", &record, NULL) == PGMDEV_STATUS_OK);
    const char* maker = NULL;
    CHECK(pgmdev_records_text(records, record, "manufacturer_name", &maker, NULL) == PGMDEV_STATUS_OK);
    CHECK(strcmp(maker, "Winbond") == 0);
    uint64_t bits = 0;
    CHECK(pgmdev_records_number(records, record, "device_bit_size", &bits, NULL) == PGMDEV_STATUS_OK);
    CHECK(bits == 67108864);

    const uint8_t bytes[] = {0xC2, 0x20, 0x19};
    const pgmdev_flash_response response = {.struct_size = sizeof response, .bytes = bytes, .size = sizeof bytes};
    pgmdev_flash_verdict verdict = {.struct_size = sizeof verdict};
    pgmdev_answer* details = NULL;
    CHECK(pgmdev_flash_identify(flash, &response, &verdict, &details, NULL) == PGMDEV_STATUS_OK);
    CHECK(!verdict.sure && !verdict.doubtful && verdict.oddity == PGMDEV_FLASH_ODDITY_NONE);
    const pgmdev_records* chips = pgmdev_answer_list(details, "ambiguous_chips");
    CHECK(pgmdev_records_count(chips) == 3);
    pgmdev_answer_free(details);
    pgmdev_flash_free(flash);
}

static void ask_names(void) {
    pgmdev_string* name = NULL;
    CHECK_TEXT(pgmdev_name_convert(PGMDEV_NAME_PACKAGE, " kes50c6", 0, &name, NULL), &name, "KES50");
    CHECK(pgmdev_name_convert(PGMDEV_NAME_PACKAGE, "no such name", 0, &name, NULL) == PGMDEV_STATUS_NOT_FOUND);
    CHECK(name == NULL);
    CHECK_TEXT(pgmdev_name_convert(PGMDEV_NAME_PACKAGE, "any", PGMDEV_NAME_OR_ITSELF, &name, NULL), &name, "ANY");
    pgmdev_records* parts = NULL;
    const pgmdev_part_filter filter = {.struct_size = sizeof filter, .family = "kestrel", .hidden = true};
    CHECK(pgmdev_part_list(&filter, &parts, NULL) == PGMDEV_STATUS_OK);
    size_t part = 0;
    CHECK(pgmdev_records_find(parts, 0, "name", "KES50C6", &part, NULL) == PGMDEV_STATUS_OK);
    pgmdev_records_free(parts);
}

static void see_errors(void) {
    pgmdev_flash_database* flash = NULL;
    pgmdev_error* error = NULL;
    CHECK(pgmdev_flash_open("there/is/no/such.pcf", &flash, &error) == PGMDEV_STATUS_REPORTED);
    CHECK(flash == NULL && pgmdev_error_status(error) == PGMDEV_STATUS_REPORTED);
    CHECK(strcmp(pgmdev_error_module(error), "PGMDEV") == 0 && pgmdev_error_line(error) > 0);
    CHECK(strcmp(pgmdev_error_message(error), pgmdev_error_condition(error)) == 0);
    pgmdev_error_free(error);
    CHECK(pgmdev_flash_open("there/is/no/such.pcf", NULL, NULL) == PGMDEV_STATUS_INVALID_ARGUMENT);
}

/// The schema is asked for, not known: every value of every record has the kind that its member says.
static void walk_profiles(void) {
    pgmdev_profile_database* profiles = NULL;
    CHECK(pgmdev_profile_open(NULL, &profiles, NULL) == PGMDEV_STATUS_OK);
    const pgmdev_records* records = pgmdev_profile_records(profiles);
    CHECK(pgmdev_records_count(records) == 78 && pgmdev_records_member_count(records) == 86);
    for (size_t i = 0; i < pgmdev_records_member_count(records); ++i) {
        pgmdev_member member = {.struct_size = sizeof member};
        CHECK(pgmdev_records_member(records, i, &member, NULL) == PGMDEV_STATUS_OK);
        for (size_t record = 0; record < pgmdev_records_count(records); ++record) {
            pgmdev_value value;
            CHECK(pgmdev_records_value(records, record, i, &value, NULL) == PGMDEV_STATUS_OK);
            CHECK(value.kind == member.kind && strlen(value.text) == value.text_size);
            CHECK(member.bits == 0 || member.bits == 64 || value.number >> member.bits == 0);
        }
    }
    size_t record = 0;
    CHECK(pgmdev_profile_find(profiles, PGMDEV_PROFILE_PART, "HERNX55Q240C8", &record, NULL) == PGMDEV_STATUS_OK);
    const char* pcf = NULL;
    CHECK(pgmdev_records_text(records, record, "pcf", &pcf, NULL) == PGMDEV_STATUS_OK);
    CHECK(strcmp(pcf, "HER_NX55") == 0);
    pgmdev_profile_free(profiles);
}

int failures_in_strict_c(void) {
    failures = 0;
    CHECK(pgmdev_c_interface() >= PGMDEV_C_INTERFACE);
    ask_flash();
    ask_names();
    see_errors();
    walk_profiles();
    return failures;
}
