#include "report.h"

#include "msg.h"

void pgmdev_report(const char* condition, const char* file, int line) {
    MSG_INTERNAL_ERROR::report(condition, PGMDEV_MODULE, file, line);
    throw MSG_INTERNAL_ERROR_EXCEPTION({condition, PGMDEV_MODULE, file, line});
}

void pgmdev_report_soft(const char* condition, const char* file, int line) {
    pgmdev_soften([&] { MSG_INTERNAL_ERROR::report(condition, PGMDEV_MODULE, file, line); });
}
