#include "pgmdev_report.h"

#include "msg.h"

namespace {

constexpr const char* MODULE = "PGMDEV";

}  // namespace

void pgmdev_report(const char* condition, const char* source, int line) {
    MSG_INTERNAL_ERROR::report(condition, MODULE, source, line);
    throw MSG_INTERNAL_ERROR_EXCEPTION({condition, MODULE, source, line});
}

void pgmdev_report_soft(const char* condition, const char* source, int line) {
    try {
        MSG_INTERNAL_ERROR::report(condition, MODULE, source, line);
    } catch (...) {
        // Whatever the host throws is its way of ending an operation; this one is not to end.
    }
}
